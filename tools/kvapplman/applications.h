// Applications by ID or name.
#pragma once

#include <cstdint>
#include <string>

#include "options.h"

namespace tool {

/// The ID that a text means: a number (decimal, or hexadecimal behind 0x), "manager", or the name of an application: its
/// binary's file name, with or without its last extension. Asks the target for names only. Throws Failed: refused when
/// the target has no such application, usage with the candidates when it has several.
std::uint32_t applicationIdOf(const kvapplman::Target& target, const std::string& text);

inline kvapplman::Application applicationOf(const kvapplman::Target& target, const std::string& text) {
    return target.application(applicationIdOf(target, text));
}

/// Throws Failed (refused) when the target has started anew since --boot, so that IDs from then mean nothing.
void checkBoot(const kvapplman::Target& target, const CommonOptions& options);

} // namespace tool
