// Limits that are short for as long as this lives, for what is meant to run into them.
#pragma once

#include <gtest/gtest.h>

#include "platform/host_interface.h"
#include "rpc_client/rpc_limits.h"
#include "support/pool.h"

class ShortenedLimits {
public:
    /// Of channels that are made from now on; with a device, of its command channel as well, once it is there.
    explicit ShortenedLimits(std::chrono::milliseconds time, void* device = nullptr)
        : limits_{time, time}, device_(device), previous_(kvrpc::limitsOfNewChannels.exchange(&limits_)) {
        setCallTimeout(time);
    }
    ~ShortenedLimits() {
        kvrpc::limitsOfNewChannels = previous_;
        setCallTimeout(std::chrono::seconds{15});
    }
    ShortenedLimits(const ShortenedLimits&) = delete;
    ShortenedLimits& operator=(const ShortenedLimits&) = delete;

private:
    void setCallTimeout(std::chrono::microseconds time) const {
        constexpr std::uint32_t kApplicationManager = 6;
        constexpr std::uint32_t kCallTimeout = 6;
        if (device_ == nullptr) { return; }
        const Pool pool;
        KvCRpcClient* client = nullptr;
        EXPECT_EQ(KvHIM_getRPCClientReference(pool, device_, kApplicationManager, &client), 0);
        ASSERT_NE(client, nullptr);
        EXPECT_EQ(client->setParameter(pool, kCallTimeout, static_cast<std::uint32_t>(time.count())), 0);
    }

    const kvrpc::Limits limits_;
    void* const device_;
    const kvrpc::Limits* const previous_;
};
