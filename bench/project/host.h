// The project as a client, through its exported functions.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "KvApplManConstants.h"
#include "KvPlatformHost.h"
#include "api/KvApplicationManagerAP.h"
#include "error_lists/platform_messages.h"
#include "harness/answers.h"
#include "harness/measurement.h"
#include "platform/host_interface.h"
#include "project/allocations.h"

namespace project {

class Pool {
public:
    operator KvCErrorListPool&() const { return *pool_; }

    /// Throws with the pool's messages unless a function was successful.
    void expectDone(std::int32_t status, const char* what) const {
        if (status == 0) { return; }
        std::string messages;
        for (std::uint32_t i = 0; i < KvPlatform_entryCount(*pool_); ++i) {
            messages += std::string{"; "} + KvPlatform_entryText(*pool_, i);
        }
        bench::expect(false, what + (": status " + std::to_string(status)) + messages);
    }

private:
    struct Delete {
        void operator()(KvCErrorListPool* pool) const { KvPlatform_deletePool(pool); }
    };
    std::unique_ptr<KvCErrorListPool, Delete> pool_{KvPlatform_createPool()};
};

/// A device with an access-restriction handle of it.
class Device {
public:
    explicit Device(const std::string& address, std::uint32_t cnSerialNumber = 0) {
        pool_.expectDone(KvPlatform_addDevice(pool_, address.c_str(), cnSerialNumber, &device_), "add a device");
        pool_.expectDone(KvHIM_createAccessRestrictionHandle(pool_, device_, &access_), "an access handle");
    }
    ~Device() { KvPlatform_removeDevice(pool_, device_); }
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    void* device() const { return device_; }
    void* access() const { return access_; }

private:
    Pool pool_{};
    void* device_ = nullptr;
    void* access_ = nullptr;
};

class Client : public Device {
public:
    explicit Client(const std::string& address) : Device(address) {}

    static std::uint64_t allocations() { return project::allocations(); }

    /// Of the calls to come, which have 15 seconds otherwise. Needs a call that was made before.
    void setTimeout(std::chrono::microseconds timeout) const {
        constexpr std::uint32_t kClientId = 6;
        constexpr std::uint32_t kCallTimeout = 6;
        const Pool pool;
        KvCRpcClient* client = nullptr;
        pool.expectDone(KvHIM_getRPCClientReference(pool, device(), kClientId, &client), "the device's client");
        pool.expectDone(client->setParameter(pool, kCallTimeout, static_cast<std::uint32_t>(timeout.count())),
                        "timeout");
    }

    class Caller {
    public:
        explicit Caller(const Client& client) : client_(client) {}

        bench::Outcome read(std::uint32_t applId, std::uint32_t& value) {
            std::int32_t size = sizeof value;
            const std::int32_t status = KvApplMan_getApplInfo(pool_, client_.device(), client_.access(), applId,
                                                              KV_APPLMAN_ITEM_GROUP_SIZE, &value, &size);
            return status == 0 ? bench::Outcome::value : takeFailure();
        }

    private:
        bench::Outcome takeFailure() {
            const std::uint32_t code = KvPlatform_entryCode(pool_, 0);
            KvPlatform_clearPool(pool_);
            if (code == platform_messages::kRpcCallRefused) { return bench::Outcome::refused; }
            return code == platform_messages::kRpcCallTimedOut ? bench::Outcome::timedOut : bench::Outcome::failed;
        }

        const Client& client_;
        Pool pool_{};
    };
};

} // namespace project
