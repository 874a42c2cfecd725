// Start, stop, terminate and unload: what is sent, what is refused, under which names.
#include "api/KvApplicationManagerAP.h"
#include "api/client_level.h"
#include "protocol/procedure_numbers.h"
#include "support/one_target.h"

using namespace applman;

namespace {

using Function = std::int32_t (*)(KvCErrorListPool&, void*, void*, std::uint32_t);

struct Command {
    Function function;
    std::uint32_t procedure;
    std::vector<std::uint32_t> request; // before the application ID; 0 stands for the access ID
    const char* name;
    const char* message;
    std::int32_t status;
};

const Command kCommands[] = {
    {KvApplMan_startAppl, kStartAppl, {1, 0}, "KvApplMan_startAppl", "0x12500004", -150},
    {KvApplMan_stopAppl, kStopAppl, {1, 0}, "KvApplMan_stopTerminateAppl", "0x12500005", -160},
    {KvApplMan_terminateAppl, kTerminateAppl, {0}, "KvApplMan_stopTerminateAppl", "0x12500060", -161},
    {KvApplMan_unloadAppl, kUnloadAppl, {2, 0}, "KvApplMan_unloadAppl", "0x12500006", -170},
};

class Control : public OneTarget, public ::testing::WithParamInterface<Command> {
protected:
    std::int32_t call() { return GetParam().function(pool, t.device, t.access, 0xabc); }
};

std::string message(const Command& command) { return std::string(command.name) + " " + command.message; }

} // namespace

TEST_P(Control, AnAcceptedCommandIsSentOnceAndWaitedFor) {
    const Command& command = GetParam();
    t.target.script(command.procedure, wire::result(5, {0x14a00900})); // any value but -1 accepts
    t.target.script(kGetParam, wire::value(std::uint32_t{10}));
    t.target.script(kGetCommandState, wire::result(0));
    EXPECT_EQ(call(), 0);
    EXPECT_EQ(procedures(), (std::vector<std::uint32_t>{command.procedure, kGetParam, kGetCommandState}));
    std::vector<std::uint8_t> expected;
    Xdr encoder = Xdr::encoder(expected);
    for (std::uint32_t word : command.request) {
        xdr_u_int(encoder, word == 0 ? t.accessId : word);
    }
    std::uint32_t applId = 0xabc;
    xdr_u_int(encoder, applId);
    EXPECT_EQ(t.target.requests()[0].arguments, expected);
    EXPECT_EQ(messages(pool), Messages{"target 0x14a00900"});
}

TEST_P(Control, ARefusalIsReportedAndNotWaitedFor) {
    t.target.script(GetParam().procedure, wire::result(-1, {0x14a00803}));
    EXPECT_EQ(call(), GetParam().status) << "a process that is unknown at once is not dismissed either";
    EXPECT_EQ(messages(pool), (Messages{"target 0x14a00803", message(GetParam())}));
    EXPECT_EQ(procedures().size(), 1U);
}

TEST_P(Control, AFailedCallNamesTheOperation) {
    for (const auto& reply : {wire::failedCall(), wire::notOffered()}) {
        pool->reset();
        t.target.script(GetParam().procedure, reply);
        EXPECT_EQ(call(), -185);
        const std::string name = GetParam().name;
        EXPECT_EQ(messages(pool), Messages{name + " 0x1250000a(" + name + ")"});
    }
}

TEST_P(Control, ACommandThatFailsOnTheTargetHasItsOwnStatus) {
    t.target.script(GetParam().procedure, wire::result(0));
    t.target.script(kGetParam, wire::value(std::uint32_t{10}));
    t.target.script(kGetCommandState, wire::result(1));
    EXPECT_EQ(call(), GetParam().status);
    EXPECT_EQ(messages(pool), Messages{std::string("waitWhileBusy ") + GetParam().message});
}

INSTANTIATE_TEST_SUITE_P(Commands, Control, ::testing::ValuesIn(kCommands),
                         [](const auto& parameter) { return std::to_string(parameter.param.procedure); });

TEST(ControlClientLevel, AMissingClientIsRefusedUnderTheirOwnNames) {
    Pool pool;
    EXPECT_EQ(KvApplMan_stopTerminateAppl(*pool, nullptr, 1, 2, true), Status::argument);
    EXPECT_EQ(KvApplMan_unloadAppl(*pool, static_cast<KV_RPC_PROG_APPLMAN_HOST2Client*>(nullptr), 1, 2),
              Status::argument);
    EXPECT_EQ(messages(pool), (Messages{"KvApplMan_stopTerminateAppl 1024", "KvApplMan_unloadAppl 1024"}));
}
