// The command line of kvtarget.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "simulator/event_log.h"
#include "simulator/simulated_target.h"

namespace simulated_target {

struct CommandLine {
    std::string toShow{}; // help or version: there is nothing else to do then
    Options target{};
    RunOptions running{};
    bool log = false;
    std::string logFile{}; // empty = standard error
    LogFormat logFormat = LogFormat::text;
    bool requireFaults = false;
    bool control = false;
    std::string controlPath{}; // empty = standard input
};

/// What is wrong with a command line, to be shown to its user.
struct BadCommandLine : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Throws BadCommandLine.
CommandLine parseCommandLine(std::vector<std::string> arguments);

} // namespace simulated_target
