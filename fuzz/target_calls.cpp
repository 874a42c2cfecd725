// Calls of a target, one after the other: a byte picks program and procedure, the next says how many words of arguments
// follow. Whatever is asked for, nothing beside the store is touched and nothing half written stays in it.
#include <algorithm>
#include <filesystem>
#include <unistd.h>

#include "file_transfer/file_transfer_protocol.h"
#include "fuzz/fuzz.h"
#include "protocol/procedure_numbers.h"
#include "target/target_service.h"

using namespace simulated_target;
namespace fs = std::filesystem;

namespace {

/// A folder that holds the store and nothing else.
struct Surroundings {
    const fs::path folder = fs::temp_directory_path() / ("kvfuzz-" + std::to_string(::getpid()));
    const fs::path store = folder / "store";
    Surroundings() { fs::create_directories(store); }
    ~Surroundings() { fs::remove_all(folder); }
};

void callAsPicked(TargetService& target, std::uint8_t pick, Input arguments) {
    constexpr std::uint32_t kPrograms[][2] = {{applman::kApplManProgram, applman::kApplManVersion},
                                              {applman::kApplManProgram, applman::kApplManVersion + 1},
                                              {file_transfer::kProgram, file_transfer::kVersion},
                                              {file_transfer::kProgram + 1, file_transfer::kVersion}};
    const auto& [program, version] = kPrograms[pick >> 6];
    target.handle({1, program, version, pick & 63U, arguments});
}

} // namespace

void target_calls(Input input) {
    static const Surroundings surroundings;
    Options options;
    options.store = surroundings.store;
    options.commandDelay = {};
    options.recordRequests = false;
    TargetService target{options};
    while (!input.empty()) {
        const std::uint8_t pick = takeByte(input);
        const std::size_t length = std::min<std::size_t>(4U * takeByte(input), input.size());
        callAsPicked(target, pick, input.first(length));
        input = input.subspan(length);
    }
    target.connectionClosed(1);
    require(std::distance(fs::directory_iterator{surroundings.folder}, fs::directory_iterator{}) == 1);
    for (const auto& entry : fs::recursive_directory_iterator{surroundings.store}) {
        require(!entry.path().filename().string().starts_with(kStagePrefix));
    }
    for (const auto& entry : fs::directory_iterator{surroundings.store}) {
        fs::remove_all(entry.path());
    }
}
