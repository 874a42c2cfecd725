// The RPC server half against callers that do not play by the rules.
#include "rpc_server/rpc_server.h"

#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <ctime>
#include <optional>
#include <stdexcept>
#include <system_error>

#include <gtest/gtest.h>

#include "support/scripted_peer.h"
#include "support/shortened_limits.h"

namespace {

using namespace scripted_peer;
using namespace std::chrono_literals;

constexpr std::uint32_t kProgram = 77;

class NumberService : public kvrpc::RpcService {
public:
    kvrpc::RpcReply handle(const kvrpc::RpcCall& call) override {
        kvrpc::RpcReply reply;
        if (call.program != kProgram) {
            reply.status = kvrpc::AcceptStatus::programUnavailable;
        } else if (call.version != 1) {
            reply.status = kvrpc::AcceptStatus::programMismatch;
            reply.lowestVersion = reply.highestVersion = 1;
        }
        reply.results = words({42});
        return reply;
    }
    void connectionClosed(std::uint64_t) noexcept override {
        ++closed;
        closed.notify_all();
    }

    std::atomic<int> closed{0};
};

const Bytes kGoodCall = words({5, 0, 2, kProgram, 1, 0, 0, 0, 0, 0});

class RpcServerTest : public testing::Test {
protected:
    NumberService service{};
    kvrpc::RpcServer server{service};
    std::string address = server.start("127.0.0.1", 0);

    bool answers(const Wire& wire) {
        wire.send(fragment(kGoodCall));
        return wire.receiveRecord() == words({5, 1, 0, 0, 0, 0, 42});
    }
};

TEST_F(RpcServerTest, AnswersEveryCallWithItsStatusAndKeepsTheConnection) {
    const Bytes credentials = words({9, 2, 0x61620000, 1000, 1000, 1, 4}); // stamp, "ab", user, group, a further group
    const struct {
        const char* name;
        Bytes call;
        Bytes reply;
    } cases[] = {
        {"success", words({8, 0, 2, kProgram, 1, 0, 0, 0, 0, 0}), words({8, 1, 0, 0, 0, 0, 42})},
        {"another RPC version", words({8, 0, 3}), words({8, 1, 1, 0, 2, 2})},
        {"another program", words({8, 0, 2, 78, 1, 0, 0, 0, 0, 0}), words({8, 1, 0, 0, 0, 1})},
        {"another version", words({8, 0, 2, kProgram, 2, 0, 0, 0, 0, 0}), words({8, 1, 0, 0, 0, 2, 1, 1})},
        {"system credentials", words({8, 0, 2, kProgram, 1, 0, 1, 28}) + credentials + words({0, 0}),
         words({8, 1, 0, 0, 0, 0, 42})},
        {"broken system credentials", words({8, 0, 2, kProgram, 1, 0, 1, 4, 9, 0, 0}), words({8, 1, 1, 1, 1})},
        {"unknown credentials", words({8, 0, 2, kProgram, 1, 0, 6, 0, 0, 0}), words({8, 1, 1, 1, 2})},
    };
    const Wire wire{Wire::connectTo(address)};
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        wire.send(fragment(each.call));
        EXPECT_EQ(wire.receiveRecord(), each.reply);
    }
    EXPECT_TRUE(answers(wire));
    EXPECT_EQ(server.acceptedConnections(), 1U);
}

TEST_F(RpcServerTest, ClosesTheConnectionOfWhatIsNoCall) {
    const struct {
        const char* name;
        Bytes sent;
    } cases[] = {
        {"a reply", fragment(words({5, 1, 0, 0, 0, 0}))},
        {"an empty record", fragment({})},
        {"end within the head", fragment(words({5, 0, 2, kProgram, 1}))},
        {"credentials too long", fragment(words({5, 0, 2, kProgram, 1, 0, 0, 404}) + Bytes(404, 0) + words({0, 0}))},
        {"a record over the limit", words({0xFFFFFFFF})},
        {"empty fragments for ever", Bytes(65536, 0)},
    };
    const Wire other{Wire::connectTo(address)};
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        const Wire wire{Wire::connectTo(address)};
        wire.send(each.sent);
        EXPECT_EQ(wire.receive(1), Bytes{});
    }
    EXPECT_TRUE(answers(other)) << "nobody else is troubled";
}

TEST_F(RpcServerTest, GivesUpHalfRecordsAndKeepsIdleConnections) {
    const ShortenedLimits shortened;
    const Wire idle{Wire::connectTo(address)};
    EXPECT_TRUE(answers(idle));
    const Wire half{Wire::connectTo(address)};
    half.send({0x80, 0});
    EXPECT_EQ(half.receive(1), Bytes{});
    EXPECT_TRUE(answers(idle));
}

TEST_F(RpcServerTest, DropsConnectionsAndGoesOnListening) {
    const Wire first{Wire::connectTo(address)};
    EXPECT_TRUE(answers(first));
    server.dropConnections();
    EXPECT_EQ(first.receive(1), Bytes{});
    service.closed.wait(0);
    const Wire second{Wire::connectTo(address)};
    EXPECT_TRUE(answers(second));
}

TEST_F(RpcServerTest, StopsAtOnceAndStartsAgainOnTheSamePort) {
    const Wire idle{Wire::connectTo(address)};
    EXPECT_TRUE(answers(idle));
    const Wire half{Wire::connectTo(address)};
    half.send({0x80});
    const auto begin = std::chrono::steady_clock::now();
    server.stop();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 1s);
    EXPECT_EQ(idle.receive(1), Bytes{});
    EXPECT_THROW(Wire::connectTo(address), std::runtime_error);
    const auto port = static_cast<std::uint16_t>(std::stoi(address.substr(address.find(':') + 1)));
    EXPECT_EQ(server.start("127.0.0.1", port), address);
    EXPECT_TRUE(answers(Wire{Wire::connectTo(address)}));
    kvrpc::RpcServer second{service};
    EXPECT_THROW(second.start("127.0.0.1", port), std::system_error);
    EXPECT_THROW(second.start("nowhere", 0), std::system_error);
}

TEST_F(RpcServerTest, WaitsPatientlyWhileTheSystemHasNoMoreDescriptors) {
    std::optional<Wire> spare{std::in_place, Wire::connectTo(address)};
    EXPECT_TRUE(answers(*spare));
    const int last = ::dup(0); // the lowest that is free
    ::close(last);
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit tight{static_cast<rlim_t>(last) + 1, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &tight);
    const Wire waiting{Wire::connectTo(address)}; // takes the last one
    waiting.send(fragment(kGoodCall));
    const std::clock_t begin = std::clock();
    EXPECT_FALSE(waiting.isReadable(200ms));
    EXPECT_LT(std::clock() - begin, CLOCKS_PER_SEC / 50);
    spare.reset();
    EXPECT_EQ(waiting.receiveRecord(), words({5, 1, 0, 0, 0, 0, 42}));
    setrlimit(RLIMIT_NOFILE, &before);
}

} // namespace
