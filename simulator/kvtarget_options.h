// The command line of kvtarget.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "simulator/simulated_target.h"

namespace simulated_target {

extern const char* const kUsage;

/// What is wrong with a command line, to be shown to its user.
struct BadCommandLine : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// None when help was asked for. Throws BadCommandLine.
std::optional<Options> parseCommandLine(const std::vector<std::string>& arguments);

} // namespace simulated_target
