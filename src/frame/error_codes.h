// Looking for a code in an error list.
#pragma once

#include <cstdint>

#include "platform/error_lists.h"

namespace applman {

// Codes of the target that are recognised, never added.
inline constexpr std::uint32_t kTargetUnknownProcess = 0x14a00803;
inline constexpr std::uint32_t kTargetUnsupportedParameter = 0x14a00804;
inline constexpr std::uint32_t kTargetUnsupportedFileType = 0x14a01077;

inline bool hasCode(const KvCErrorList& list, std::uint32_t code) {
    for (std::uint32_t index = 0; index < list.getErrorCount(); ++index) {
        if (list.getErrorCode(index) == code) { return true; }
    }
    return false;
}

} // namespace applman
