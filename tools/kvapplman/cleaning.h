// Takes away from targets what a command has left there.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "KvApplMan.hpp"
#include "devices.h"
#include "output.h"

namespace tool {

/// What a target may still have of ours.
struct Remains {
    Device device{};
    std::vector<std::uint32_t> ids{};
    std::optional<kvapplman::Time> startTime{};         ///< of the target when the IDs were given
    std::optional<std::vector<std::uint32_t>> before{}; ///< the applications that are not ours; unknown without
    bool unannounced = false;    ///< whether there may be one more application, of which no answer has told the ID
    std::uint32_t groupSize = 0; ///< of its group
    bool stopFirst = false;      ///< whether programs are asked to end before they are killed
};

/// Unloads it all and tells about it. Tries again what fails, but not for ever: nobody waits longer than 15 seconds.
/// Result: what is left, or may be.
std::vector<Remains> cleanUp(Output& output, std::vector<Remains> all);

} // namespace tool
