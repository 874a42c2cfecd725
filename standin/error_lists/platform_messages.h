// The messages of the platform libraries themselves: their codes, and the texts that are always registered.
#pragma once

#include <cstdint>

namespace platform_messages {

/// The error-handling library's generic code for a null argument or a handle that cannot be used. No arguments.
inline constexpr std::uint32_t kInvalidArgument = 1024;

/// Behind each code the signature of its arguments. An address is "a.b.c.d:port".
enum PlatformMessage : std::uint32_t {
    kBase = 0x12600000,

    // Host interface
    kDeviceUnknown = kBase,
    kAccessHandleUnknown,
    kFilterUnknown,
    kParameterUnknown,      // %u parameter
    kParameterIndexUnknown, // %u%u parameter, index
    kParameterSizeWrong,    // %u%u parameter, needed bytes
    kParameterValueRefused, // %u%u parameter, value
    kParameterTextBroken,   // %u parameter
    kAddressMalformed,      // %s text
    kOutOfMemory,           // %s what was to be made
    kLevelRefused,          // %x%x level, application process
    kFilterKindUnknown,     // %u kind
    kFilterIncomplete,
    kFilterNotApplied,

    // RPC client
    kRpcConnectionRefused, // %s address
    kRpcHostUnreachable,   // %s address
    kRpcConnectTimedOut,   // %s address
    kRpcConnectFailed,     // %s%d address, system error
    kRpcCallTimedOut,      // %s%u address, procedure
    kRpcConnectionLost,    // %s%u address, procedure
    kRpcReplyMalformed,    // %s%u address, procedure
    kRpcCallRefused,       // %s%u%u address, procedure, RPC status
    kRpcRequestNotEncoded, // %s%u address, procedure
    kRpcParameterRefused,  // %s%u%u address, parameter, value
    kRpcClientUnusable,    // %s address

    // File transfer
    kTransferHandleUnknown,
    kTransferSourceUnreadable, // %s path
    kTransferSourceChanged,    // %s path
    kTransferRefused,          // %s%s%d address, operation, result
    kTransferDirectoryRefused, // %s%s%d address, directory, result

    kEnd
};

/// The text of one of these messages, of the generic code, or of a message that our targets report; null for any other
/// code. It needs no registration.
const char* builtInText(std::uint32_t code) noexcept;

} // namespace platform_messages
