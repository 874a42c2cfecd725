// How a device's client comes into being, and what is left when a step of it fails.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "frame/calling_frame.h"
#include "platform/host_interface.h"
#include "support/pool.h"

using namespace applman;

namespace {

/// The host interface and the RPC client in one: keeps the calls in their order.
struct HostDouble {
    std::string failing{}; // the call that has this result in place of 0
    std::int32_t result = 0;
    std::vector<std::string> calls{};
    int clients = 0;
    std::unique_ptr<KvCRpcClient> registered{};

    std::int32_t call(const std::string& name) {
        calls.push_back(name);
        return name == failing ? result : 0;
    }
};
HostDouble host;

} // namespace

KvCRpcClient::KvCRpcClient(KvCErrorListPool&, const char*) noexcept : state_(nullptr) { ++host.clients; }
KvCRpcClient::~KvCRpcClient() { --host.clients; }
std::int32_t KvCRpcClient::setParameter(KvCErrorListPool&, std::uint32_t id, std::uint32_t value) noexcept {
    return host.call(std::to_string(id) + "=" + std::to_string(value));
}
std::int32_t KvCRpcClient::connect(KvCErrorListPool&) noexcept { return host.call("connect"); }
std::int32_t KvHIM_getRPCClientReference(KvCErrorListPool&, void*, std::uint32_t id, KvCRpcClient** client) noexcept {
    *client = nullptr;
    return host.call("look up " + std::to_string(id));
}
std::int32_t KvHIM_registerRPCClient(KvCErrorListPool&, void*, std::uint32_t id, KvCRpcClient* client) noexcept {
    const std::int32_t result = host.call("register " + std::to_string(id));
    if (result == 0) { host.registered.reset(client); }
    return result;
}
const char* KvHIM_getAddressFromHandle(KvCErrorListPool&, void*) noexcept {
    return host.call("address") == 0 ? "192.0.2.1:1" : nullptr;
}

TEST(DeviceClient, IsMadeStepByStepAndNothingIsLeftOfOneThatFailed) {
    const std::vector<std::string> steps{"look up 6", "address", "6=15000000", "1=6",
                                         "2=2",       "14=0",    "connect",    "register 6"};
    const struct {
        const char* step;
        std::int32_t result, status;
        std::vector<std::uint32_t> messages{};
    } rows[] = {
        {"look up 6", 1, -100, {0x12500044, 0x12500008}},
        {"address", 1, -100, {0x12500044, 0x12500008}},
        {"6=15000000", -1, -180, {0x1250000e, 0x12500008}},
        {"14=0", -1, -180, {0x1250000e, 0x12500008}},
        {"connect", -1, -180, {0x1250000f, 0x12500008}},
        {"register 6", 7, 7, {0x12500008}},
        {"2=2", 5, 0}, // of the RPC client only negative results are failures
        {"connect", 1, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.step);
        host = {.failing = row.step, .result = row.result};
        Pool pool;
        const Reporter report{pool, "operation"};
        EXPECT_EQ(numberOf(withClient(report, &host, [](auto&) { return Status::ok; })), row.status);
        EXPECT_EQ(pool.codes(), row.messages);
        const auto last = row.status == 0 ? steps.end() : std::find(steps.begin(), steps.end(), row.step) + 1;
        EXPECT_EQ(host.calls, (std::vector<std::string>{steps.begin(), last}));
        EXPECT_EQ(host.clients, row.status == 0 ? 1 : 0);
        host.registered.reset();
    }
}
