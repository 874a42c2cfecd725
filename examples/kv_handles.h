// What a host program holds, as objects that give themselves back: message pool, device, access-restriction handle,
// group. Made to be copied.
#pragma once

#include <cstdint>
#include <cstdio>
#include <new>
#include <stdexcept>
#include <string>

#include "KvApplicationManagerAP.h"
#include "KvPlatformHost.h"

/// A call has failed; why is told by the messages in the pool that it was given.
class Failure : public std::runtime_error {
public:
    Failure(const std::string& what, std::int32_t status)
        : std::runtime_error(what + " failed with status " + std::to_string(status)) {}
};

inline void check(std::int32_t status, const std::string& what) {
    if (status != 0) throw Failure(what, status);
}

class Pool {
public:
    Pool() : pool_(KvPlatform_createPool()) {
        if (pool_ == nullptr) throw std::bad_alloc();
    }
    ~Pool() { KvPlatform_deletePool(pool_); }
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;

    operator KvCErrorListPool&() const { return *pool_; }

private:
    KvCErrorListPool* pool_;
};

/// The pool of each of the following outlives it: it takes the messages of the end, too.
class Device {
public:
    Device(const Pool& pool, const char* address) : pool_(pool) {
        constexpr std::uint32_t kSerialNumberUnknown = 0;
        check(KvPlatform_addDevice(pool_, address, kSerialNumberUnknown, &device_),
              "Adding the device " + std::string(address));
    }
    ~Device() { KvPlatform_removeDevice(pool_, device_); }
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    operator void*() const { return device_; }

private:
    const Pool& pool_;
    void* device_ = nullptr;
};

class AccessRestriction {
public:
    AccessRestriction(const Pool& pool, void* device) : pool_(pool) {
        check(KvHIM_createAccessRestrictionHandle(pool_, device, &handle_), "Making an access-restriction handle");
    }
    ~AccessRestriction() { KvHIM_deleteAccessRestrictionHandle(pool_, handle_); }
    AccessRestriction(const AccessRestriction&) = delete;
    AccessRestriction& operator=(const AccessRestriction&) = delete;

    operator void*() const { return handle_; }

private:
    const Pool& pool_;
    void* handle_ = nullptr;
};

class Group {
public:
    /// @param devices one per slot, null for an empty slot; the access-restriction handles stand in the same order
    Group(const Pool& pool, void* const* devices, void* const* accessRestrictions, std::uint32_t slotCount)
        : pool_(pool) {
        check(KvApplMan_createApplGroupHandle_2(pool_, devices, accessRestrictions, slotCount, &group_),
              "Creating the group");
    }
    ~Group() { KvApplMan_deleteApplGroupHandle(pool_, group_); }
    Group(const Group&) = delete;
    Group& operator=(const Group&) = delete;

    operator KvSApplGroupHandle*() const { return group_; }

private:
    const Pool& pool_;
    KvSApplGroupHandle* group_ = nullptr;
};

/// Prints every message of a pool, innermost first: code, reporting operation, text.
inline void printMessages(const Pool& pool, std::FILE* out) {
    for (std::uint32_t i = 0; i < KvPlatform_entryCount(pool); ++i) {
        const char* text = KvPlatform_entryText(pool, i);
        std::fprintf(out, "  0x%08x %s: %s\n", KvPlatform_entryCode(pool, i), KvPlatform_entryOperation(pool, i),
                     text != nullptr ? text : "(no text)");
    }
}
