// What a store does in the same way on every system.
#include "simulator/store.h"

#include <atomic>

namespace simulated_target {

void sweepStagedFiles(const std::filesystem::path& root) {
    using Walk = std::filesystem::recursive_directory_iterator;
    std::error_code failure;
    std::error_code ignored;
    std::vector<std::filesystem::path> left;
    for (Walk entry{root, std::filesystem::directory_options::skip_permission_denied, failure};
         !failure && entry != Walk{}; entry.increment(failure)) {
        const bool staged =
            entry->path().filename().u8string().starts_with(std::u8string{kStagePrefix.begin(), kStagePrefix.end()});
        if (staged && std::filesystem::is_regular_file(entry->symlink_status(ignored))) {
            left.push_back(entry->path());
        }
    }
    for (const std::filesystem::path& file : left) {
        std::filesystem::remove(file, ignored);
    }
}

std::string nextStageName() {
    static std::atomic<std::uint64_t> number{0};
    return std::string{kStagePrefix} + std::to_string(++number);
}

} // namespace simulated_target
