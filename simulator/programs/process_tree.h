// The processes below a process, as /proc tells them. Linux only.
#pragma once

#include <chrono>
#include <vector>

#include <sys/types.h>

namespace simulated_target {

struct TreeProcess {
    pid_t pid = 0;
    pid_t parent = 0;
    pid_t group = 0;
    char state = '\0';
    std::chrono::microseconds ownTime{};    // of processors, in the resolution of the system's clock
    std::chrono::microseconds reapedTime{}; // that of the children whose end it has seen

    bool ended() const { return state == 'Z' || state == 'X'; }
    bool stopped() const { return state == 'T' || state == 't'; }
};

/// Children, their children, and so on. One that changes its parent at this moment may be missing.
std::vector<TreeProcess> processesBelow(pid_t root);

/// Whether they have all stopped or ended. One that waits without interruption for a child to be executed has stopped with
/// the child.
bool atRest(const std::vector<TreeProcess>& processes);

/// The time of processors that everything below a process has taken, and what has ended there and was waited for.
std::chrono::microseconds timeBelow(pid_t root);

} // namespace simulated_target
