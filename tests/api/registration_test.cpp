// Registering processes: turn, device, host time, request, group data.
#include "api/api_test.h"
#include "host_interface/test_hooks.h"
#include "support/time_zone.h"

using namespace applman;

namespace {

constexpr std::uint32_t kSerial = 4711;

class Registration : public ApiTest {
protected:
    Registration() {
        t.target.scriptAlways(kGetParam, wire::value(kSerial));
        t.target.scriptAlways(kSetParam, wire::result(0));
        t.target.scriptAlways(kRegisterAppl, wire::reply(TApplManRegisterResult{0, 0x99, "a", "b", {}}));
    }
    ~Registration() override { host_interface::refuseNoLevel(); }

    Outcome registerNo(std::uint32_t applNo) {
        applId = 5;
        return outcome(KvApplMan_registerAppl_2(pool, t.device, t.access, &group, applNo, &applId));
    }
    /// The first process, from the beginning.
    Outcome registerAnew() {
        group.lastApplNo = 0;
        t.target.forgetRequests();
        return registerNo(1);
    }

    std::uint32_t serials[3] = {kSerial, 0, kSerial};
    std::uint32_t addresses[3] = {1, 0, 2};
    KvSApplGroupHandle group{11, 12, 0, 3, 0, serials, addresses};
    std::uint32_t applId = 0;
};

std::string self(const std::string& what) { return "KvApplMan_registerAppl_2 " + what; }
std::string data(const std::string& what) { return "KvApplMan_setMpParameters " + what; }

bool deletionIsRefused = false;

} // namespace

extern "C" decltype(KvHIM_deleteAccessRestrictionHandle) __real_KvHIM_deleteAccessRestrictionHandle,
    __wrap_KvHIM_deleteAccessRestrictionHandle;
std::int32_t __wrap_KvHIM_deleteAccessRestrictionHandle(KvCErrorListPool& list, void* handle) noexcept {
    return deletionIsRefused ? 7 : __real_KvHIM_deleteAccessRestrictionHandle(list, handle);
}

TEST_F(Registration, AProcessIsRegisteredAndLearnsItsGroup) {
    ASSERT_EQ(registerNo(1), (Outcome{0, {}}));
    EXPECT_EQ((Words{applId, group.lastApplNo}), (Words{0x99, 1}));
    EXPECT_EQ(procedures(), (Words{kGetParam, kSetParam, kRegisterAppl, kSetParam, kSetParam}));
    EXPECT_EQ(sentWords(1, 5), (Words{1, t.accessId, 0, 43, kTagTexts})) << "the time is the application manager's";
    EXPECT_EQ(sentWords(2, 7), (Words{t.accessId, 1, 0, 11, 12, 3, 0}));
    const auto serialNumbers = request<TApplManSetParamRequest>(3);
    EXPECT_EQ((Words{serialNumbers.applId, serialNumbers.targetParamId}), (Words{0x99, 29}));
    EXPECT_NE(serialNumbers.accessId, t.accessId) << "under an access handle of its own";
    EXPECT_EQ(serialNumbers.value, TApplManValue(Words{kSerial, 0, kSerial}));
    const auto ipAddresses = request<TApplManSetParamRequest>(4);
    EXPECT_EQ(ipAddresses.targetParamId, 30U);
    EXPECT_EQ(ipAddresses.value, TApplManValue(Words{1, 0, 2}));
}

TEST_F(Registration, NumbersComeInTurnAndEmptySlotsAreLeftOut) {
    const auto refused = [](int applNo) {
        return Outcome{-110, {self("0x12500049(" + std::to_string(applNo) + ",3)")}};
    };
    EXPECT_EQ(registerNo(3), refused(3));
    EXPECT_EQ(group.lastApplNo, 0U) << "a number that is not valid changes nothing";
    EXPECT_EQ(registerNo(4), refused(4));
    EXPECT_EQ(applId, 0U);
    EXPECT_EQ(procedures(), Words{});
    EXPECT_EQ(registerNo(1), (Outcome{0, {}}));
    EXPECT_EQ(registerNo(1), refused(1));
    EXPECT_EQ(registerNo(2), refused(2));
    EXPECT_EQ(registerNo(3), (Outcome{0, {}}));
    EXPECT_EQ(group.lastApplNo, 3U);
    group = {11, 12, 0, 2, 0, serials, addresses};
    EXPECT_EQ(registerNo(2), (Outcome{-110, {self("0x12500049(2,2)")}})) << "an empty slot is never registered";
    EXPECT_EQ(registerNo(1), (Outcome{0, {}}));
}

TEST_F(Registration, TheDeviceMustBeThatOfTheSlot) {
    t.target.script(kGetParam, wire::value(std::uint32_t{8}));
    EXPECT_EQ(registerNo(1), (Outcome{-110, {self("0x1250004b(1,4711,8)")}}));
    EXPECT_EQ(group.lastApplNo, 0U);
}

TEST_F(Registration, TheTimeIsSentAsUtcWithTheOffsetOfTheHostsZoneOrElseAsLocalTime) {
    const double now = static_cast<double>(std::time(nullptr));
    const std::pair<const char*, const char*> zones[] = {
        {"STD0:30", "+00:30"}, // the sign is that of the whole hours
        {"STD-14", "+14:00"},
#if !defined(_WIN32)
        {"STD3:30DST,J1/0,J365/48", "-02:30"}, // daylight saving time all the year
#endif
    };
    for (const auto& [zone, offset] : zones) {
        const TimeZone hosts{zone};
        ASSERT_EQ(registerAnew(), (Outcome{0, {}}));
        const auto time = request<TApplManSetParamRequest>(1);
        const auto& texts = std::get<kTagTexts>(time.value);
        EXPECT_NEAR(secondsFrom(*texts.at(0), "%a, %d %b %Y %H:%M:%S GMT").value_or(0), now, 60.0) << *texts[0];
        EXPECT_EQ(*texts.at(1), offset) << zone;
    }
    const TimeZone hosts{"STD2:30"};
    t.target.script(kSetParam, wire::result(-1, {0x14a00803}));
    ASSERT_EQ(registerAnew(), (Outcome{0, {}})) << "the refusal is not shown";
    const std::string time = t.target.hostTime();
    EXPECT_EQ(time.size(), 15U);
    EXPECT_NEAR(secondsFrom(time, "%Y%m%d%H%M.%S").value_or(0), now - 2.5 * 3600, 60.0) << time;
}

TEST_F(Registration, AProcessStaysRegisteredWhenItsGroupDataAreNotTaken) {
    t.target.script(kSetParam, wire::result(0)); // the time
    t.target.script(kSetParam, wire::result(5));
    EXPECT_EQ(registerAnew(), (Outcome{-176, {data("0x1250004c(99,29)")}})) << "any value but 0 is a refusal";
    EXPECT_EQ(procedures().size(), 4U) << "the addresses are not sent any more";
    t.target.script(kSetParam, wire::result(0, {0x14a00900}));
    t.target.script(kSetParam, wire::result(-1, {0x14a00804}));
    EXPECT_EQ(registerAnew(), (Outcome{0, {}})) << "data that a target does not know are tolerated";
}

TEST_F(Registration, AnAccessHandleThatIsRefusedIsReported) {
    host_interface::refuseLevel(0x30002);
    EXPECT_EQ(registerNo(1), (Outcome{-245, {"createSharedApplExclAccessResHandle 0x1250002a"}}));
    EXPECT_EQ(procedures().size(), 3U) << "no group data without the level";
    host_interface::refuseNoLevel();
    host_interface::refuseLevel(0x10001);
    EXPECT_EQ(registerAnew(), (Outcome{-245, {"deleteAccessResHandle 0x1250002a"}}));
    deletionIsRefused = true;
    EXPECT_EQ(registerAnew(),
              (Outcome{-245, {"deleteAccessResHandle 0x1250002a", "deleteAccessResHandle 0x12500053(99)"}}));
    deletionIsRefused = false;
}

TEST_F(Registration, ATargetThatGivesNoApplicationIdGetsNoGroupData) {
    t.target.script(kRegisterAppl, wire::reply(TApplManRegisterResult{}));
    EXPECT_EQ(registerNo(1), (Outcome{-100, {data("1024")}}));
    EXPECT_EQ(group.lastApplNo, 1U);
}
