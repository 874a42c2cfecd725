// The completion wait, seen through the commands that wait: polls, naps, deadlines and messages.
#include <numeric>

#include "api/api_test.h"

using namespace applman;

namespace {

constexpr std::uint32_t kUnsupported = 0x14a00804;
constexpr std::uint32_t kUnknownProcess = 0x14a00803;

class CompletionWait : public ApiTest {
protected:
    CompletionWait() {
        t.target.scriptAlways(kStartAppl, wire::result(0));
        t.target.scriptAlways(kUnloadAppl, wire::result(0));
    }

    Outcome start() { return outcome(KvApplMan_startAppl(pool, t.device, t.access, 7)); }
    std::int32_t unload() { return KvApplMan_unloadAppl(pool, t.device, t.access, 7); }

    void timeout(std::uint32_t seconds) { t.target.script(kGetParam, wire::value(seconds)); }
    void state(std::int32_t value, std::initializer_list<std::uint32_t> codes = {}) {
        t.target.script(kGetCommandState, wire::result(value, codes));
    }
    void alwaysBusy() { t.target.scriptAlways(kGetCommandState, wire::result(2)); }
};

} // namespace

TEST_F(CompletionWait, NapsDoubleUpTo32MillisecondsAndEndWithTheTime) {
    timeout(1);
    timeout(1); // asked once more at the deadline: no more is granted
    alwaysBusy();
    EXPECT_EQ(start(), (Outcome{-150, {"waitWhileBusy 0x12500043(1)", "waitWhileBusy 0x12500004"}}));
    Words expected{1000, 2000, 4000, 8000, 16000};
    expected.insert(expected.end(), 31, 32000); // 31 ms, then 32 ms each until a second is reached
    EXPECT_EQ(recorded_clock::naps(), expected);
    const Words asked = procedures();
    EXPECT_EQ(std::count(asked.begin(), asked.end(), kGetCommandState), 37)
        << "the last poll finds the deadline passed";
}

TEST_F(CompletionWait, AProcessMayBeGrantedMoreTimeCountedFromTheStart) {
    timeout(1);
    timeout(2);                                                      // the process itself asks for more
    t.target.scriptAlways(kGetParam, wire::noValue({kUnsupported})); // and then has nothing more to say
    alwaysBusy();
    KvPlatform_addEntry(pool, 4711);
    EXPECT_EQ(KvApplMan_startAppl(pool, t.device, t.access, 7), -150);
    const Words naps = recorded_clock::naps();
    const std::uint32_t slept = std::accumulate(naps.begin(), naps.end(), 0U);
    EXPECT_GE(slept, 2'000'000U);
    EXPECT_LT(slept, 2'032'000U);
    EXPECT_EQ(pool.codes(), (Words{4711, 0x12500043, 0x12500004}))
        << "what the later readings reported is dropped, and their default does not empty the pool";
    EXPECT_EQ(messages(pool)[1], "waitWhileBusy 0x12500043(2)");
    const Words asked = procedures();
    const auto again = std::find(asked.begin() + 2, asked.end(), kGetParam) - asked.begin();
    EXPECT_EQ(sentWords(static_cast<std::size_t>(again)), (Words{1, t.accessId, 7, 40}));
}

TEST_F(CompletionWait, ALongTimeoutNeverWrapsAround) {
    recorded_clock::restart(0xfffffffffffff000);
    timeout(0xffffffff);
    state(2);
    state(0);
    EXPECT_EQ(start(), (Outcome{0, {}}));
    EXPECT_EQ(recorded_clock::naps(), Words{1000});
}

TEST_F(CompletionWait, UnloadCountsAsDoneWhenTheTargetNoLongerKnowsTheProcess) {
    KvPlatform_addEntry(pool, 4711);
    timeout(1);
    state(1, {kUnknownProcess});
    EXPECT_EQ(unload(), 0);
    EXPECT_EQ(pool.codes(), Words{4711});
    timeout(1);
    state(0, {kUnknownProcess});
    EXPECT_EQ(unload(), 0);
    EXPECT_EQ(pool.codes(), (Words{4711, kUnknownProcess})) << "one that is done reports as ever";
    pool->reset();
    timeout(1);
    state(1, {kUnknownProcess});
    EXPECT_EQ(start().first, -150) << "only unloading is dismissed";
    timeout(1);
    timeout(1);
    t.target.scriptAlways(kGetCommandState, wire::result(2, {kUnknownProcess}));
    EXPECT_EQ(outcome(unload()), (Outcome{0, {}})) << "also one that ran out of time";
}

TEST_F(CompletionWait, WithoutATimeoutNothingIsPolled) {
    t.target.script(kGetParam, wire::value(std::uint32_t{0}));
    EXPECT_EQ(start(), (Outcome{-150, {"waitWhileBusy 0x12500023"}}));
    EXPECT_EQ(procedures(), (Words{kStartAppl, kGetParam}));
}

TEST_F(CompletionWait, TheDefaultTimeoutEmptiesThePool) {
    t.target.script(kStartAppl, wire::result(0, {0x14a00900}));
    t.target.script(kGetParam, wire::noValue({kUnsupported}));
    state(0);
    EXPECT_EQ(start(), (Outcome{0, {}}));
}
