// Registering processes: turn, device, host time, request, group data.
#include "api/KvApplicationManagerAP.h"
#include "host_interface/test_hooks.h"
#include "protocol/procedure_numbers.h"
#include "support/one_target.h"
#if !defined(_WIN32)
#include "support/time_zone.h"
#endif

using namespace applman;

namespace {

constexpr std::uint32_t kSerial = 4711;

class Registration : public OneTarget {
protected:
    Registration() {
        t.target.scriptAlways(kGetParam, wire::value(kSerial));
        t.target.scriptAlways(kSetParam, wire::result(0));
        t.target.scriptAlways(kRegisterAppl, wire::reply(TApplManRegisterResult{0, 0x99, "a", "b", {}}));
    }
    ~Registration() override { host_interface::refuseNoLevel(); }

    std::int32_t registerNo(std::uint32_t applNo) {
        applId = 5;
        return KvApplMan_registerAppl_2(pool, t.device, t.access, &group, applNo, &applId);
    }

    void expectFailure(std::int32_t status, std::int32_t expected, const Messages& expectedMessages) {
        EXPECT_EQ(status, expected);
        EXPECT_EQ(messages(pool), expectedMessages);
        pool->reset();
    }

    std::uint32_t serials[3] = {kSerial, 0, kSerial};
    std::uint32_t addresses[3] = {1, 0, 2};
    KvSApplGroupHandle group{11, 12, 0, 3, 0, serials, addresses};
    std::uint32_t applId = 0;
};

std::string self(const std::string& what) { return "KvApplMan_registerAppl_2 " + what; }
std::string data(const std::string& what) { return "KvApplMan_setMpParameters " + what; }

} // namespace

TEST_F(Registration, AProcessIsRegisteredAndLearnsItsGroup) {
    ASSERT_EQ(registerNo(1), 0);
    EXPECT_EQ(applId, 0x99U);
    EXPECT_EQ(group.lastApplNo, 1U);
    EXPECT_EQ(messages(pool), Messages{});
    ASSERT_EQ(procedures(), (std::vector<std::uint32_t>{kGetParam, kSetParam, kRegisterAppl, kSetParam, kSetParam}));

    const auto time = request<TApplManSetParamRequest>(1);
    EXPECT_EQ(time.applId, 0U);
    EXPECT_EQ(time.targetParamId, 43U);
    const auto& texts = std::get<kTagTexts>(time.value);
    ASSERT_EQ(texts.size(), 2U);
    EXPECT_EQ(texts[0]->substr(texts[0]->size() - 4), " GMT");
    EXPECT_EQ(texts[1]->at(3), ':');

    const auto asked = request<TApplManRegisterRequest>(2);
    EXPECT_EQ(asked.accessId, t.accessId);
    EXPECT_EQ(asked.applNo, 1U);
    EXPECT_EQ(asked.group.words, (std::array<std::uint32_t, 5>{0, 11, 12, 3, 0}));

    const auto serialNumbers = request<TApplManSetParamRequest>(3);
    const auto ipAddresses = request<TApplManSetParamRequest>(4);
    EXPECT_EQ(serialNumbers.applId, 0x99U);
    EXPECT_NE(serialNumbers.accessId, t.accessId) << "under an access handle of its own";
    EXPECT_EQ(serialNumbers.targetParamId, 29U);
    EXPECT_EQ(serialNumbers.value, TApplManValue(std::vector<std::uint32_t>{kSerial, 0, kSerial}));
    EXPECT_EQ(ipAddresses.targetParamId, 30U);
    EXPECT_EQ(ipAddresses.value, TApplManValue(std::vector<std::uint32_t>{1, 0, 2}));
}

TEST_F(Registration, NumbersComeInTurnAndEmptySlotsAreLeftOut) {
    const auto refused = [](int applNo) { return Messages{self("0x12500049(" + std::to_string(applNo) + ",3)")}; };
    expectFailure(registerNo(3), -110, refused(3));
    EXPECT_EQ(group.lastApplNo, 0U) << "a number that is not valid changes nothing";
    expectFailure(registerNo(4), -110, refused(4));
    EXPECT_EQ(applId, 0U);
    EXPECT_EQ(procedures(), std::vector<std::uint32_t>{});
    EXPECT_EQ(registerNo(1), 0);
    expectFailure(registerNo(1), -110, refused(1));
    expectFailure(registerNo(2), -110, refused(2));
    EXPECT_EQ(registerNo(3), 0);
    EXPECT_EQ(group.lastApplNo, 3U);
}

TEST_F(Registration, MissingArgumentsComeBeforeTheHandles) {
    KvSApplGroupHandle hollow = group;
    hollow.ipAddresses = nullptr;
    std::uint32_t untouched = 5;
    EXPECT_EQ(KvApplMan_registerAppl_2(pool, nullptr, nullptr, nullptr, 1, &untouched), -100);
    EXPECT_EQ(KvApplMan_registerAppl_2(pool, nullptr, nullptr, &hollow, 1, &untouched), -100);
    EXPECT_EQ(KvApplMan_registerAppl_2(pool, nullptr, nullptr, &group, 0, &untouched), -100);
    EXPECT_EQ(KvApplMan_registerAppl_2(pool, nullptr, nullptr, &group, 1, nullptr), -100);
    EXPECT_EQ(untouched, 5U);
    EXPECT_EQ(messages(pool), Messages(4, self("1024")));
    EXPECT_EQ(KvApplMan_registerAppl_2(pool, nullptr, nullptr, &group, 1, &untouched), -100);
    EXPECT_EQ(untouched, 0U);
    EXPECT_EQ(messages(pool).back(), "checkDeviceAndAccessRestrictionHandle 1024");
}

TEST_F(Registration, TheDeviceMustBeThatOfTheSlot) {
    t.target.script(kGetParam, wire::value(std::uint32_t{8}));
    expectFailure(registerNo(1), -110, {self("0x1250004b(1,4711,8)")});
    t.target.script(kGetParam, wire::failedCall());
    expectFailure(registerNo(1), -110,
                  {"KvApplMan_getApplInfo 0x1250000a(KvApplMan_getApplInfo)", self("0x1250004a(1,-185)")});
    EXPECT_EQ(group.lastApplNo, 0U);
}

TEST_F(Registration, ATargetThatTakesNoTimeGetsItAnotherWay) {
    t.target.script(kSetParam, wire::result(-1, {0x14a00803}));
    EXPECT_EQ(registerNo(1), 0);
    EXPECT_EQ(messages(pool), Messages{}) << "the refusal is not shown";
    const std::string time = t.target.hostTime();
    ASSERT_EQ(time.size(), 15U) << time;
    EXPECT_EQ(time.find_first_not_of("0123456789."), std::string::npos);
    EXPECT_EQ(time[12], '.');
}

#if !defined(_WIN32)
TEST_F(Registration, TheTimeIsSentAsUtcWithTheOffsetOfTheHostsZone) {
    const std::pair<const char*, const char*> zones[] = {
        {"STD0", "+00:00"},
        {"STD-14", "+14:00"},
        {"STD12", "-12:00"},
        {"STD3:30", "-03:30"},
        {"STD-5:45", "+05:45"},
        {"STD0:30", "+00:30"},               // the sign is that of the whole hours
        {"STD-1DST,J1/0,J365/48", "+02:00"}, // daylight saving time all the year
        {"STD3:30DST,J1/0,J365/48", "-02:30"},
        {"STD-10:30DST-11,J1/0,J365/48", "+11:00"},
    };
    for (const auto& [zone, offset] : zones) {
        const TimeZone hosts{zone};
        group.lastApplNo = 0;
        t.target.forgetRequests();
        ASSERT_EQ(registerNo(1), 0);
        const auto time = request<TApplManSetParamRequest>(1);
        const auto& texts = std::get<kTagTexts>(time.value);
        std::tm date{};
        const char* const end = ::strptime(texts.at(0)->c_str(), "%a, %d %b %Y %H:%M:%S GMT", &date);
        ASSERT_TRUE(end != nullptr && *end == '\0') << *texts[0];
        EXPECT_NEAR(static_cast<double>(::timegm(&date)), static_cast<double>(std::time(nullptr)), 60.0) << zone;
        EXPECT_EQ(*texts.at(1), offset) << zone;
    }
}

TEST_F(Registration, TheOtherWayOfTheTimeIsLocal) {
    const TimeZone hosts{"STD3:30DST,J1/0,J365/48"};
    t.target.script(kSetParam, wire::result(-1, {0x14a00803}));
    ASSERT_EQ(registerNo(1), 0);
    std::tm local{};
    ::strptime(t.target.hostTime().c_str(), "%Y%m%d%H%M.%S", &local);
    constexpr double kAhead = -2.5 * 3600;
    EXPECT_NEAR(static_cast<double>(::timegm(&local)), static_cast<double>(std::time(nullptr)) + kAhead, 60.0);
}
#endif

TEST_F(Registration, WhateverElseBecomesOfTheTimeIsShownAndGoesOn) {
    t.target.script(kSetParam, wire::failedCall());
    EXPECT_EQ(registerNo(1), 0);
    EXPECT_EQ(messages(pool), Messages{"KvApplMan_setApplParameter 0x1250000a(KvApplMan_setApplParameter)"});
    EXPECT_EQ(t.target.hostTime(), "");
}

TEST_F(Registration, ARefusedOrFailedRequestRegistersNothing) {
    t.target.script(kRegisterAppl, wire::notOffered());
    expectFailure(registerNo(1), -185,
                  {self("0x12500034(3,1)"), self("0x1250000a(KvApplMan_registerAppl_2)"), self("0x12500000")});
    t.target.script(kRegisterAppl, wire::reply(TApplManRegisterResult{-1, 3, {}, {}, wire::errorList({0x14a00900})}));
    expectFailure(registerNo(1), -110, {"target 0x14a00900", self("0x12500000")});
    t.target.script(kRegisterAppl, wire::failedCall());
    expectFailure(registerNo(1), -110, {self("0x12500000")});
    EXPECT_EQ(applId, 0U);
    EXPECT_EQ(group.lastApplNo, 0U);
}

TEST_F(Registration, AProcessStaysRegisteredWhenItsGroupDataAreNotTaken) {
    struct Row {
        simulated_target::ScriptedReply reply;
        std::int32_t status;
        std::vector<std::string> expected;
    };
    const Row rows[] = {
        {wire::result(-1, {0x14a00900}), -176, {"target 0x14a00900", data("0x1250004c(99,29)")}},
        {wire::result(5), -176, {data("0x1250004c(99,29)")}}, // any value but 0
        {wire::failedCall(), -185, {data("0x1250000a(KvApplMan_setMpParameters)")}},
    };
    for (const Row& row : rows) {
        group.lastApplNo = 0;
        t.target.forgetRequests();
        t.target.script(kSetParam, wire::result(0)); // the time
        t.target.script(kSetParam, row.reply);
        expectFailure(registerNo(1), row.status, row.expected);
        EXPECT_EQ(applId, 0x99U);
        EXPECT_EQ(group.lastApplNo, 1U);
        EXPECT_EQ(procedures().size(), 4U) << "the addresses are not sent any more";
    }
}

TEST_F(Registration, GroupDataThatATargetDoesNotKnowAreTolerated) {
    t.target.script(kSetParam, wire::result(0, {0x14a00900}));
    t.target.script(kSetParam, wire::result(-1, {0x14a00804}));
    EXPECT_EQ(registerNo(1), 0);
    EXPECT_EQ(pool.codes(), std::vector<std::uint32_t>{});
}

TEST_F(Registration, AccessLevelsThatAreRefusedAreReported) {
    host_interface::refuseLevel(0x30002);
    expectFailure(registerNo(1), -245, {"createSharedApplExclAccessResHandle 0x1250002a"});
    EXPECT_EQ(procedures().size(), 3U) << "no group data without the level";
    host_interface::refuseNoLevel();
    group.lastApplNo = 0;
    host_interface::refuseLevel(0x10001);
    expectFailure(registerNo(1), -245, {"deleteAccessResHandle 0x1250002a"});
}

TEST_F(Registration, ATargetThatGivesNoApplicationIdGetsNoGroupData) {
    t.target.script(kRegisterAppl, wire::reply(TApplManRegisterResult{}));
    expectFailure(registerNo(1), -100, {data("1024")});
    EXPECT_EQ(group.lastApplNo, 1U);
}
