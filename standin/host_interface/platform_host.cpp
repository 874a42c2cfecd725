// A host's devices.
#include "KvPlatformHost.h"

#include "host_interface/devices.h"
#include "host_interface/failure.h"
#include "platform/host_system.h"

using namespace host_interface;
using namespace platform_messages;

std::int32_t KvPlatform_addDevice(KvCErrorListPool& pool, const char* address, std::uint32_t cnSerialNumber,
                                  void** device) noexcept {
    constexpr const char* kOperation = "KvPlatform_addDevice";
    try {
        if (address == nullptr || device == nullptr) { return fail(pool, kOperation, kInvalidArgument); }
        *device = nullptr;
        const auto endpoint = kvrpc::parseIpv4Endpoint(address);
        if (!endpoint) {
            pool.setError(kAddressMalformed, __LINE__, kOperation, "%s", address);
            return kFailed;
        }
        const LockedRegistry all;
        void* const made = newHandle();
        all->devices.emplace(made, Device{address, *endpoint, cnSerialNumber, {}, {}});
        *device = made;
        return 0;
    } catch (...) { return outOfMemory(pool, kOperation, "device"); }
}

std::int32_t KvPlatform_removeDevice(KvCErrorListPool& pool, void* device) noexcept {
    const host_system::CancellationOff cancellationOff; // closing a connection is a cancellation point
    // The clients are deleted when the registry is no longer locked.
    const HandleTable<Device>::node_type removed = extractDevice(*LockedRegistry{}, device);
    return removed ? 0 : fail(pool, "KvPlatform_removeDevice", kDeviceUnknown);
}
