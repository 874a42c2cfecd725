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
    const char* emptyList =
        nullptr; ///< the function that gave an empty list when it may have failed: it reported why then
};

using TellOfDevice = std::function<Told(const Device& device)>;
using AskTarget = std::function<Told(const kvapplman::Target& target)>;

/// Prints what is told of each device, under its name when there are several. A device of which an exception is told does
/// not hold up the next. Ends the program when the time of the command is over.
ExitCode tellEachDevice(Context& context, const TellOfDevice& tell);

/// The same for those that ask the target. Prints what calls report that succeed.
ExitCode askEachDevice(Context& context, const AskTarget& ask);

/// The exit code of a command that has ended like this for its devices.
ExitCode togetherOf(const std::vector<ExitCode>& each);

} // namespace tool
