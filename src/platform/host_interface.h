// Devices, access-restriction handles, the device filter, the per-device registry of RPC clients and the file-transfer
// channel, as the library calls them. The pool comes first; 0 is success, anything else a failure told in the pool
// (KvHIM_putFileU: negative is a failure). A handle that names nothing any more is a failure, never a crash.
#pragma once

#include <cstdint>

#include "platform/KvExport.h"
#include "platform/error_lists.h"
#include "platform/rpc_client.h"

/// What the device list tells of a device. Only the serial number is read here.
struct KvHIMSDeviceInfo {
    std::uint32_t reserved1;
    std::uint32_t cnSerialNumber;
    std::uint8_t reserved2[816];
};
static_assert(sizeof(KvHIMSDeviceInfo) == 824);

/// Called while a file is sent, with the bytes of this file sent so far.
using KvHIM_BytesCallback = void (*)(std::uint64_t bytes, void* context);

extern "C" {

/// Parameter 12 of an access-restriction handle: the access ID. Parameter 6 of a device: its IPv4 address, as it lies in
/// memory in network order. Both take 4 bytes, index 0; `size` is in/out.
KVPLATFORM_API std::int32_t KvHIM_getParam(KvCErrorListPool& pool, void* handle, std::uint32_t id, std::uint32_t index,
                                           std::uint64_t* size, void* value) noexcept;

/// Parameter 20 of a device: the host's local time as text; `length` includes the terminating zero.
KVPLATFORM_API std::int32_t KvHIM_setParam(KvCErrorListPool& pool, void* device, std::uint32_t id, std::uint32_t length,
                                           const void* value) noexcept;

/// "a.b.c.d:port", or null. Valid until the device is removed.
KVPLATFORM_API const char* KvHIM_getAddressFromHandle(KvCErrorListPool& pool, void* device) noexcept;

/// The client that is registered for the device under `clientId`, or null when there is none.
KVPLATFORM_API std::int32_t KvHIM_getRPCClientReference(KvCErrorListPool& pool, void* device, std::uint32_t clientId,
                                                        KvCRpcClient** client) noexcept;

/// On success the registry owns the client, and deletes it with the device.
KVPLATFORM_API std::int32_t KvHIM_registerRPCClient(KvCErrorListPool& pool, void* device, std::uint32_t clientId,
                                                    KvCRpcClient* client) noexcept;

KVPLATFORM_API std::int32_t KvHIM_createAccessRestrictionHandle(KvCErrorListPool& pool, void* device,
                                                                void** handle) noexcept;
KVPLATFORM_API std::int32_t KvHIM_requestAccessRestrictionLevel(KvCErrorListPool& pool, void* handle,
                                                                std::uint32_t applId, std::uint32_t level) noexcept;
KVPLATFORM_API std::int32_t KvHIM_deleteAccessRestrictionHandle(KvCErrorListPool& pool, void* handle) noexcept;

/// A filter selects devices; `kind` is 1. Parameters: 6 = IPv4 address, 8 = 1, 9 = 0, each 4 bytes.
KVPLATFORM_API std::int32_t KvHIM_createFilter(KvCErrorListPool& pool, void** filter, std::uint32_t kind) noexcept;
KVPLATFORM_API std::int32_t KvHIM_setFilterParameter(KvCErrorListPool& pool, void* filter, std::uint32_t id,
                                                     std::uint32_t size, const void* value) noexcept;
KVPLATFORM_API std::int32_t KvHIM_applyFilter(KvCErrorListPool& pool, void* filter) noexcept;

/// Fills at most `count` records of the devices that the filter selects; `count` becomes the number of those devices.
KVPLATFORM_API std::int32_t KvHIM_getDeviceList(KvCErrorListPool& pool, void* filter, KvHIMSDeviceInfo* devices,
                                                std::uint32_t* count) noexcept;
KVPLATFORM_API std::int32_t KvHIM_deleteFilter(KvCErrorListPool& pool, void* filter) noexcept;

/// A connection of its own for the files of one transfer.
KVPLATFORM_API std::int32_t KvHIM_createFTClientHandle(KvCErrorListPool& pool, void* device, void** handle) noexcept;
KVPLATFORM_API std::int32_t KvHIM_deleteFTClientHandle(KvCErrorListPool& pool, void* handle) noexcept;

/// Sends the host file `path` (UTF-16, backslashes) as `targetName` into `targetDirectory` (UTF-8). Result: the bytes
/// sent, or negative.
KVPLATFORM_API std::int64_t KvHIM_putFileU(KvCErrorListPool& pool, void* reserved, void* handle, const char16_t* path,
                                           const char* targetDirectory, const char* targetName,
                                           KvHIM_BytesCallback callback, void* context) noexcept;

/// Makes the directory `name` in `baseDirectory`; one that is there already is no failure.
KVPLATFORM_API std::int32_t KvHIM_makeDir(KvCErrorListPool& pool, void* reserved, void* handle,
                                          const char* baseDirectory, const char* name) noexcept;

} // extern "C"
