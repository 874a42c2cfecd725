// The host interface's functions, file transfer apart.
#include "platform/host_interface.h"

#include <cstring>

#include "host_interface/device_time.h"
#include "host_interface/devices.h"
#include "host_interface/failure.h"

using namespace host_interface;
using namespace platform_messages;

namespace {

// Parameters of handles, then those of filters.
constexpr std::uint32_t kIpv4Address = 6;
constexpr std::uint32_t kAccessId = 12;
constexpr std::uint32_t kHostTime = 20;
constexpr std::uint32_t kFilterAddress = 6;
constexpr std::uint32_t kFilterCriteria = 8; // always 1
constexpr std::uint32_t kFilterOption = 9;   // always 0
constexpr std::uint32_t kDeviceFilter = 1;   // kind

constexpr std::uint32_t kWordSize = 4;

std::int32_t wrongSize(KvCErrorListPool& pool, const char* operation, std::uint32_t parameter,
                       std::uint32_t line = __builtin_LINE()) noexcept {
    pool.setError(kParameterSizeWrong, line, operation, "%u%u", parameter, kWordSize);
    return kFailed;
}

std::int32_t unknownParameter(KvCErrorListPool& pool, const char* operation, std::uint32_t parameter,
                              std::uint32_t line = __builtin_LINE()) noexcept {
    pool.setError(kParameterUnknown, line, operation, "%u", parameter);
    return kFailed;
}

struct Parameter {
    std::uint32_t id;
    std::uint32_t value;
};

/// The one parameter that the handle has; none when it names neither a device nor an access-restriction handle.
std::optional<Parameter> readableParameter(void* handle) noexcept {
    const LockedRegistry all;
    if (const AccessHandle* const access = find(all->accessHandles, handle)) {
        return Parameter{kAccessId, access->accessId};
    }
    if (const Device* const device = find(all->devices, handle)) {
        return Parameter{kIpv4Address, device->endpoint.address};
    }
    return {};
}

bool isText(const void* value, std::uint32_t length) noexcept {
    const auto* const letters = static_cast<const char*>(value);
    return length != 0 && std::memchr(letters, '\0', length) == letters + (length - 1);
}

std::optional<std::string> addressOf(void* device) {
    const LockedRegistry all;
    const Device* const found = find(all->devices, device);
    return found == nullptr ? std::nullopt : std::optional{found->address};
}

void describe(const Device& device, KvHIMSDeviceInfo& info) noexcept {
    info = {};
    info.cnSerialNumber = device.cnSerialNumber;
}

} // namespace

std::int32_t KvHIM_getParam(KvCErrorListPool& pool, void* handle, std::uint32_t id, std::uint32_t index,
                            std::uint64_t* size, void* value) noexcept {
    constexpr const char* kOperation = "KvHIM_getParam";
    if (size == nullptr || value == nullptr) { return fail(pool, kOperation, kInvalidArgument); }
    const auto parameter = readableParameter(handle);
    if (!parameter) { return fail(pool, kOperation, id == kAccessId ? kAccessHandleUnknown : kDeviceUnknown); }
    if (id != parameter->id) { return unknownParameter(pool, kOperation, id); }
    if (index != 0) {
        pool.setError(kParameterIndexUnknown, __LINE__, kOperation, "%u%u", id, index);
        return kFailed;
    }
    if (*size != kWordSize) { return wrongSize(pool, kOperation, id); }
    std::memcpy(value, &parameter->value, kWordSize);
    return 0;
}

std::int32_t KvHIM_setParam(KvCErrorListPool& pool, void* device, std::uint32_t id, std::uint32_t length,
                            const void* value) noexcept {
    constexpr const char* kOperation = "KvHIM_setParam";
    try {
        if (value == nullptr) { return fail(pool, kOperation, kInvalidArgument); }
        const auto address = addressOf(device);
        if (!address) { return fail(pool, kOperation, kDeviceUnknown); }
        if (id != kHostTime) { return unknownParameter(pool, kOperation, id); }
        if (!isText(value, length)) {
            pool.setError(kParameterTextBroken, __LINE__, kOperation, "%u", id);
            return kFailed;
        }
        return sendHostTime(pool, *address, static_cast<const char*>(value));
    } catch (...) { return outOfMemory(pool, kOperation, "text"); }
}

const char* KvHIM_getAddressFromHandle(KvCErrorListPool& pool, void* device) noexcept {
    const LockedRegistry all;
    const Device* const found = find(all->devices, device);
    if (found != nullptr) { return found->address.c_str(); }
    fail(pool, "KvHIM_getAddressFromHandle", kDeviceUnknown);
    return nullptr;
}

std::int32_t KvHIM_getRPCClientReference(KvCErrorListPool& pool, void* device, std::uint32_t clientId,
                                         KvCRpcClient** client) noexcept {
    constexpr const char* kOperation = "KvHIM_getRPCClientReference";
    if (client == nullptr) { return fail(pool, kOperation, kInvalidArgument); }
    *client = nullptr;
    const LockedRegistry all;
    const Device* const found = find(all->devices, device);
    if (found == nullptr) { return fail(pool, kOperation, kDeviceUnknown); }
    const auto registered = found->clients.find(clientId);
    if (registered != found->clients.end()) { *client = registered->second; }
    return 0;
}

std::int32_t KvHIM_registerRPCClient(KvCErrorListPool& pool, void* device, std::uint32_t clientId,
                                     KvCRpcClient* client) noexcept {
    constexpr const char* kOperation = "KvHIM_registerRPCClient";
    try {
        if (client == nullptr) { return fail(pool, kOperation, kInvalidArgument); }
        const LockedRegistry all;
        Device* const found = find(all->devices, device);
        if (found == nullptr) { return fail(pool, kOperation, kDeviceUnknown); }
        registerClient(*found, clientId, client);
        return 0;
    } catch (...) { return outOfMemory(pool, kOperation, "registered client"); }
}

std::int32_t KvHIM_createAccessRestrictionHandle(KvCErrorListPool& pool, void* device, void** handle) noexcept {
    constexpr const char* kOperation = "KvHIM_createAccessRestrictionHandle";
    try {
        if (handle == nullptr) { return fail(pool, kOperation, kInvalidArgument); }
        *handle = nullptr;
        const LockedRegistry all;
        if (find(all->devices, device) == nullptr) { return fail(pool, kOperation, kDeviceUnknown); }
        void* const made = newHandle();
        all->accessHandles.emplace(made, AccessHandle{device, all->lastAccessId + 1, {}});
        ++all->lastAccessId;
        *handle = made;
        return 0;
    } catch (...) { return outOfMemory(pool, kOperation, "access-restriction handle"); }
}

std::int32_t KvHIM_requestAccessRestrictionLevel(KvCErrorListPool& pool, void* handle, std::uint32_t applId,
                                                 std::uint32_t level) noexcept {
    constexpr const char* kOperation = "KvHIM_requestAccessRestrictionLevel";
    try {
        const LockedRegistry all;
        AccessHandle* const access = find(all->accessHandles, handle);
        if (access == nullptr) { return fail(pool, kOperation, kAccessHandleUnknown); }
        if (all->refusedLevel == level) {
            pool.setError(kLevelRefused, __LINE__, kOperation, "%x%x", level, applId);
            return kFailed;
        }
        access->levels[applId] = level;
        return 0;
    } catch (...) { return outOfMemory(pool, kOperation, "access level"); }
}

std::int32_t KvHIM_deleteAccessRestrictionHandle(KvCErrorListPool& pool, void* handle) noexcept {
    const LockedRegistry all;
    if (all->accessHandles.erase(handle) != 0) { return 0; }
    return fail(pool, "KvHIM_deleteAccessRestrictionHandle", kAccessHandleUnknown);
}

std::int32_t KvHIM_createFilter(KvCErrorListPool& pool, void** filter, std::uint32_t kind) noexcept {
    constexpr const char* kOperation = "KvHIM_createFilter";
    try {
        if (filter == nullptr) { return fail(pool, kOperation, kInvalidArgument); }
        *filter = nullptr;
        if (kind != kDeviceFilter) {
            pool.setError(kFilterKindUnknown, __LINE__, kOperation, "%u", kind);
            return kFailed;
        }
        const LockedRegistry all;
        void* const made = newHandle();
        all->filters.emplace(made, Filter{});
        *filter = made;
        return 0;
    } catch (...) { return outOfMemory(pool, kOperation, "filter"); }
}

std::int32_t KvHIM_setFilterParameter(KvCErrorListPool& pool, void* filter, std::uint32_t id, std::uint32_t size,
                                      const void* value) noexcept {
    constexpr const char* kOperation = "KvHIM_setFilterParameter";
    if (value == nullptr) { return fail(pool, kOperation, kInvalidArgument); }
    const LockedRegistry all;
    Filter* const found = find(all->filters, filter);
    if (found == nullptr) { return fail(pool, kOperation, kFilterUnknown); }
    if (id != kFilterAddress && id != kFilterCriteria && id != kFilterOption) {
        return unknownParameter(pool, kOperation, id);
    }
    if (size != kWordSize) { return wrongSize(pool, kOperation, id); }
    std::uint32_t word = 0;
    std::memcpy(&word, value, kWordSize);
    if (id == kFilterAddress) {
        *found = Filter{word, false};
        return 0;
    }
    if (word == (id == kFilterCriteria ? 1U : 0U)) { return 0; }
    pool.setError(kParameterValueRefused, __LINE__, kOperation, "%u%u", id, word);
    return kFailed;
}

std::int32_t KvHIM_applyFilter(KvCErrorListPool& pool, void* filter) noexcept {
    constexpr const char* kOperation = "KvHIM_applyFilter";
    const LockedRegistry all;
    Filter* const found = find(all->filters, filter);
    if (found == nullptr) { return fail(pool, kOperation, kFilterUnknown); }
    if (!found->address) { return fail(pool, kOperation, kFilterIncomplete); }
    found->applied = true;
    return 0;
}

std::int32_t KvHIM_getDeviceList(KvCErrorListPool& pool, void* filter, KvHIMSDeviceInfo* devices,
                                 std::uint32_t* count) noexcept {
    constexpr const char* kOperation = "KvHIM_getDeviceList";
    if (count == nullptr || (devices == nullptr && *count != 0)) { return fail(pool, kOperation, kInvalidArgument); }
    const LockedRegistry all;
    const Filter* const selection = find(all->filters, filter);
    if (selection == nullptr) { return fail(pool, kOperation, kFilterUnknown); }
    if (!selection->applied) { return fail(pool, kOperation, kFilterNotApplied); }
    std::uint32_t selected = 0;
    for (const auto& [handle, device] : all->devices) {
        if (device.endpoint.address != selection->address) { continue; }
        if (selected < *count) { describe(device, devices[selected]); }
        ++selected;
    }
    *count = selected;
    return 0;
}

std::int32_t KvHIM_deleteFilter(KvCErrorListPool& pool, void* filter) noexcept {
    const LockedRegistry all;
    return all->filters.erase(filter) != 0 ? 0 : fail(pool, "KvHIM_deleteFilter", kFilterUnknown);
}
