// The command line of kvtarget.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "simulator/simulated_target.h"

namespace simulated_target {

struct CommandLine {
    std::string toShow{}; // help or version: there is nothing else to do then
    Options target{};
};

/// What is wrong with a command line, to be shown to its user.
struct BadCommandLine : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Throws BadCommandLine.
CommandLine parseCommandLine(std::vector<std::string> arguments);

} // namespace simulated_target
