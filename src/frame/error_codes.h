// Looking for a code in an error list.
#pragma once

#include <cstdint>

#include "KvApplManConstants.h"
#include "platform/error_lists.h"

namespace applman {

// Codes of the target that are recognised, never added.
inline constexpr std::uint32_t kTargetUnknownProcess = KV_APPLMAN_TARGET_MSG_UNKNOWN_PROCESS;
inline constexpr std::uint32_t kTargetUnsupportedParameter = KV_APPLMAN_TARGET_MSG_UNSUPPORTED_PARAMETER;
inline constexpr std::uint32_t kTargetUnsupportedFileType = KV_APPLMAN_TARGET_MSG_UNSUPPORTED_FILE_TYPE;

inline bool hasCode(const KvCErrorList& list, std::uint32_t code) {
    for (std::uint32_t index = 0; index < list.getErrorCount(); ++index) {
        if (list.getErrorCode(index) == code) { return true; }
    }
    return false;
}

} // namespace applman
