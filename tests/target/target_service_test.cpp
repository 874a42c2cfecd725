// The port as a whole: programs and versions, prescribed replies, the record of requests.
#include <future>

#include "platform/rpc_client.h"
#include "target/target_calls.h"

namespace simulated_target {
namespace {

using namespace applman;
using kvrpc::AcceptStatus;

using Port = TargetCalls;

TEST_F(Port, AnswersTwoProgramsOfOneVersionEach) {
    struct Row {
        std::uint32_t program;
        std::uint32_t version;
        std::uint32_t procedure;
        AcceptStatus status;
    };
    const Row rows[] = {
        {kApplManProgram, 2, 0, AcceptStatus::success},
        {file_transfer::kProgram, 1, 0, AcceptStatus::success},
        {kApplManProgram, 1, 0, AcceptStatus::programMismatch},
        {file_transfer::kProgram, 2, 1, AcceptStatus::programMismatch},
        {0, 2, 0, AcceptStatus::programUnavailable},
        {file_transfer::kProgram + 1, 1, 1, AcceptStatus::programUnavailable},
        {file_transfer::kProgram, 1, 7, AcceptStatus::procedureUnavailable},
        {kApplManProgram, 2, 1, AcceptStatus::procedureUnavailable},
        {kApplManProgram, 2, 12, AcceptStatus::procedureUnavailable},
        {kApplManProgram, 2, 21, AcceptStatus::procedureUnavailable},
        {kApplManProgram, 2, 30, AcceptStatus::procedureUnavailable},
    };
    for (const Row& row : rows) {
        const auto reply = call(row.program, row.version, row.procedure, {});
        EXPECT_EQ(reply.status, row.status) << row.program << " " << row.version << " " << row.procedure;
        EXPECT_TRUE(reply.results.empty());
    }
    const auto mismatch = call(kApplManProgram, 3, 0, {});
    EXPECT_EQ(mismatch.lowestVersion, 2U);
    EXPECT_EQ(mismatch.highestVersion, 2U);
}

TEST_F(Port, TellsArgumentsThatEndTooEarly) {
    for (const std::uint32_t procedure : {2U, 3U, 4U, 5U, 6U, 7U, 8U, 9U, 10U, 11U, 13U, 17U, 18U, 29U}) {
        EXPECT_EQ(call(kApplManProgram, 2, procedure, {0, 0, 1}).status, AcceptStatus::garbageArguments) << procedure;
    }
    for (std::uint32_t procedure = file_transfer::kOpen; procedure <= file_transfer::kSetTime; ++procedure) {
        EXPECT_EQ(call(file_transfer::kProgram, 1, procedure, {0, 0, 1}).status, AcceptStatus::garbageArguments)
            << procedure;
    }
}

TEST_F(Port, DoesNotOfferWhatItIsToldToLack) {
    Options options = defaults();
    options.lackedProcedures = {kOpenGroup};
    restart(options);
    EXPECT_EQ(call(kApplManProgram, 2, kOpenGroup, {0, 0, 0, 1}).status, AcceptStatus::procedureUnavailable);
    const TApplManGroupPart none{.words = {0, 0, 0, 1, 0}};
    EXPECT_EQ(registerProcess(1, none).result, 0);
}

TEST_F(Port, WithoutAStoreFailsTransfersAndLoads) {
    Options options = defaults();
    ASSERT_TRUE(options.store.empty());
    TargetService storeless{options};
    const auto opened = storeless.handle({1, file_transfer::kProgram, 1, file_transfer::kOpen,
                                          wire::bytesOf(file_transfer::OpenRequest{1, 0, "d", "f"})});
    EXPECT_EQ(wire::recordOf<file_transfer::Reply>(opened.results).result, file_transfer::kStoreFailed);
}

TEST_F(Port, GivesPrescribedRepliesInOrderAndThenItsOwn) {
    service().script(kGetCommandState, wire::result(2));
    service().script(kGetCommandState, wire::result(1, {0x14a00900}));
    service().scriptAlways(kStartAppl, wire::result(-1));
    EXPECT_EQ(commandState(0).result, 2);
    const auto second = commandState(0);
    EXPECT_EQ(second.result, 1);
    EXPECT_EQ(onlyCode(second.errorList), 0x14a00900U);
    EXPECT_EQ(commandState(0).result, 0);

    service().script(kStartAppl, wire::result(5));
    EXPECT_EQ(command(kStartAppl, 3).result, 5);
    EXPECT_TRUE(command(kStartAppl, 3).errorList.empty());
    service().forgetScripts();
    EXPECT_EQ(onlyCode(command(kStartAppl, 3).errorList), 0x14a00803U);
}

TEST_F(Port, RecordsRequestsOfTheApplicationManagerInOrder) {
    service().scriptAlways(kStopAppl, wire::result(0));
    command(kStopAppl, 3);
    put("d", "file", "x");
    commandState(4);
    const std::vector<Request> seen = service().requests();
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[0].procedure, kStopAppl);
    EXPECT_EQ(wire::recordOf<TApplManRequest>(seen[0].arguments).third, 3U);
    EXPECT_EQ(seen[1].procedure, kGetCommandState);
    service().forgetRequests();
    EXPECT_TRUE(service().requests().empty());
}

struct Client : KvCRpcClient {
    Client(Pool& pool, const std::string& address) : KvCRpcClient(pool, address.c_str()) {
        setParameter(pool, 1, 6);
        setParameter(pool, 2, kApplManVersion);
        connected = connect(pool);
    }
    /// The call's status.
    std::int32_t commandState(Pool& pool) {
        const auto encode = [](Xdr& x, void* record) { return xdr_record(x, *static_cast<TApplManRequest*>(record)); };
        const auto decode = [](Xdr& x, void* record) { return xdr_record(x, *static_cast<TApplManResult*>(record)); };
        TApplManRequest request{kMode, kAccessId, 0};
        TApplManResult reply;
        return clntCall(pool, kGetCommandState, encode, &request, decode, &reply);
    }
    std::int32_t connected = -1;
};

TEST(SimulatedTargetOnItsPort, AnswersOneHostWhileAnotherWaitsAndStopsWithoutWaitingForIt) {
    SimulatedTarget target{Options{}};
    const std::string address = target.start();
    ScriptedReply late = wire::result(0);
    late.delay = std::chrono::hours{1};
    target.script(kGetCommandState, late);

    Pool waitingPool;
    Pool pool;
    Client waiting{waitingPool, address};
    Client client{pool, address};
    ASSERT_EQ(waiting.connected, 0);
    ASSERT_EQ(client.connected, 0);
    auto waited = std::async(std::launch::async, [&] { return waiting.commandState(waitingPool); });
    while (target.requests().empty()) {
        std::this_thread::yield();
    }
    EXPECT_EQ(client.commandState(pool), 0);
    target.stop();
    waited.get();
    EXPECT_EQ(target.acceptedConnections(), 2U);
    EXPECT_NE(client.commandState(pool), 0);
}

TEST(SimulatedTargetOnItsPort, ServesAgainAfterDroppedConnectionsAndAfterAStop) {
    SimulatedTarget target{Options{}};
    Pool pool;
    for (int start = 0; start < 2; ++start) {
        const std::string address = target.start();
        Client client{pool, address};
        EXPECT_EQ(client.commandState(pool), 0);
        target.dropConnections();
        Client another{pool, address};
        EXPECT_EQ(another.commandState(pool), 0);
        target.stop();
    }
    EXPECT_EQ(target.requests().size(), 4U);
}

} // namespace
} // namespace simulated_target
