// The RPC client against the server half, and against peers that do not play by the rules.
#include "platform/rpc_client.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <array>
#include <atomic>
#include <cstring>
#include <future>
#include <latch>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

#include "error_lists/platform_messages.h"
#include "rpc_client/rpc_limits.h"
#include "rpc_server/rpc_server.h"
#include "support/pool.h"
#include "support/scripted_peer.h"
#include "support/shortened_limits.h"

namespace {

using namespace platform_messages;
using namespace scripted_peer;
using namespace std::chrono_literals;
using Codes = std::vector<std::uint32_t>;

bool xdrNumber(Xdr& xdr, void* value) { return xdr_u_int(xdr, *static_cast<std::uint32_t*>(value)); }
bool xdrText(Xdr& xdr, void* value) { return xdr_string(xdr, *static_cast<std::string*>(value)); }

constexpr std::uint32_t kEcho = 10;
constexpr std::uint32_t kThrow = 11;
constexpr std::uint32_t kLacked = 12;

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

struct Client {
    explicit Client(const std::string& address) : client(pool, address.c_str()) {}

    /// Sends a number; the result is what came back.
    std::int32_t echo(std::uint32_t sent, std::uint32_t& received, std::uint32_t procedure = kEcho) {
        received = 0;
        return client.clntCall(pool, procedure, xdrNumber, &sent, xdrNumber, &received);
    }
    bool echoes(std::uint32_t number) {
        std::uint32_t received = 0;
        return echo(number, received) == 0 && received == number;
    }

    Pool pool{};
    KvCRpcClient client;
};

/// Answers every call with its own argument, until the client is gone.
void echoAll(const Wire& wire) {
    for (Bytes call = wire.receiveRecord(); !call.empty(); call = wire.receiveRecord()) {
        wire.send(reply(call, Bytes(call.begin() + 40, call.end())));
    }
}

TEST(RpcClient, CarriesOutCallsOnOneConnection) {
    EchoService service;
    kvrpc::RpcServer server{service};
    Client client{server.start("127.0.0.1", 0)};
    EXPECT_EQ(client.client.connect(client.pool), 0);
    std::string sent(3 << 20, 'x');
    std::string received;
    EXPECT_EQ(client.client.clntCall(client.pool, kEcho, xdrText, &sent, xdrText, &received), 0);
    EXPECT_EQ(received, sent);
    client.client.freeResults(xdrText, &received);
    EXPECT_TRUE(received.empty());

    std::uint32_t number = 0;
    EXPECT_EQ(client.echo(1, number, kLacked), KvCRpcClient::kProcedureNotOffered);
    EXPECT_EQ(client.pool.codes(), Codes{}) << "a procedure that is not offered is told by the result alone";
    const std::int32_t result = client.echo(1, number, kThrow);
    EXPECT_LT(result, 0);
    EXPECT_NE(result, KvCRpcClient::kProcedureNotOffered);
    EXPECT_EQ(client.pool.codes(), Codes{kRpcCallRefused});
    EXPECT_TRUE(client.echoes(7));
    EXPECT_EQ(server.acceptedConnections(), 1U);
}

/// How many open sockets a child process would get.
int socketsToInherit() {
    int count = 0;
    for (int descriptor = 0; descriptor < 256; ++descriptor) {
        struct stat status {};
        const bool isSocket = ::fstat(descriptor, &status) == 0 && S_ISSOCK(status.st_mode);
        if (isSocket && (::fcntl(descriptor, F_GETFD) & FD_CLOEXEC) == 0) { ++count; }
    }
    return count;
}

TEST(RpcClient, HandsNoSocketOnToChildProcesses) {
    const int before = socketsToInherit();
    EchoService service;
    kvrpc::RpcServer server{service};
    Client client{server.start("127.0.0.1", 0)};
    EXPECT_TRUE(client.echoes(1));
    EXPECT_EQ(socketsToInherit(), before);
}

TEST(RpcClient, SendsProgramAndVersionWithoutCredentials) {
    std::promise<Bytes> seen;
    ScriptedPeer peer{{[&](const Wire& wire) { seen.set_value(wire.receiveRecord()); }}};
    Client client{peer.address()};
    EXPECT_EQ(client.client.setParameter(client.pool, 2, 3), 0);
    EXPECT_FALSE(client.echoes(9));
    Bytes call = seen.get_future().get();
    call.erase(call.begin(), call.begin() + 4); // the xid is the client's own
    EXPECT_EQ(call, words({0, 2, 0x20004B56, 3, kEcho, 0, 0, 0, 0, 9}));
}

TEST(RpcClient, ManyThreadsGetTheirOwnReplies) {
    EchoService service;
    kvrpc::RpcServer server{service};
    Client shared{server.start("127.0.0.1", 0)};
    std::vector<std::thread> threads;
    std::atomic<int> right{0};
    for (std::uint32_t thread = 0; thread < 16; ++thread) {
        threads.emplace_back([&, thread] {
            Pool pool;
            for (std::uint32_t i = 0; i < 100; ++i) {
                std::uint32_t sent = thread << 16 | i;
                std::uint32_t received = 0;
                const auto result = shared.client.clntCall(pool, kEcho, xdrNumber, &sent, xdrNumber, &received);
                if (result == 0 && received == sent) { ++right; }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(right, 1600);
    EXPECT_EQ(server.acceptedConnections(), 1U);
}

/// Runs `count` calls at once, each with its number. Result: how many got their own number back.
int callAtOnce(Client& shared, std::uint32_t count) {
    std::atomic<int> right{0};
    std::vector<std::thread> threads;
    for (std::uint32_t number = 0; number < count; ++number) {
        threads.emplace_back([&, number] {
            Pool pool;
            std::uint32_t sent = number;
            std::uint32_t received = 0xFFFF;
            const auto result = shared.client.clntCall(pool, kEcho, xdrNumber, &sent, xdrNumber, &received);
            if (result == 0 && received == sent) { ++right; }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return right;
}

TEST(RpcClient, RepliesInAnotherOrderReachTheirCallers) {
    ScriptedPeer peer{{[](const Wire& wire) {
        std::vector<Bytes> calls(16);
        for (Bytes& call : calls) {
            call = wire.receiveRecord();
        }
        for (auto call = calls.rbegin(); call != calls.rend(); ++call) {
            wire.send(reply(*call, words({wordAt(*call, 10)})));
        }
        wire.awaitEnd();
    }}};
    Client shared{peer.address()};
    EXPECT_EQ(callAtOnce(shared, 16), 16);
    EXPECT_EQ(peer.accepted(), 1);
}

TEST(RpcClient, ALostConnectionFailsEveryCallOnItOnceAndIsReplacedOnce) {
    ScriptedPeer peer{{[](const Wire& wire) {
                           for (int i = 0; i < 8; ++i) {
                               wire.receiveRecord();
                           }
                           wire.reset();
                       },
                       echoAll}};
    Client shared{peer.address()};
    EXPECT_EQ(callAtOnce(shared, 8), 0);
    EXPECT_EQ(callAtOnce(shared, 8), 8);
    EXPECT_EQ(peer.accepted(), 2);
}

Bytes successful(const Bytes& call, const Bytes& results) { return words({wordAt(call, 0), 1, 0, 0, 0, 0}) + results; }

struct Delivery {
    const char* name;
    Bytes (*bytes)(const Bytes& call, const Bytes& results);
};
const Delivery kGoodDeliveries[] = {
    {"fragments of one byte",
     [](const Bytes& call, const Bytes& results) {
         Bytes bytes;
         const Bytes record = successful(call, results);
         for (std::size_t i = 0; i < record.size(); ++i) {
             bytes = bytes + fragment({record[i]}, i + 1 == record.size());
         }
         return bytes;
     }},
    {"empty fragments between",
     [](const Bytes& call, const Bytes& results) {
         return fragment({}, false) + fragment(successful(call, {}), false) + fragment({}, false) + fragment(results);
     }},
    {"an unknown verifier with padding of any value",
     [](const Bytes& call, const Bytes& results) {
         return fragment(words({wordAt(call, 0), 1, 0, 77, 397}) + Bytes(400, 0xEE) + words({0}) + results);
     }},
    {"bytes behind the results",
     [](const Bytes& call, const Bytes& results) {
         return reply(call, results + words({1, 2, 3}));
     }},
    {"a reply to nobody first",
     [](const Bytes& call, const Bytes& results) {
         return reply(words({wordAt(call, 0) + 1000}), words({99})) + reply(call, results);
     }},
    {"a call first", [](const Bytes& call, const Bytes& results) { return fragment(call) + reply(call, results); }},
    {"the reply twice",
     [](const Bytes& call, const Bytes& results) { return reply(call, results) + reply(call, words({99})); }},
};

TEST(RpcClient, TakesRepliesInEveryFormThatIsAllowed) {
    for (const Delivery& delivery : kGoodDeliveries) {
        SCOPED_TRACE(delivery.name);
        ScriptedPeer peer{{[&](const Wire& wire) {
            for (int i = 0; i < 2; ++i) {
                const Bytes call = wire.receiveRecord();
                wire.send(delivery.bytes(call, words({wordAt(call, 10)})));
            }
            wire.awaitEnd();
        }}};
        Client client{peer.address()};
        EXPECT_TRUE(client.echoes(1));
        EXPECT_TRUE(client.echoes(2));
        EXPECT_EQ(peer.accepted(), 1);
        EXPECT_EQ(client.pool.codes(), Codes{});
    }
}

struct BadReply {
    const char* name;
    Bytes afterXid;
    std::uint32_t message;
};
const BadReply kBadReplies[] = {
    {"RPC version mismatch", words({1, 1, 0, 2, 2}), kRpcCallRefused},
    {"authentication error", words({1, 1, 1, 1}), kRpcCallRefused},
    {"unknown authentication error", words({1, 1, 1, 99}), kRpcCallRefused},
    {"unknown reject status", words({1, 1, 3}), kRpcCallRefused},
    {"a reject status that makes 3 of 100", words({1, 1, 0xFFFFFF9F}), kRpcCallRefused},
    {"highest positive reject status", words({1, 1, 0x7FFFFFFF}), kRpcCallRefused},
    {"program unavailable", words({1, 0, 0, 0, 1}), kRpcCallRefused},
    {"program mismatch", words({1, 0, 0, 0, 2, 1, 1}), kRpcCallRefused},
    {"garbage arguments", words({1, 0, 0, 0, 4}), kRpcCallRefused},
    {"system error", words({1, 0, 0, 0, 5}), kRpcCallRefused},
    {"unknown accept status", words({1, 0, 0, 0, 6}), kRpcCallRefused},
    {"highest accept status", words({1, 0, 0, 0, 0xFFFFFFFF}), kRpcCallRefused},
    {"unknown reply status", words({1, 5, 0, 0, 0, 7}), kRpcReplyMalformed},
    {"verifier too long", words({1, 0, 0, 401}) + Bytes(404, 0) + words({0, 7}), kRpcReplyMalformed},
    {"verifier longer than the record", words({1, 0, 0, 0x7FFFFFFC, 0, 7}), kRpcReplyMalformed},
    {"verifier whose padding wraps", words({1, 0, 0, 0xFFFFFFFF, 0, 7}), kRpcReplyMalformed},
    {"end within the head", words({1, 0, 0}), kRpcReplyMalformed},
    {"no results", words({1, 0, 0, 0, 0}), kRpcReplyMalformed},
};

TEST(RpcClient, ABadReplyFailsItsOwnCallOnly) {
    for (const BadReply& bad : kBadReplies) {
        SCOPED_TRACE(bad.name);
        ScriptedPeer peer{{[&](const Wire& wire) {
            const Bytes call = wire.receiveRecord();
            wire.send(fragment(words({wordAt(call, 0)}) + bad.afterXid));
            echoAll(wire);
        }}};
        Client client{peer.address()};
        std::uint32_t received = 0;
        const std::int32_t result = client.echo(1, received);
        EXPECT_LT(result, 0);
        EXPECT_NE(result, KvCRpcClient::kProcedureNotOffered);
        EXPECT_EQ(client.pool.codes(), Codes{bad.message});
        EXPECT_NE(client.pool.text(0).find(peer.address()), std::string::npos) << client.pool.text(0);
        EXPECT_TRUE(client.echoes(2));
        EXPECT_EQ(peer.accepted(), 1);
    }
}

struct BrokenStream {
    const char* name;
    void (*play)(const Wire& wire, const Bytes& call);
    std::uint32_t message;
};
const BrokenStream kBrokenStreams[] = {
    {"a fragment over the limit", [](const Wire& wire, const Bytes&) { wire.send(words({0xFFFFFFFF})); },
     kRpcReplyMalformed},
    {"fragments whose sum is over the limit",
     [](const Wire& wire, const Bytes& call) { wire.send(fragment(call, false) + words({0x80000000U | (1U << 20)})); },
     kRpcReplyMalformed},
    {"an empty record", [](const Wire& wire, const Bytes&) { wire.send(fragment({})); }, kRpcReplyMalformed},
    {"empty fragments for ever", [](const Wire& wire, const Bytes&) { wire.send(Bytes(1 << 20, 0)); },
     kRpcReplyMalformed},
    {"end before the reply", [](const Wire&, const Bytes&) {}, kRpcConnectionLost},
    {"end within a mark",
     [](const Wire& wire, const Bytes&) {
         wire.send({0x80, 0});
     },
     kRpcConnectionLost},
    {"end within a reply",
     [](const Wire& wire, const Bytes& call) {
         wire.send(words({0x80000020}) + words({wordAt(call, 0), 1, 0}));
     },
     kRpcConnectionLost},
    {"reset", [](const Wire& wire, const Bytes&) { wire.reset(); }, kRpcConnectionLost},
};

TEST(RpcClient, ABrokenStreamIsReplacedByTheNextCall) {
    kvrpc::limits::largestReply = 1U << 20;
    for (const BrokenStream& broken : kBrokenStreams) {
        SCOPED_TRACE(broken.name);
        ScriptedPeer peer{{[&](const Wire& wire) { broken.play(wire, wire.receiveRecord()); },
                           [](const Wire& wire) {
                               const Bytes call = wire.receiveRecord();
                               EXPECT_EQ(wordAt(call, 10), 2U) << "a call that was sent is never sent again";
                               wire.send(reply(call, words({2})));
                               wire.awaitEnd();
                           }}};
        Client client{peer.address()};
        EXPECT_FALSE(client.echoes(1));
        EXPECT_EQ(client.pool.codes(), Codes{broken.message});
        EXPECT_TRUE(client.echoes(2));
        EXPECT_EQ(peer.accepted(), 2);
    }
    kvrpc::limits::largestReply = kvrpc::kLargestRecord;
}

TEST(RpcClient, AConnectionThatIsFoundClosedIsReplacedUnnoticed) {
    ScriptedPeer peer{{[](const Wire& wire) {
                           const Bytes call = wire.receiveRecord();
                           wire.send(reply(call, words({1})) + reply(call, words({1}))); // the second is nobody's
                       },
                       echoAll}};
    Client client{peer.address()};
    EXPECT_TRUE(client.echoes(1));
    peer.awaitClosed(1);
    EXPECT_TRUE(client.echoes(2));
    EXPECT_EQ(peer.accepted(), 2);
    EXPECT_EQ(client.pool.codes(), Codes{});
}

TEST(RpcClient, ALateReplyDoesNotReachTheNextCall) {
    ScriptedPeer peer{{[](const Wire& wire) {
        const Bytes late = wire.receiveRecord();
        const Bytes call = wire.receiveRecord();
        wire.send(reply(late, words({wordAt(late, 10)})) + reply(call, words({wordAt(call, 10)})));
        wire.awaitEnd();
    }}};
    Client client{peer.address()};
    {
        const ShortenedLimits shortened;
        EXPECT_FALSE(client.echoes(1));
    }
    EXPECT_EQ(client.pool.codes(), Codes{kRpcCallTimedOut});
    EXPECT_TRUE(client.echoes(2));
    EXPECT_EQ(peer.accepted(), 1);
}

TEST(RpcClient, WhenTheReaderGivesUpAnotherCallGoesOnReading) {
    std::latch firstArrived{1};
    std::latch firstGaveUp{1};
    ScriptedPeer peer{{[&](const Wire& wire) {
        wire.receiveRecord();
        firstArrived.count_down();
        const Bytes second = wire.receiveRecord();
        firstGaveUp.wait();
        wire.send(reply(second, words({wordAt(second, 10)})));
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
    std::uint32_t sent = 2;
    std::uint32_t received = 0;
    EXPECT_EQ(shared.client.clntCall(pool, kEcho, xdrNumber, &sent, xdrNumber, &received), 0);
    EXPECT_EQ(received, 2U);
    first.join();
}

TEST(RpcClient, APeerThatStopsReadingCostsTheCallTimeoutAndTheConnection) {
    ScriptedPeer peer{{[](const Wire& wire) { wire.awaitEnd(); }, echoAll}};
    Client client{peer.address()};
    std::string large(16 << 20, 'x');
    std::string received;
    {
        const ShortenedLimits shortened;
        EXPECT_LT(client.client.clntCall(client.pool, kEcho, xdrText, &large, xdrText, &received), 0);
    }
    EXPECT_EQ(client.pool.codes(), Codes{kRpcCallTimedOut});
    EXPECT_TRUE(client.echoes(2));
    EXPECT_EQ(peer.accepted(), 2);
}

TEST(RpcClient, APeerThatTakesNothingBeforeItsRepliesAreTakenIsServed) {
    constexpr std::size_t kMuch = 8 << 20;
    ScriptedPeer peer{{[&](const Wire& wire) {
        const Bytes late = wire.receiveRecord();
        const Bytes start = wire.receive(44); // of the second call
        wire.send(reply(late, words({1}) + Bytes(kMuch, 0)));
        EXPECT_EQ(wire.receive(4 + kMuch).size(), 4 + kMuch);
        wire.send(reply(Bytes(start.begin() + 4, start.end()), words({0})));
        wire.awaitEnd();
    }}};
    Client client{peer.address()};
    {
        const ShortenedLimits shortened;
        EXPECT_FALSE(client.echoes(1));
    }
    std::string large(kMuch, 'x');
    std::string received = "?";
    EXPECT_EQ(client.client.clntCall(client.pool, kEcho, xdrText, &large, xdrText, &received), 0);
    EXPECT_EQ(received, "");
}

TEST(RpcClient, MemoryGrowsOnlyWithWhatArrives) {
    ScriptedPeer peer{{[](const Wire& wire) {
        wire.receiveRecord();
        wire.send(words({0x80000000U | (255U << 20)}));
        wire.awaitEnd();
    }}};
    Client client{peer.address()};
    rusage before{};
    rusage after{};
    getrusage(RUSAGE_SELF, &before);
    {
        const ShortenedLimits shortened;
        EXPECT_FALSE(client.echoes(1));
    }
    getrusage(RUSAGE_SELF, &after);
    EXPECT_EQ(client.pool.codes(), Codes{kRpcCallTimedOut});
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 4096) << "KiB";
}

TEST(RpcClient, TellsWhyItCannotConnect) {
    const ShortenedLimits shortened;
    std::string silent;
    const Wire listener{listenOnLoopback(silent, 0)};
    const Wire filler{Wire::connectTo(silent)}; // the backlog is full now, so that nobody answers the next
    const struct {
        std::string address;
        std::uint32_t message;
    } cases[] = {{deadAddress(), kRpcConnectionRefused},
                 {"255.255.255.255:1", kRpcHostUnreachable},
                 {silent, kRpcConnectTimedOut},
                 {"127.0.0.1:0", kRpcClientUnusable},
                 {"127.0.0.1", kRpcClientUnusable},
                 {"localhost:80", kRpcClientUnusable},
                 {"", kRpcClientUnusable}};
    for (const auto& each : cases) {
        SCOPED_TRACE(each.address);
        Client client{each.address};
        EXPECT_LT(client.client.connect(client.pool), 0);
        EXPECT_FALSE(client.echoes(1)) << "a call tries again, and fails alike";
        EXPECT_EQ(client.pool.codes(), (Codes{each.message, each.message}));
        EXPECT_NE(client.pool.text(0).find(each.address), std::string::npos);
    }
}

TEST(RpcClient, KnowsTheAddressOfItsTarget) {
    Client client{"192.168.1.20:1234"};
    const std::uint32_t address = client.client.getIpAddressV4(client.pool);
    std::array<std::uint8_t, 4> inMemory{};
    std::memcpy(inMemory.data(), &address, 4);
    EXPECT_EQ(inMemory, (std::array<std::uint8_t, 4>{192, 168, 1, 20}));
    Client none{"192.168.1:1234"};
    EXPECT_EQ(none.client.getIpAddressV4(none.pool), 0xFFFFFFFFU);
}

TEST(RpcClient, RefusesParametersThatItCannotServe) {
    const struct {
        std::uint32_t id;
        std::uint32_t value;
        bool accepted;
    } cases[] = {{6, 15'000'000, true}, {1, 6, true},  {2, 2, true},  {14, 0, true}, {1, 17, false},
                 {14, 1, false},        {2, 0, false}, {6, 0, false}, {3, 1, false}, {0, 0, false}};
    for (const auto& each : cases) {
        SCOPED_TRACE(testing::Message() << each.id << " = " << each.value);
        Client client{"127.0.0.1:1"};
        EXPECT_EQ(client.client.setParameter(client.pool, each.id, each.value) >= 0, each.accepted);
        EXPECT_EQ(client.pool.codes(), each.accepted ? Codes{} : Codes{kRpcParameterRefused});
    }
}

TEST(RpcClient, SurvivesRoutinesThatFailOrThrow) {
    EchoService service;
    kvrpc::RpcServer server{service};
    Client client{server.start("127.0.0.1", 0)};
    const XdrRoutine failing = [](Xdr&, void*) { return false; };
    const XdrRoutine throwing = [](Xdr&, void*) -> bool { throw std::bad_alloc{}; };
    std::uint32_t number = 0;
    EXPECT_LT(client.client.clntCall(client.pool, kEcho, failing, &number, xdrNumber, &number), 0);
    EXPECT_LT(client.client.clntCall(client.pool, kEcho, throwing, &number, xdrNumber, &number), 0);
    EXPECT_LT(client.client.clntCall(client.pool, kEcho, xdrNumber, &number, failing, &number), 0);
    EXPECT_LT(client.client.clntCall(client.pool, kEcho, xdrNumber, &number, throwing, &number), 0);
    client.client.freeResults(throwing, &number);
    EXPECT_EQ(client.pool.codes(),
              (Codes{kRpcRequestNotEncoded, kRpcClientUnusable, kRpcReplyMalformed, kRpcClientUnusable}));
    EXPECT_TRUE(client.echoes(5));
    EXPECT_EQ(server.acceptedConnections(), 1U);
}

} // namespace
