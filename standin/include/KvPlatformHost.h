/// @file
/// What a host program needs of the platform besides the application manager: pools of messages, devices and
/// access-restriction handles.
///
/// Every function may be called from any thread; calls that use the same pool must not overlap. Texts are UTF-8.
/// A result of 0 is success; any other is a failure, told in the pool. A handle that names nothing (any more) is a
/// failure, never a crash.
#ifndef KV_PLATFORM_HOST_H
#define KV_PLATFORM_HOST_H

#include <stdint.h>

#include "KvExport.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Makes an empty pool of messages. The host gives it back with KvPlatform_deletePool. A pool keeps every message that
/// it receives, those of targets as well, and grows until the host empties it with KvPlatform_clearPool or an operation
/// does as it says; a host that runs for long empties it when it has read it.
/// @return the pool, or null when there is no memory
KVPLATFORM_API KvCErrorListPool* KvPlatform_createPool(void) KV_NOEXCEPT;

/// Deletes a pool and its entries.
/// @param pool a pool of KvPlatform_createPool, or null (then nothing happens)
KVPLATFORM_API void KvPlatform_deletePool(KvCErrorListPool* pool) KV_NOEXCEPT;

/// Removes every message of a pool, which may be used again at once. Texts of its entries are no longer valid.
/// @param pool the pool
KVPLATFORM_API void KvPlatform_clearPool(KvCErrorListPool KV_REF pool) KV_NOEXCEPT;

/// Adds a device. Nothing is sent to it.
/// @param pool receives messages
/// @param address "a.b.c.d:port"; two devices should not share an IPv4 address, since look-ups by address then find none
/// @param cnSerialNumber the serial number of the device's CN, 0 when unknown
/// @param device receives the device handle; valid until KvPlatform_removeDevice
/// @return 0, or negative
KVPLATFORM_API int32_t KvPlatform_addDevice(KvCErrorListPool KV_REF pool, const char* address, uint32_t cnSerialNumber,
                                            void** device) KV_NOEXCEPT;

/// Removes a device, closes its connections and deletes its clients and its access-restriction handles. The host sees
/// to it that no call for the device is under way, and removes its devices before it unloads the application manager.
/// @param pool receives messages
/// @param device a handle of KvPlatform_addDevice
/// @return 0, or negative
KVPLATFORM_API int32_t KvPlatform_removeDevice(KvCErrorListPool KV_REF pool, void* device) KV_NOEXCEPT;

/// Makes an access-restriction handle, which carries an access ID of its own.
/// @param pool receives messages
/// @param device a handle of KvPlatform_addDevice
/// @param handle receives the handle; valid until it or its device is deleted
/// @return 0, or negative
KVPLATFORM_API int32_t KvHIM_createAccessRestrictionHandle(KvCErrorListPool KV_REF pool, void* device,
                                                           void** handle) KV_NOEXCEPT;

/// Deletes an access-restriction handle.
/// @param pool receives messages
/// @param handle a handle of KvHIM_createAccessRestrictionHandle
/// @return 0, or negative
KVPLATFORM_API int32_t KvHIM_deleteAccessRestrictionHandle(KvCErrorListPool KV_REF pool, void* handle) KV_NOEXCEPT;

/// Counts the messages of a pool.
/// @param pool the pool
/// @return the number of entries
KVPLATFORM_API uint32_t KvPlatform_entryCount(const KvCErrorListPool KV_REF pool) KV_NOEXCEPT;

/// Reads an entry's message code.
/// @param pool the pool
/// @param index 0 to count - 1
/// @return the code; 0 for an index outside
KVPLATFORM_API uint32_t KvPlatform_entryCode(const KvCErrorListPool KV_REF pool, uint32_t index) KV_NOEXCEPT;

/// Reads the source line that reported an entry.
/// @param pool the pool
/// @param index 0 to count - 1
/// @return the line; 0 for an index outside
KVPLATFORM_API uint32_t KvPlatform_entryLine(const KvCErrorListPool KV_REF pool, uint32_t index) KV_NOEXCEPT;

/// Reads the name of the operation that reported an entry. Like every text of an entry it is valid until the pool is
/// next changed or deleted.
/// @param pool the pool
/// @param index 0 to count - 1
/// @return the name; null for an index outside
KVPLATFORM_API const char* KvPlatform_entryOperation(const KvCErrorListPool KV_REF pool, uint32_t index) KV_NOEXCEPT;

/// Reads the signature of an entry's arguments.
/// @param pool the pool
/// @param index 0 to count - 1
/// @return the signature; null when the entry has no arguments, and for an index outside
KVPLATFORM_API const char* KvPlatform_entrySignature(const KvCErrorListPool KV_REF pool, uint32_t index) KV_NOEXCEPT;

/// Counts an entry's arguments.
/// @param pool the pool
/// @param index 0 to count - 1
/// @return the number of arguments; 0 for an index outside
KVPLATFORM_API uint32_t KvPlatform_entryArgumentCount(const KvCErrorListPool KV_REF pool, uint32_t index) KV_NOEXCEPT;

/// Reads an argument as text: %u and %d in decimal, %x in hexadecimal digits.
/// @param pool the pool
/// @param index 0 to count - 1
/// @param argument 0 to argument count - 1
/// @return the text; null for an index or argument outside, and when there is no memory
KVPLATFORM_API const char* KvPlatform_entryArgument(const KvCErrorListPool KV_REF pool, uint32_t index,
                                                    uint32_t argument) KV_NOEXCEPT;

/// Renders an entry's message from the registered table, with its arguments in place.
/// @param pool the pool
/// @param index 0 to count - 1
/// @return the text; null for an index outside, and when there is no memory
KVPLATFORM_API const char* KvPlatform_entryText(const KvCErrorListPool KV_REF pool, uint32_t index) KV_NOEXCEPT;

/// Adds an entry of the host's own, without arguments. It is lost when there is no memory for it.
/// @param pool the pool
/// @param code the message code
KVPLATFORM_API void KvPlatform_addEntry(KvCErrorListPool KV_REF pool, uint32_t code) KV_NOEXCEPT;

#ifdef __cplusplus
} // extern "C"
#endif

#endif
