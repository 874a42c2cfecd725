// Creating and deleting group handles.
#include "api/KvApplicationManagerAP.h"
#include "protocol/procedure_numbers.h"
#include "support/one_target.h"

using namespace applman;

namespace {

const char* const kName = "KvApplMan_createApplGroupHandle_2";

std::string by(const char* operation, const std::string& what) { return std::string(operation) + " " + what; }

class Groups : public OneTarget {
protected:
    Groups() {
        t.target.scriptAlways(kOpenGroup, wire::reply(TApplManGroupResult{77, 0, {}, 11, 12}));
        t.target.scriptAlways(kGetParam, wire::value(std::uint32_t{4711}));
    }
    ~Groups() override {
        if (group != nullptr) { EXPECT_EQ(KvApplMan_deleteApplGroupHandle(pool, group), 0); }
    }

    std::int32_t create(const std::vector<void*>& devices) {
        const std::vector<void*> handles(devices.size(), t.access);
        return KvApplMan_createApplGroupHandle_2(pool, devices.data(), handles.data(),
                                                 static_cast<std::uint32_t>(devices.size()), &group);
    }

    void* const gap = nullptr;
    KvSApplGroupHandle* group = nullptr;
};

} // namespace

TEST_F(Groups, AGroupHoldsIdentitySerialNumbersAndAddressesPerSlot) {
    ASSERT_EQ(create({gap, t.device, gap, t.device}), 0);
    EXPECT_EQ(procedures(), (std::vector<std::uint32_t>{kOpenGroup, kGetParam, kGetParam}));
    EXPECT_EQ(request<TApplManOpenGroupRequest>(0).accessId, t.accessId);
    EXPECT_EQ(request<TApplManGetParamRequest>(1).applId, 0U);
    EXPECT_EQ((std::array{group->targetGroupId1, group->targetGroupId2, group->reserved, group->applCount,
                          group->lastApplNo}),
              (std::array<std::uint32_t, 5>{11, 12, 0, 4, 0}));
    const std::vector<std::uint32_t> serials(group->cnSerialNumbers, group->cnSerialNumbers + 4);
    const std::vector<std::uint32_t> addresses(group->ipAddresses, group->ipAddresses + 4);
    EXPECT_EQ(serials, (std::vector<std::uint32_t>{0, 4711, 0, 4711}));
    EXPECT_EQ(addresses, (std::vector<std::uint32_t>{0, 0x0100007f, 0, 0x0100007f}));
    EXPECT_EQ(messages(pool), Messages{});
}

TEST_F(Groups, MissingArgumentsComeFirstAndLeaveTheOutParameterAlone) {
    auto* const untouched = reinterpret_cast<KvSApplGroupHandle*>(std::uintptr_t{8});
    KvSApplGroupHandle* out = untouched;
    void* const one[] = {t.device};
    EXPECT_EQ(KvApplMan_createApplGroupHandle_2(pool, nullptr, &t.access, 1, &out), -100);
    EXPECT_EQ(KvApplMan_createApplGroupHandle_2(pool, one, nullptr, 1, &out), -100);
    EXPECT_EQ(KvApplMan_createApplGroupHandle_2(pool, one, &t.access, 0, &out), -100);
    EXPECT_EQ(KvApplMan_createApplGroupHandle_2(pool, one, &t.access, 1, nullptr), -100);
    EXPECT_EQ(out, untouched);
    EXPECT_EQ(messages(pool), Messages(4, by(kName, "1024")));
    pool->reset();

    out = untouched;
    EXPECT_EQ(KvApplMan_createApplGroupHandle_2(pool, &gap, &t.access, 1, &out), -100);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(messages(pool), Messages{"KvApplMan_checkDevHandleList 1024"});
    pool->reset();
    EXPECT_EQ(KvApplMan_deleteApplGroupHandle(pool, nullptr), -100);
    EXPECT_EQ(messages(pool), Messages{"KvApplMan_deleteApplGroupHandle 1024"});
}

TEST_F(Groups, AGroupHasAtMost128Slots) {
    std::vector<void*> devices(129, nullptr);
    EXPECT_EQ(create(devices), -100);
    EXPECT_EQ(messages(pool), Messages{"KvApplMan_checkDevHandleList 1024"}) << "no device comes before too many slots";
    pool->reset();
    devices.back() = t.device;
    EXPECT_EQ(create(devices), -100);
    EXPECT_EQ(messages(pool), Messages{by(kName, "0x1250004d(128,129)")});
    pool->reset();
    devices.erase(devices.begin());
    EXPECT_EQ(create(devices), 0);
}

TEST_F(Groups, EveryPresentSlotNeedsAnAccessHandleBeforeAnythingIsConnected) {
    void* const devices[] = {t.device, t.device};
    for (void* const bad : {static_cast<void*>(nullptr), t.device}) {
        void* const handles[] = {t.access, bad};
        EXPECT_EQ(KvApplMan_createApplGroupHandle_2(pool, devices, handles, 2, &group), -100);
        EXPECT_EQ(messages(pool), Messages{by(kName, "1024")});
        pool->reset();
    }
    EXPECT_EQ(t.target.acceptedConnections(), 0U);
}

TEST_F(Groups, ATargetWithoutGroupsServesOneSlotOnly) {
    t.target.scriptAlways(kOpenGroup, wire::notOffered());
    EXPECT_EQ(create({gap, t.device}), -200);
    EXPECT_EQ(group, nullptr);
    EXPECT_EQ(messages(pool), (Messages{by(kName, "0x12500035"), by(kName, "0x12500033")}));
    pool->reset();
    ASSERT_EQ(create({t.device}), 0);
    EXPECT_EQ(group->targetGroupId1 + group->targetGroupId2, 0U);
}

TEST_F(Groups, ARefusalOrAFailedCallCreatesNothing) {
    t.target.script(kOpenGroup, wire::reply(TApplManGroupResult{0, 1, wire::errorList({0x14a00900}), 5, 6}));
    EXPECT_EQ(create({t.device}), -840) << "any value but 0 is a refusal";
    EXPECT_EQ(messages(pool), (Messages{"target 0x14a00900", by(kName, "0x12500033")}));
    pool->reset();
    t.target.script(kOpenGroup, wire::failedCall());
    EXPECT_EQ(create({t.device}), -840);
    EXPECT_EQ(messages(pool), Messages{by(kName, "0x12500033")});
    EXPECT_EQ(group, nullptr);
}

TEST_F(Groups, AnUnreadableSerialNumberNamesItsSlot) {
    t.target.script(kGetParam, wire::value(std::uint32_t{1}));
    t.target.script(kGetParam, wire::noValue({0x14a00805}));
    EXPECT_EQ(create({t.device, gap, t.device}), -840);
    EXPECT_EQ(group, nullptr);
    EXPECT_EQ(messages(pool), (Messages{"target 0x14a00805", "KvApplMan_getApplInfo 0x12500007",
                                        by(kName, "0x12500046(2,-175)"), by(kName, "0x12500048")}));
}

TEST_F(Groups, ADefaultSerialNumberEmptiesThePool) {
    t.target.script(kOpenGroup, wire::reply(TApplManGroupResult{0, 0, wire::errorList({0x14a00900}), 5, 6}));
    t.target.script(kGetParam, wire::noValue({0x14a00804}));
    ASSERT_EQ(create({t.device}), 0);
    EXPECT_EQ(group->cnSerialNumbers[0], 1U) << "that of the device list";
    EXPECT_EQ(pool.codes(), std::vector<std::uint32_t>{});
}
