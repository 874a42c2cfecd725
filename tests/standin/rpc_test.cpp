// The RPC client against peers that do not play by the rules, and a server against such clients.
#if !defined(_WIN32)
#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

#include <latch>

#include <gtest/gtest.h>

#include "error_lists/platform_messages.h"
#include "platform/rpc_client.h"
#include "support/one_target.h"
#include "support/scripted_peer.h"
#include "support/shortened_limits.h"
#include "support/threads.h"

namespace {

using namespace platform_messages;
using namespace scripted_peer;
using Codes = std::vector<std::uint32_t>;

constexpr std::chrono::milliseconds kShort{50};
constexpr std::chrono::seconds kUsual{15};

bool xdrText(Xdr& xdr, void* value) { return xdr_string(xdr, *static_cast<std::string*>(value)); }

/// A client, and calls that a good peer answers with their own argument.
struct Client {
    explicit Client(const std::string& address) : client(pool, address.c_str()) {}

    void setCallTimeout(std::chrono::microseconds time) {
        EXPECT_EQ(client.setParameter(Pool{}, 6, static_cast<std::uint32_t>(time.count())), 0);
    }
    bool echoes(const std::string& text = "text") { return echoes(pool, text); }
    bool echoes(KvCErrorListPool& own, std::string text) {
        std::string received;
        return client.clntCall(own, 10, xdrText, &text, xdrText, &received) == 0 && received == text;
    }

    Pool pool{};
    KvCRpcClient client;
};

Bytes echoOf(const Bytes& call) { return reply(call, Bytes(call.begin() + 40, call.end())); }

/// Until the client is gone.
void echoAll(const Wire& wire) {
    for (Bytes call = wire.receiveRecord(); !call.empty(); call = wire.receiveRecord()) {
        wire.send(echoOf(call));
    }
}

TEST(RpcClient, CallsOfManyThreadsShareOneConnectionAndTheirRepliesMayOvertakeEachOther) {
    constexpr std::size_t kThreads = 16;
    constexpr int kRounds = 50;
    ScriptedPeer peer{{[](const Wire& wire) {
        for (int round = 0; round < kRounds; ++round) {
            Bytes replies;
            for (std::size_t i = 0; i < kThreads; ++i) {
                replies = echoOf(wire.receiveRecord()) + replies;
            }
            wire.send(replies);
        }
        wire.awaitEnd();
    }}};
    Client client{peer.address()};
    for (int round = 0; round < kRounds; ++round) {
        inThreads(kThreads, [&client](std::size_t number) {
            const Pool own;
            EXPECT_TRUE(client.echoes(own, std::string(1000 * number, 'x')));
        });
    }
}

TEST(RpcClient, TakesRepliesInEveryFormThatIsAllowedAndIgnoresThoseOfNobody) {
    const Bytes header = words({0, 2, 0x20004B56, 2, 10, 0, 0, 0, 0}); // behind the xid, without credentials
    std::latch taken{1};
    ScriptedPeer peer{{[&](const Wire& wire) {
                           const Bytes call = wire.receiveRecord();
                           EXPECT_EQ(Bytes(call.begin() + 4, call.begin() + 40), header);
                           wire.send(reply(words({wordAt(call, 0) + 1000}), words({99})) + fragment(call));
                           // An unknown verifier, padding of any value, bytes behind the results.
                           const Bytes record = words({wordAt(call, 0), 1, 0, 77, 397}) + Bytes(400, 0xEE) +
                                                words({0, wordAt(call, 10), wordAt(call, 11), 2, 3});
                           for (std::size_t i = 0; i < record.size(); ++i) {
                               wire.send(fragment({}, false) + fragment({record[i]}, i + 1 == record.size()));
                           }
                           wire.send(reply(call, words({99})));
                           wire.send(echoOf(wire.receiveRecord()) + reply(call, words({99})));
                           taken.wait();
                           wire.send({0x80, 0, 0, 30, 1}); // the end comes within a late reply
                       },
                       echoAll}};
    Client client{peer.address()};
    EXPECT_TRUE(client.echoes());
    EXPECT_TRUE(client.echoes("other"));
    taken.count_down();
    peer.awaitFirstClosed();
    EXPECT_TRUE(client.echoes()) << "a connection that is found closed is replaced unnoticed";
    EXPECT_EQ(peer.accepted(), 2);
    EXPECT_EQ(client.pool.codes(), Codes{});
}

TEST(RpcClient, ABadReplyCostsItsCallAndABrokenStreamTheConnectionToo) {
    const struct {
        const char* name;
        Bytes sent; // behind the xid when the connection is kept
        std::uint32_t message;
        bool kept = true;
    } rows[] = {
        {"reject status that makes 3 of 100", words({1, 1, 0xFFFFFF9F}), kRpcCallRefused},
        {"unknown reply status", words({1, 5, 0, 0, 0, 0}), kRpcReplyMalformed},
        {"verifier too long", words({1, 0, 0, 401}) + Bytes(404, 0) + words({0, 0}), kRpcReplyMalformed},
        {"verifier longer than the record", words({1, 0, 0, 0x7FFFFFFC, 0, 0}), kRpcReplyMalformed},
        {"verifier whose padding wraps", words({1, 0, 0, 0xFFFFFFFF, 0, 0}), kRpcReplyMalformed},
        {"no results", words({1, 0, 0, 0, 0}), kRpcReplyMalformed},
        {"empty record", fragment({}), kRpcReplyMalformed, false},
        {"empty fragments for ever", Bytes(1 << 20, 0), kRpcReplyMalformed, false},
        {"end within a reply", words({0x80000020, 1, 1, 0}), kRpcConnectionLost, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ScriptedPeer peer{{[&](const Wire& wire) {
                               const Bytes xid = words({wordAt(wire.receiveRecord(), 0)});
                               wire.send(row.kept ? fragment(xid + row.sent) : row.sent);
                               if (row.kept) { echoAll(wire); }
                           },
                           echoAll}};
        Client client{peer.address()};
        EXPECT_FALSE(client.echoes());
        EXPECT_EQ(client.pool.codes(), Codes{row.message});
        EXPECT_TRUE(client.echoes());
        EXPECT_EQ(peer.accepted(), row.kept ? 1 : 2);
    }
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
    shared.setCallTimeout(kShort);
    std::thread first{[&] {
        EXPECT_FALSE(shared.echoes());
        firstGaveUp.count_down();
    }};
    firstArrived.wait();
    shared.setCallTimeout(kUsual);
    const Pool pool;
    EXPECT_TRUE(shared.echoes(pool, "second"));
    first.join();
}

TEST(RpcClient, APeerThatStopsReadingCostsTheCallTimeoutAndTheConnection) {
    std::latch gaveUp{1};
    ScriptedPeer peer{{[&](const Wire&) { gaveUp.wait(); }, echoAll}};
    Client client{peer.address()};
    client.setCallTimeout(kShort);
    EXPECT_FALSE(client.echoes(std::string(16 << 20, 'x')));
    client.setCallTimeout(kUsual);
    gaveUp.count_down();
    EXPECT_EQ(client.pool.codes(), Codes{kRpcCallTimedOut});
    EXPECT_TRUE(client.echoes());
}

TEST(RpcClient, APeerThatTakesNothingBeforeItsLateReplyIsTakenIsServed) {
    constexpr std::size_t kMuch = 8 << 20;
    ScriptedPeer peer{{[](const Wire& wire) {
        const Bytes late = wire.receiveRecord();
        const Bytes start = wire.receive(48); // of the second call
        wire.send(reply(late, Bytes(2 * kMuch, 0)));
        wire.send(reply(Bytes(start.begin() + 4, start.end()), words({kMuch}) + wire.receive(kMuch)));
        wire.awaitEnd();
    }}};
    Client client{peer.address()};
    client.setCallTimeout(kShort);
    EXPECT_FALSE(client.echoes());
    client.setCallTimeout(kUsual);
    EXPECT_TRUE(client.echoes(std::string(kMuch, 'x')));
}

TEST(RpcClient, TellsWhyItCannotConnect) {
    std::string dead;
    { dead = ScriptedPeer{{}}.address(); }
    const std::pair<std::string, std::uint32_t> rows[] = {{dead, kRpcConnectionRefused},
                                                          {"255.255.255.255:1", kRpcHostUnreachable},
                                                          {"localhost:80", kRpcClientUnusable}};
    for (const auto& [address, message] : rows) {
        Client client{address};
        EXPECT_LT(client.client.connect(client.pool), 0);
        EXPECT_FALSE(client.echoes()) << "a call tries again, and fails alike";
        EXPECT_EQ(client.pool.codes(), (Codes{message, message}));
    }
}

#if !defined(_WIN32)
TEST(RpcClient, AnAddressThatIsSilentCostsTheConnectTimeout) {
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    ASSERT_EQ(::listen(listener, 0), 0); // at a port that the system picks
    sockaddr_in local{};
    socklen_t length = sizeof local;
    ASSERT_EQ(::getsockname(listener, reinterpret_cast<sockaddr*>(&local), &length), 0);
    const std::string silent = "127.0.0.1:" + std::to_string(ntohs(local.sin_port));
    const Wire filler{silent}; // the backlog is full now, so that nobody answers the next
    const ShortenedLimits shortened{kShort};
    Client client{silent};
    client.setCallTimeout(kUsual);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_LT(client.client.connect(client.pool), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, kUsual / 2);
    EXPECT_EQ(client.pool.codes(), Codes{kRpcConnectTimedOut});
    ::close(listener);
}

TEST(RpcClient, AReplyThatNeverComesCostsTheMemoryOfWhatArrives) {
    ScriptedPeer peer{{[](const Wire& wire) {
        wire.send(words({0x80000000U | (255U << 20)}));
        wire.awaitEnd();
    }}};
    Client client{peer.address()};
    rusage before{}, after{};
    getrusage(RUSAGE_SELF, &before);
    client.setCallTimeout(kShort);
    EXPECT_FALSE(client.echoes());
    getrusage(RUSAGE_SELF, &after);
    EXPECT_EQ(client.pool.codes(), Codes{kRpcCallTimedOut});
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 4096) << "KiB";
}
#endif

/// The answer to procedure 1 may wait.
struct AgreeableService : kvrpc::RpcService {
    kvrpc::RpcReply handle(const kvrpc::RpcCall& call) override {
        kvrpc::RpcReply reply;
        reply.mayWait = call.procedure == 1;
        return reply;
    }
    void connectionClosed(std::uint64_t) noexcept override {}
};

TEST(RpcServer, AnswersEveryCallAndClosesTheConnectionOfWhatIsNone) {
    const Bytes call = words({8, 0, 2, 0x20004B56, 2, 0});
    const Bytes credentials = words({9, 2, 0x61620000, 1000, 1000, 1, 4}); // stamp, "ab", user, group, a further group
    const Bytes success = words({8, 1, 0, 0, 0, 0});
    const struct {
        const char* name;
        Bytes sent;
        Bytes reply; // none when the connection is closed instead
    } rows[] = {
        {"credentials", fragment(call + words({1, 28}) + credentials + words({0, 0})), success},
        {"broken credentials", fragment(call + words({1, 4, 9, 0, 0})), words({8, 1, 1, 1, 1})},
        {"unknown credentials", fragment(call + words({6, 0, 0, 0})), words({8, 1, 1, 1, 2})},
        {"another RPC version", fragment(words({8, 0, 3})), words({8, 1, 1, 0, 2, 2})},
        {"a reply", fragment(words({8, 1, 0, 0, 0, 0})), {}},
        {"end within the head", fragment(words({8, 0, 2, 77, 1})), {}},
        {"too long credentials", fragment(call + words({0, 404}) + Bytes(404, 0) + words({0, 0})), {}},
        {"a record over the limit", words({0xFFFFFFFF}), {}},
        {"half a mark, and no more", {0x80, 0}, {}},
    };
    AgreeableService service;
    kvrpc::RpcServer server{service, kShort};
    const std::string address = server.start("127.0.0.1", 0);
    const Wire idle{address};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Wire wire{address};
        wire.send(row.sent);
        EXPECT_EQ(wire.receiveRecord(), row.reply);
    }
    idle.send(fragment(call + words({0, 0, 0, 0})));
    EXPECT_EQ(idle.receiveRecord(), success) << "an idle connection is kept";
}

TEST(RpcServer, AnAnswerThatMayWaitWaitsForNoCallThatIsNotThere) {
    const auto call = [](std::uint32_t xid, std::uint32_t procedure) {
        return fragment(words({xid, 0, 2, 0x20004B56, 2, procedure, 0, 0, 0, 0}));
    };
    const auto success = [](std::uint32_t xid) { return words({xid, 1, 0, 0, 0, 0}); };
    AgreeableService service;
    kvrpc::RpcServer server{service};
    const Wire wire{server.start("127.0.0.1", 0)};
    const Bytes last = call(4, 1);
    wire.send(call(1, 1) + call(2, 1) + call(3, 0) + Bytes(last.begin(), last.begin() + 9));
    for (const std::uint32_t xid : {1U, 2U, 3U}) {
        EXPECT_EQ(wire.receiveRecord(), success(xid));
    }
    wire.send(Bytes(last.begin() + 9, last.end()));
    EXPECT_EQ(wire.receiveRecord(), success(4));
}

} // namespace
