// What every command understands.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "KvApplMan.hpp"

namespace tool {

enum class Form : std::uint8_t { text, json, jsonLines };

struct CommonOptions {
    std::vector<std::string> devices{}; ///< as given; "-" is an empty slot
    std::string configuration{};        ///< path of the file; empty = the user's own, if there is one
    Form form = Form::text;
    bool quiet = false;
    bool verbose = false;
    std::optional<std::chrono::milliseconds> timeout{}; ///< for the whole command
    std::optional<kvapplman::Time> boot{};              ///< start time of the target that the application IDs are from
};

} // namespace tool
