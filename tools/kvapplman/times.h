// Moments as texts: "2026-01-31T12:34:56Z".
#pragma once

#include <optional>
#include <string>

#include "KvApplMan.hpp"

namespace tool {

std::string textOf(kvapplman::Time time);

/// Such a text, or the seconds since 1970-01-01 00:00 UTC.
std::optional<kvapplman::Time> timeFrom(const std::string& text);

} // namespace tool
