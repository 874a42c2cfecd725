// The process that starts all programs, each with a keeper. It is forked before there is any thread, so that programs come
// from a process without locks, files or signal handlers of the target. When this end of it is closed, however, it and
// the keepers kill every program. Linux only.
#pragma once

#include <optional>

#include "simulator/programs/program_keeper.h"

namespace simulated_target {

class RunnerProcess {
public:
    /// To be called while this process has one thread. Throws std::system_error.
    explicit RunnerProcess(const KeeperTimes& times);
    ~RunnerProcess(); // waits until no program lives
    RunnerProcess(const RunnerProcess&) = delete;
    RunnerProcess& operator=(const RunnerProcess&) = delete;

    /// Has a program started by a keeper of its own, which reports at the other end of the socket how that went. Result:
    /// errno when nobody could be asked, else 0.
    int start(KeeperStart start, const KeeperDescriptors& descriptors) const;

private:
    Descriptor control_{};
    pid_t process_ = -1;
};

} // namespace simulated_target
