// The completion wait, seen through the commands that wait: polls, naps, deadlines and messages.
#include <algorithm>

#include "api/KvApplicationManagerAP.h"
#include "protocol/completion_wait.h"
#include "protocol/procedure_numbers.h"
#include "support/one_target.h"

using namespace applman;

namespace {

constexpr std::uint32_t kUnsupported = 0x14a00804;
constexpr std::uint32_t kUnknownProcess = 0x14a00803;

class CompletionWait : public OneTarget {
protected:
    CompletionWait() {
        for (const std::uint32_t command : {kStartAppl, kUnloadAppl}) {
            t.target.scriptAlways(command, wire::result(0));
        }
    }

    std::int32_t start() { return KvApplMan_startAppl(pool, t.device, t.access, 7); }
    std::int32_t unload() { return KvApplMan_unloadAppl(pool, t.device, t.access, 7); }

    void timeout(std::uint32_t seconds) { t.target.script(kGetParam, wire::value(seconds)); }
    void state(std::int32_t value, std::initializer_list<std::uint32_t> codes = {}) {
        t.target.script(kGetCommandState, wire::result(value, codes));
    }
    void alwaysBusy() { t.target.scriptAlways(kGetCommandState, wire::result(2)); }

    std::size_t polls() const {
        const auto asked = procedures();
        return static_cast<std::size_t>(std::count(asked.begin(), asked.end(), kGetCommandState));
    }
};

} // namespace

TEST_F(CompletionWait, ACommandThatIsDoneAtOnceIsPolledOnceAndItsMessagesArrive) {
    timeout(10);
    state(0, {0x14a00900});
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(procedures(), (std::vector<std::uint32_t>{kStartAppl, kGetParam, kGetCommandState}));
    const auto item = request<TApplManGetParamRequest>(1);
    EXPECT_EQ(item.applId, 0U) << "the timeout is the application manager's";
    const auto poll = request<TApplManRequest>(2);
    EXPECT_EQ((std::array{poll.first, poll.second, poll.third}), (std::array<std::uint32_t, 3>{1, t.accessId, 7}));
    EXPECT_EQ(recorded_clock::naps(), std::vector<std::uint32_t>{});
    EXPECT_EQ(messages(pool), Messages{"target 0x14a00900"});
}

TEST_F(CompletionWait, NapsDoubleUpTo32MillisecondsAndEndWithTheTime) {
    timeout(1);
    timeout(1); // asked once more at the deadline: no more is granted
    alwaysBusy();
    EXPECT_EQ(start(), -150);
    const auto naps = recorded_clock::naps();
    ASSERT_GT(naps.size(), 6U);
    EXPECT_EQ(std::vector(naps.begin(), naps.begin() + 7),
              (std::vector<std::uint32_t>{1000, 2000, 4000, 8000, 16000, 32000, 32000}));
    EXPECT_EQ(naps.back(), 32000U);
    EXPECT_EQ(polls(), naps.size() + 1) << "the last poll finds the deadline passed";
    EXPECT_EQ(naps.size(), 5U + 31U) << "31 ms, then 32 ms each until a second is reached";
    EXPECT_EQ(messages(pool), (Messages{"waitWhileBusy 0x12500043(1)", "waitWhileBusy 0x12500004"}));
}

TEST_F(CompletionWait, AProcessMayBeGrantedMoreTimeCountedFromTheStart) {
    timeout(1);
    timeout(2);                                                      // the process itself asks for more
    t.target.scriptAlways(kGetParam, wire::noValue({kUnsupported})); // and then has nothing more to say
    alwaysBusy();
    KvPlatform_addEntry(pool, 4711);
    EXPECT_EQ(start(), -150);
    std::uint64_t slept = 0;
    for (const std::uint32_t nap : recorded_clock::naps()) {
        slept += nap;
    }
    EXPECT_GE(slept, 2'000'000U);
    EXPECT_LT(slept, 2'032'000U);
    EXPECT_EQ(pool.codes(), (std::vector<std::uint32_t>{4711, 0x12500043, 0x12500004}))
        << "what the later readings reported is dropped, and their default does not empty the pool";
    EXPECT_EQ(messages(pool)[1], "waitWhileBusy 0x12500043(2)");
    const auto asked = t.target.requests();
    const auto again =
        std::find_if(asked.begin() + 2, asked.end(), [](const auto& r) { return r.procedure == kGetParam; });
    EXPECT_EQ(wire::recordOf<TApplManGetParamRequest>(again->arguments).applId, 7U);
}

TEST_F(CompletionWait, ALongTimeoutNeverWrapsAround) {
    recorded_clock::restart(0xfffffffffffff000);
    timeout(0xffffffff);
    state(2);
    state(0);
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(recorded_clock::naps(), std::vector<std::uint32_t>{1000});
}

TEST_F(CompletionWait, AnyOtherStateIsAFailureAtOnce) {
    timeout(10);
    state(2, {0x14a00901});
    state(3, {0x14a00902});
    EXPECT_EQ(start(), -150);
    EXPECT_EQ(messages(pool), (Messages{"target 0x14a00901", "target 0x14a00902", "waitWhileBusy 0x12500004"}));
    EXPECT_EQ(recorded_clock::naps().size(), 1U);
}

TEST_F(CompletionWait, AFailedPollEndsTheWaitWithoutTheCommandsOwnMessage) {
    timeout(10);
    state(2, {kUnknownProcess});
    t.target.script(kGetCommandState, wire::failedCall());
    EXPECT_EQ(unload(), -185) << "and nothing is dismissed";
    EXPECT_EQ(messages(pool), (Messages{"target 0x14a00803", "waitWhileBusy 0x1250000a(waitWhileBusy)"}));
}

TEST_F(CompletionWait, UnloadCountsAsDoneWhenTheTargetNoLongerKnowsTheProcess) {
    for (const std::int32_t last : {1, 2}) {
        pool->reset();
        KvPlatform_addEntry(pool, 4711);
        timeout(1);
        timeout(1);
        if (last == 1) { state(1, {kUnknownProcess}); }
        if (last == 2) { t.target.scriptAlways(kGetCommandState, wire::result(2, {kUnknownProcess})); }
        EXPECT_EQ(unload(), 0);
        EXPECT_EQ(pool.codes(), std::vector<std::uint32_t>{4711});
        t.target.forgetScripts();
        t.target.scriptAlways(kUnloadAppl, wire::result(0));
    }
    timeout(1);
    state(0, {kUnknownProcess});
    EXPECT_EQ(unload(), 0);
    EXPECT_EQ(pool.codes(), (std::vector<std::uint32_t>{4711, kUnknownProcess})) << "one that is done reports as ever";
    t.target.script(kStartAppl, wire::result(0));
    pool->reset();
    timeout(1);
    state(1, {kUnknownProcess});
    EXPECT_EQ(start(), -150) << "only unloading is dismissed";
}

TEST_F(CompletionWait, WithoutATimeoutNothingIsPolled) {
    struct Row {
        simulated_target::ScriptedReply reply;
        std::int32_t status;
        Messages expected;
    };
    const Row rows[] = {
        {wire::value(std::uint32_t{0}), -150, {"waitWhileBusy 0x12500023"}},
        {wire::noValue({0x14a00805}),
         -175,
         {"target 0x14a00805", "KvApplMan_getApplInfo 0x12500007", "waitWhileBusy 0x12500023"}},
        {wire::failedCall(),
         -185,
         {"KvApplMan_getApplInfo 0x1250000a(KvApplMan_getApplInfo)", "waitWhileBusy 0x12500023"}},
        {wire::value(Text{"10"}), -204, {"decodeParameterReturnValue 0x12500013", "waitWhileBusy 0x12500023"}},
    };
    for (const Row& row : rows) {
        pool->reset();
        t.target.script(kGetParam, row.reply);
        EXPECT_EQ(start(), row.status);
        EXPECT_EQ(messages(pool), row.expected);
    }
    EXPECT_EQ(polls(), 0U);
}

TEST_F(CompletionWait, TheDefaultTimeoutEmptiesThePool) {
    t.target.script(kStartAppl, wire::result(0, {0x14a00900}));
    t.target.script(kGetParam, wire::noValue({kUnsupported}));
    state(0);
    KvPlatform_addEntry(pool, 4711);
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(pool.codes(), std::vector<std::uint32_t>{});
}

TEST_F(CompletionWait, StatusesWithoutAMessageOfTheirOwnAreNamed) {
    KV_RPC_PROG_APPLMAN_HOST2Client client{pool, t.address.c_str()};
    ASSERT_EQ(client.connect(pool), 0);
    timeout(1);
    state(1);
    EXPECT_EQ(waitWhileBusy(pool, &client, 7, 1, Status::pause), Status::pause);
    EXPECT_EQ(messages(pool), Messages{"waitWhileBusy 0x12500020(-165)"});
    pool->reset();
    EXPECT_EQ(waitWhileBusy(pool, nullptr, 7, 1, Status::pause), Status::argument);
    EXPECT_EQ(messages(pool), Messages{"waitWhileBusy 0x12500042"});
}
