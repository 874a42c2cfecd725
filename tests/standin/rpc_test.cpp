// The RPC client and the server half, each against the other and against peers that do not play by the rules.
#if !defined(_WIN32)
#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

#include <latch>

#include <gtest/gtest.h>

#include "error_lists/platform_messages.h"
#include "platform/rpc_client.h"
#include "rpc_server/rpc_server.h"
#include "support/pool.h"
#include "support/scripted_peer.h"
#include "support/shortened_limits.h"

namespace {

using namespace platform_messages;
using namespace scripted_peer;
using Codes = std::vector<std::uint32_t>;

constexpr std::uint32_t kEcho = 10, kThrow = 11, kLacked = 12; // procedures

class EchoService : public kvrpc::RpcService {
public:
    kvrpc::RpcReply handle(const kvrpc::RpcCall& call) override {
        if (call.procedure == kThrow) { throw std::runtime_error{"broken"}; }
        kvrpc::RpcReply reply;
        if (call.procedure == kLacked) { reply.status = kvrpc::AcceptStatus::procedureUnavailable; }
        reply.results.assign(call.arguments.begin(), call.arguments.end());
        return reply;
    }
    void connectionClosed(std::uint64_t) noexcept override {}
};

bool xdrNumber(Xdr& xdr, void* value) { return xdr_u_int(xdr, *static_cast<std::uint32_t*>(value)); }
bool xdrText(Xdr& xdr, void* value) { return xdr_string(xdr, *static_cast<std::string*>(value)); }

struct Client {
    explicit Client(const std::string& address) : client(pool, address.c_str()) {}

    std::int32_t call(std::uint32_t procedure, std::uint32_t number) { return callWith(pool, procedure, number); }
    bool echoes(std::uint32_t number) { return call(kEcho, number) == 0; }
    bool echoes(std::string text) {
        std::string received;
        return client.clntCall(pool, kEcho, xdrText, &text, xdrText, &received) == 0 && received == text;
    }

    /// Sends a number. Result: that of the call, or 99 when another number came back.
    std::int32_t callWith(Pool& own, std::uint32_t procedure, std::uint32_t sent) {
        std::uint32_t received = ~sent;
        const std::int32_t result = client.clntCall(own, procedure, xdrNumber, &sent, xdrNumber, &received);
        return result == 0 && received != sent ? 99 : result;
    }

    /// Sends `count` numbers at once. Result: how many came back to where they came from.
    int echoesAtOnce(std::uint32_t count) {
        std::atomic<int> right{0};
        std::vector<std::thread> threads;
        for (std::uint32_t number = 0; number < count; ++number) {
            threads.emplace_back([&, number] {
                Pool own;
                right += callWith(own, kEcho, number) == 0 ? 1 : 0;
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        return right;
    }

    Pool pool{};
    KvCRpcClient client;
};

Bytes echoOf(const Bytes& call) { return reply(call, Bytes(call.begin() + 40, call.end())); }

/// Answers every call with its own argument, until the client is gone.
void echoAll(const Wire& wire) {
    for (Bytes call = wire.receiveRecord(); !call.empty(); call = wire.receiveRecord()) {
        wire.send(echoOf(call));
    }
}

class Rpc : public testing::Test {
protected:
    EchoService service{};
    kvrpc::RpcServer server{service};
    std::string address = server.start("127.0.0.1", 0);
    Client client{address};
};

TEST_F(Rpc, CallsOfManyThreadsShareOneConnectionThatOutlivesTheirFailures) {
    EXPECT_TRUE(client.echoes(std::string(3 << 20, 'x')));
    EXPECT_EQ(client.call(kLacked, 1), KvCRpcClient::kProcedureNotOffered);
    EXPECT_EQ(client.pool.codes(), Codes{}) << "a procedure that is not offered is told by the result alone";
    EXPECT_LT(client.call(kThrow, 1), 0);

    const XdrRoutine failing = [](Xdr&, void*) { return false; };
    const XdrRoutine throwing = [](Xdr&, void*) -> bool { throw std::bad_alloc{}; };
    std::uint32_t number = 0;
    EXPECT_LT(client.client.clntCall(client.pool, kEcho, failing, &number, xdrNumber, &number), 0);
    EXPECT_LT(client.client.clntCall(client.pool, kEcho, throwing, &number, xdrNumber, &number), 0);
    EXPECT_LT(client.client.clntCall(client.pool, kEcho, xdrNumber, &number, failing, &number), 0);
    EXPECT_LT(client.client.clntCall(client.pool, kEcho, xdrNumber, &number, throwing, &number), 0);
    EXPECT_EQ(client.pool.codes(), (Codes{kRpcCallRefused, kRpcRequestNotEncoded, kRpcClientUnusable,
                                          kRpcReplyMalformed, kRpcClientUnusable}));
    for (int round = 0; round < 50; ++round) {
        EXPECT_EQ(client.echoesAtOnce(16), 16);
    }
    EXPECT_EQ(server.acceptedConnections(), 1U);
}

TEST(RpcClient, TakesRepliesInEveryFormThatIsAllowedAndIgnoresThoseOfNobody) {
    ScriptedPeer peer{{[](const Wire& wire) {
                           const Bytes call = wire.receiveRecord();
                           wire.send(reply(words({wordAt(call, 0) + 1000}), words({99})) + fragment(call));
                           // An unknown verifier, padding of any value, bytes behind the results.
                           const Bytes record = words({wordAt(call, 0), 1, 0, 77, 397}) + Bytes(400, 0xEE) +
                                                words({0, wordAt(call, 10), 1, 2, 3});
                           for (std::size_t i = 0; i < record.size(); ++i) {
                               wire.send(fragment({}, false) + fragment({record[i]}, i + 1 == record.size()));
                           }
                           wire.send(reply(call, words({99})));
                           wire.send(echoOf(wire.receiveRecord()) + reply(call, words({99})));
                       },
                       echoAll}};
    Client client{peer.address()};
    EXPECT_TRUE(client.echoes(1));
    EXPECT_TRUE(client.echoes(2));
    peer.awaitFirstClosed();
    EXPECT_TRUE(client.echoes(3)) << "a connection that is found closed is replaced unnoticed";
    EXPECT_EQ(peer.accepted(), 2);
    EXPECT_EQ(client.pool.codes(), Codes{});
}

TEST(RpcClient, WhenTheReaderGivesUpAnotherCallGoesOnReading) {
    std::latch firstArrived{1};
    std::latch firstGaveUp{1};
    ScriptedPeer peer{{[&](const Wire& wire) {
        wire.receiveRecord();
        firstArrived.count_down();
        const Bytes second = wire.receiveRecord();
        firstGaveUp.wait();
        wire.send(echoOf(second));
        wire.awaitEnd();
    }}};
    Client shared{peer.address()};
    EXPECT_EQ(shared.client.setParameter(shared.pool, 6, 50'000), 0);
    std::thread first{[&] {
        EXPECT_FALSE(shared.echoes(1));
        firstGaveUp.count_down();
    }};
    firstArrived.wait();
    EXPECT_EQ(shared.client.setParameter(shared.pool, 6, 15'000'000), 0);
    Pool pool;
    EXPECT_EQ(shared.callWith(pool, kEcho, 2), 0);
    first.join();
}

TEST(RpcClient, APeerThatStopsReadingCostsTheCallTimeoutAndTheConnection) {
    std::latch gaveUp{1};
    ScriptedPeer peer{{[&](const Wire&) { gaveUp.wait(); }, echoAll}};
    Client client{peer.address()};
    {
        const ShortenedLimits shortened;
        EXPECT_FALSE(client.echoes(std::string(16 << 20, 'x')));
    }
    gaveUp.count_down();
    EXPECT_EQ(client.pool.codes(), Codes{kRpcCallTimedOut});
    EXPECT_TRUE(client.echoes(2));
    EXPECT_EQ(peer.accepted(), 2);
}

TEST(RpcClient, APeerThatTakesNothingBeforeItsLateReplyIsTakenIsServed) {
    constexpr std::size_t kMuch = 8 << 20;
    ScriptedPeer peer{{[&](const Wire& wire) {
        const Bytes late = wire.receiveRecord();
        const Bytes start = wire.receive(48); // of the second call
        wire.send(reply(late, Bytes(2 * kMuch, 0)));
        wire.send(reply(Bytes(start.begin() + 4, start.end()), words({kMuch}) + wire.receive(kMuch)));
        wire.awaitEnd();
    }}};
    Client client{peer.address()};
    {
        const ShortenedLimits shortened;
        EXPECT_FALSE(client.echoes(1));
    }
    EXPECT_TRUE(client.echoes(std::string(kMuch, 'x')));
}

TEST(RpcClient, AConnectionThatEndedWithinALateReplyIsReplacedUnnoticed) {
    std::latch gaveUp{1};
    ScriptedPeer peer{{[&](const Wire& wire) {
                           const Bytes late = echoOf(wire.receiveRecord());
                           gaveUp.wait();
                           wire.send(Bytes(late.begin(), late.end() - 1));
                       },
                       echoAll}};
    Client client{peer.address()};
    {
        const ShortenedLimits shortened;
        EXPECT_FALSE(client.echoes(1));
    }
    gaveUp.count_down();
    peer.awaitFirstClosed();
    EXPECT_TRUE(client.echoes(2));
}

TEST(RpcClient, TellsWhyItCannotConnect) {
    const ShortenedLimits shortened;
    std::string dead;
    { dead = ScriptedPeer{{}}.address(); }
    const std::pair<std::string, std::uint32_t> cases[] = {{dead, kRpcConnectionRefused},
                                                           {"255.255.255.255:1", kRpcHostUnreachable},
                                                           {"localhost:80", kRpcClientUnusable}};
    for (const auto& [address, message] : cases) {
        Client client{address};
        EXPECT_LT(client.client.connect(client.pool), 0);
        EXPECT_FALSE(client.echoes(1)) << "a call tries again, and fails alike";
        EXPECT_EQ(client.pool.codes(), (Codes{message, message}));
        EXPECT_NE(client.pool.text(0).find(address), std::string::npos);
    }
}

#if !defined(_WIN32)
TEST(RpcClient, AnAddressThatIsSilentCostsTheConnectTimeout) {
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in local{};
    local.sin_family = AF_INET;
    local.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof local;
    ASSERT_EQ(::bind(listener, reinterpret_cast<const sockaddr*>(&local), length), 0);
    ASSERT_EQ(::listen(listener, 0), 0);
    ASSERT_EQ(::getsockname(listener, reinterpret_cast<sockaddr*>(&local), &length), 0);
    const std::string silent = "127.0.0.1:" + std::to_string(ntohs(local.sin_port));
    const Wire filler{silent}; // the backlog is full now, so that nobody answers the next
    const ShortenedLimits shortened;
    Client client{silent};
    EXPECT_LT(client.client.connect(client.pool), 0);
    EXPECT_EQ(client.pool.codes(), Codes{kRpcConnectTimedOut});
    ::close(listener);
}

#endif

} // namespace
