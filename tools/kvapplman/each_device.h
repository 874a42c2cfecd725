// The way of all commands that ask devices, one after the other, and need no worker for it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "command.h"

namespace tool {

/// What a command has to tell of a device.
struct Told {
    Json fields = Json::object();
    std::string text{}; ///< whole lines; may be empty
};

using Ask = std::function<Told(const kvapplman::Target& target)>;

/// Asks each device and prints what it tells, under its name when there are several. Ends the program when the time of the
/// command is over.
ExitCode askEachDevice(Context& context, const Ask& ask);

/// The exit code of a command that has ended like this for its devices.
ExitCode togetherOf(const std::vector<ExitCode>& each);

} // namespace tool
