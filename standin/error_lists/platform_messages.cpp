#include "error_lists/platform_messages.h"

#include <cstddef>
#include <iterator>

#include "KvApplManConstants.h"
#include "error_lists/target_messages.h"

namespace platform_messages {
namespace {

struct Row {
    PlatformMessage code;
    const char* text;
};

constexpr Row kRows[] = {
    {kDeviceUnknown, "The device handle names no device. Check that the device was added and is not removed yet."},
    {kAccessHandleUnknown,
     "The access-restriction handle names nothing. Check that neither it was deleted nor its device "
     "removed."},
    {kFilterUnknown, "The filter handle names no filter. Check that the filter was created and is not deleted yet."},
    {kParameterUnknown,
     "Parameter %1 does not exist for this kind of handle. Check the parameter number and the handle."},
    {kParameterIndexUnknown, "Parameter %1 has no element %2. Use index 0."},
    {kParameterSizeWrong, "The size given for parameter %1 does not fit. Use %2 bytes."},
    {kParameterValueRefused, "Parameter %1 cannot take the value %2."},
    {kParameterTextBroken, "The text for parameter %1 does not end with its only zero byte. Check text and length."},
    {kAddressMalformed,
     "\"%1\" is not a device address. Use the form a.b.c.d:port with numbers from 0 to 255 and a port "
     "from 1 to 65535."},
    {kOutOfMemory, "There is not enough memory for a new %1."},
    {kLevelRefused, "The access level 0x%1 is refused for the application process 0x%2."},
    {kFilterKindUnknown, "There is no filter of kind %1. Use kind 1, devices."},
    {kFilterIncomplete, "The filter cannot be applied, because no address was set for it. Set parameter 6 first."},
    {kFilterNotApplied, "The devices cannot be listed, because the filter was not applied after its last change."},

    {kRpcConnectionRefused,
     "The target %1 refused the connection. Check that it is running and that the port is right."},
    {kRpcHostUnreachable, "The target %1 cannot be reached. Check the address, the cable and the network settings."},
    {kRpcConnectTimedOut, "The target %1 did not answer when connecting. Check that it is switched on and that no "
                          "firewall stands between."},
    {kRpcConnectFailed, "Connecting to the target %1 failed with system error %2."},
    {kRpcCallTimedOut,
     "The target %1 did not answer the call of procedure %2 in time. Check whether it is overloaded or "
     "hangs."},
    {kRpcConnectionLost, "The connection to the target %1 was lost during the call of procedure %2. Check whether the "
                         "target was restarted."},
    {kRpcReplyMalformed,
     "The target %1 answered the call of procedure %2 with a reply that cannot be read. Check that its "
     "version fits this host."},
    {kRpcCallRefused,
     "The target %1 refused the call of procedure %2 with RPC status %3. Check that its version fits this "
     "host."},
    {kRpcRequestNotEncoded,
     "The request of procedure %2 to the target %1 could not be encoded. Check for lack of memory."},
    {kRpcParameterRefused, "The RPC client for the target %1 cannot set parameter %2 to %3."},
    {kRpcClientUnusable, "The RPC client for \"%1\" cannot be used. Check the address, and for lack of memory."},

    {kTransferHandleUnknown,
     "The file-transfer handle names nothing. Check that it was created and is not deleted yet."},
    {kTransferSourceUnreadable,
     "The file \"%1\" cannot be read. Check that it exists, is a regular file and may be read."},
    {kTransferSourceChanged, "The file \"%1\" changed while it was sent. Send it again when nothing writes to it."},
    {kTransferRefused, "The target %1 refused to %2 and answered %3. Check the target's storage and the file name."},
    {kTransferDirectoryRefused, "The target %1 refused the directory \"%2\" and answered %3. Check its name and the "
                                "target's storage."},
};
constexpr std::size_t kCount = std::size(kRows);

constexpr bool eachRowStandsAtItsCode() {
    for (std::size_t i = 0; i < kCount; ++i) {
        if (kRows[i].code != kBase + i) { return false; }
    }
    return kBase + kCount == kEnd;
}
static_assert(eachRowStandsAtItsCode());

// Users have a name for each of them, with its number, and for nothing else.
#define CONSTANT(name, camelCase, kCamelCase) static_assert(std::uint32_t{name} == (kCamelCase));
#include <public_constants/PLATFORM_MSG.h>
#undef CONSTANT
#define CONSTANT(name, camelCase, kCamelCase) name,
constexpr std::uint32_t kNamed[] = {
#include <public_constants/PLATFORM_MSG.h>
};
#undef CONSTANT
static_assert(std::size(kNamed) == kCount);

} // namespace

const char* builtInText(std::uint32_t code) noexcept {
    if (code == kInvalidArgument) { return "Invalid argument or handle."; }
    if (code >= kBase && code < kEnd) { return kRows[code - kBase].text; }
    return target_messages::textOf(code);
}

} // namespace platform_messages
