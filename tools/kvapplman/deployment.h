// One group of application processes on its way: what a worker does for deploy and run. It tells, as events:
//   device      address, startTime (seconds or null), applications (IDs or null): a target before anything is done
//   registering slot                        from here on the target may know a process
//   registered  slot, id                    also when the call has failed afterwards
//   progress    fraction, bytes, totalBytes, phase, file
//   downloaded                              the call has returned 0
//   started     slot
//   state       slot, state
//   ended       slot, how (text, or null when the target does not say)
//   warning     what a call has reported that succeeded
//   failed      why, as failure.h writes it
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "devices.h"
#include "worker.h"

namespace tool {

/// Place of a process in its group.
struct Slot {
    Device device{}; ///< without address the slot is empty
    std::filesystem::path file{};

    bool empty() const { return device.address.empty(); }
};

struct Deployment {
    std::vector<Slot> slots{};
    std::vector<std::string> arguments{}; ///< of every program; without any the parameter is left alone
    bool start = false;
    bool follow = false; ///< whether the job goes on until every process has stopped
};

Job deploymentJob(Deployment deployment);

} // namespace tool
