#include "simulator/programs/process_tree.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unistd.h>

#include "simulator/descriptor.h"

namespace simulated_target {
namespace {

using std::chrono::microseconds;

microseconds ofTicks(unsigned long ticks) {
    static const auto perSecond = static_cast<unsigned long>(sysconf(_SC_CLK_TCK));
    return microseconds{ticks * (std::micro::den / perSecond)};
}

/// None when there is no such process.
std::optional<TreeProcess> readProcess(pid_t pid) {
    constexpr std::size_t kLongest = 1024;
    char text[kLongest + 1];
    const Descriptor file{open(("/proc/" + std::to_string(pid) + "/stat").c_str(), O_RDONLY | O_CLOEXEC)};
    const ssize_t size = file.valid() ? read(file.number(), text, kLongest) : -1;
    if (size <= 0) { return {}; }
    text[size] = '\0';
    const char* const name = std::strrchr(text, ')'); // the program may have put anything before it
    if (name == nullptr) { return {}; }
    TreeProcess process;
    process.pid = pid;
    unsigned long user = 0;
    unsigned long system = 0;
    unsigned long reapedUser = 0;
    unsigned long reapedSystem = 0;
    const int fields =
        std::sscanf(name + 1, " %c %d %d %*d %*d %*d %*u %*u %*u %*u %*u %lu %lu %lu %lu", &process.state,
                    &process.parent, &process.group, &user, &system, &reapedUser, &reapedSystem);
    if (fields != 7) { return {}; }
    process.ownTime = ofTicks(user + system);
    process.reapedTime = ofTicks(reapedUser + reapedSystem);
    return process;
}

struct CloseListing {
    void operator()(DIR* listing) const noexcept { closedir(listing); }
};

std::multimap<pid_t, TreeProcess> processesByParent() {
    std::multimap<pid_t, TreeProcess> all;
    const std::unique_ptr<DIR, CloseListing> listing{opendir("/proc")};
    while (const dirent* const entry = listing ? readdir(listing.get()) : nullptr) {
        const bool isProcess = entry->d_name[0] >= '1' && entry->d_name[0] <= '9';
        const auto process = isProcess ? readProcess(std::atoi(entry->d_name)) : std::nullopt;
        if (process) { all.emplace(process->parent, *process); }
    }
    return all;
}

} // namespace

std::vector<TreeProcess> processesBelow(pid_t root) {
    const auto all = processesByParent();
    std::vector<TreeProcess> below;
    const auto addChildren = [&](pid_t parent) {
        const auto [first, last] = all.equal_range(parent);
        for (auto child = first; child != last; ++child) {
            below.push_back(child->second);
        }
    };
    addChildren(root);
    std::size_t next = 0;
    while (next < below.size()) { // it grows meanwhile
        addChildren(below[next].pid);
        ++next;
    }
    return below;
}

bool atRest(const std::vector<TreeProcess>& processes) {
    const auto waitsForStopped = [&](const TreeProcess& process) {
        const auto isStoppedChild = [&](const TreeProcess& other) {
            return other.parent == process.pid && other.stopped();
        };
        return process.state == 'D' && std::ranges::any_of(processes, isStoppedChild);
    };
    return std::ranges::all_of(processes, [&](const TreeProcess& process) {
        return process.ended() || process.stopped() || waitsForStopped(process);
    });
}

microseconds timeBelow(pid_t root) {
    const auto self = readProcess(root);
    microseconds time = self ? self->reapedTime : microseconds{};
    for (const TreeProcess& process : processesBelow(root)) {
        time += process.ownTime + process.reapedTime;
    }
    return time;
}

} // namespace simulated_target
