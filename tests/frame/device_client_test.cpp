// How a device's client comes into being, and what is left when a step of it fails.
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "frame/calling_frame.h"
#include "platform/host_interface.h"
#include "support/pool.h"

using namespace applman;

namespace {

/// The host interface and the RPC client in one: keeps the calls in their order and fails those that a test names.
struct HostDouble {
    std::vector<std::string> calls{};
    std::map<std::string, std::int32_t> results{}; // in place of 0
    const char* address = "192.0.2.1:1";
    KvCRpcClient* registered = nullptr;
    int clients = 0;

    std::int32_t call(const std::string& name) {
        calls.push_back(name);
        return results[name];
    }
};
HostDouble host;

class DeviceClient : public testing::Test {
protected:
    DeviceClient() { host = {}; }
    ~DeviceClient() override { delete host.registered; }

    /// Looks the client up as an exported function does. Result: the status.
    std::int32_t use() {
        return numberOf(withClient(Reporter{pool_, "operation"}, this, [](auto&) { return Status::ok; }));
    }

    Pool pool_;
};

} // namespace

KvCRpcClient::KvCRpcClient(KvCErrorListPool&, const char*) noexcept : state_(nullptr) { ++host.clients; }
KvCRpcClient::~KvCRpcClient() { --host.clients; }
std::int32_t KvCRpcClient::setParameter(KvCErrorListPool&, std::uint32_t id, std::uint32_t value) noexcept {
    return host.call(std::to_string(id) + "=" + std::to_string(value));
}
std::int32_t KvCRpcClient::connect(KvCErrorListPool&) noexcept { return host.call("connect"); }

std::int32_t KvHIM_getRPCClientReference(KvCErrorListPool&, void*, std::uint32_t id, KvCRpcClient** client) noexcept {
    *client = host.registered;
    return host.call("look up " + std::to_string(id));
}
std::int32_t KvHIM_registerRPCClient(KvCErrorListPool&, void*, std::uint32_t id, KvCRpcClient* client) noexcept {
    const std::int32_t result = host.call("register " + std::to_string(id));
    if (result == 0) { host.registered = client; }
    return result;
}
const char* KvHIM_getAddressFromHandle(KvCErrorListPool&, void*) noexcept { return host.address; }

TEST_F(DeviceClient, IsMadeOnceStepByStep) {
    host.results = {{"2=2", 5}, {"connect", 1}}; // of the RPC client only negative results are failures
    EXPECT_EQ(use(), 0);
    EXPECT_EQ(host.calls,
              (std::vector<std::string>{"look up 6", "6=15000000", "1=6", "2=2", "14=0", "connect", "register 6"}));
    host.calls.clear();
    EXPECT_EQ(use(), 0);
    EXPECT_EQ(host.calls, std::vector<std::string>{"look up 6"});
    EXPECT_EQ(pool_->getErrorCount(), 0U);
    host.results["look up 6"] = -1;
    EXPECT_EQ(use(), -100) << "what a failed look-up delivers is not taken";
}

TEST_F(DeviceClient, NothingIsLeftOfOneThatFailed) {
    struct Case {
        const char* failing; // the last call that is made
        std::int32_t result, status;
        std::vector<std::uint32_t> messages;
        const char* address = "192.0.2.1:1";
    };
    for (const Case& c :
         {Case{"look up 6", 1, -100, {0x12500044, 0x12500008}},
          Case{"look up 6", 0, -100, {0x12500044, 0x12500008}, nullptr},
          Case{"6=15000000", -1, -180, {0x1250000e, 0x12500008}}, Case{"14=0", -1, -180, {0x1250000e, 0x12500008}},
          Case{"connect", -1, -180, {0x1250000f, 0x12500008}}, Case{"register 6", 7, 7, {0x12500008}}}) {
        host = {};
        pool_->reset();
        host.address = c.address;
        host.results[c.failing] = c.result;
        EXPECT_EQ(use(), c.status);
        EXPECT_EQ(host.calls.back(), c.failing);
        EXPECT_EQ(pool_.codes(), c.messages);
        EXPECT_EQ(host.clients, 0) << c.failing;
    }
    host = {};
    EXPECT_EQ(use(), 0); // and the lock is free
}
