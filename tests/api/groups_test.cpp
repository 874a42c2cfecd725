// Creating and deleting group handles.
#include "api/api_test.h"

using namespace applman;

namespace {

std::string self(const std::string& what) { return "KvApplMan_createApplGroupHandle_2 " + what; }

bool addressIsRefused = false; // of every device

class Groups : public ApiTest {
protected:
    Groups() {
        t.target.scriptAlways(kOpenGroup, wire::reply(TApplManGroupResult{77, 0, {}, 11, 12}));
        t.target.scriptAlways(kGetParam, wire::value(std::uint32_t{4711}));
    }
    ~Groups() override {
        if (group != nullptr) { EXPECT_EQ(KvApplMan_deleteApplGroupHandle(pool, group), 0); }
    }

    Outcome create(const std::vector<void*>& devices) {
        const std::vector<void*> handles(devices.size(), t.access);
        return outcome(KvApplMan_createApplGroupHandle_2(pool, devices.data(), handles.data(),
                                                         static_cast<std::uint32_t>(devices.size()), &group));
    }

    void* const gap = nullptr;
    KvSApplGroupHandle* group = nullptr;
};

} // namespace

extern "C" decltype(KvHIM_getParam) __real_KvHIM_getParam, __wrap_KvHIM_getParam;
std::int32_t __wrap_KvHIM_getParam(KvCErrorListPool& list, void* handle, std::uint32_t id, std::uint32_t index,
                                   std::uint64_t* size, void* value) noexcept {
    return id == 6 && addressIsRefused ? 7 : __real_KvHIM_getParam(list, handle, id, index, size, value);
}

TEST_F(Groups, AGroupHoldsIdentitySerialNumbersAndAddressesPerSlot) {
    ASSERT_EQ(create({gap, t.device, gap, t.device}), (Outcome{0, {}}));
    EXPECT_EQ(procedures(), (Words{kOpenGroup, kGetParam, kGetParam}));
    EXPECT_EQ(sentWords(0), Words{t.accessId});
    EXPECT_EQ(request<TApplManGetParamRequest>(1).applId, 0U);
    EXPECT_EQ(
        (Words{group->targetGroupId1, group->targetGroupId2, group->reserved, group->applCount, group->lastApplNo}),
        (Words{11, 12, 0, 4, 0}));
    EXPECT_EQ(Words(group->cnSerialNumbers, group->cnSerialNumbers + 4), (Words{0, 4711, 0, 4711}));
    EXPECT_EQ(Words(group->ipAddresses, group->ipAddresses + 4), (Words{0, 0x0100007f, 0, 0x0100007f}));
}

TEST_F(Groups, AGroupHasAtMost128Slots) {
    std::vector<void*> devices(129, nullptr);
    EXPECT_EQ(create(devices), (Outcome{-100, {"KvApplMan_checkDevHandleList 1024"}})) << "no device comes first";
    devices.back() = t.device;
    EXPECT_EQ(create(devices), (Outcome{-100, {self("0x1250004d(128,129)")}}));
    devices.erase(devices.begin());
    EXPECT_EQ(create(devices), (Outcome{0, {}}));
}

TEST_F(Groups, EveryPresentSlotNeedsAnAccessHandleBeforeAnythingIsConnected) {
    void* const devices[] = {t.device, t.device};
    for (void* const bad : {gap, t.device}) {
        void* const handles[] = {t.access, bad};
        EXPECT_EQ(outcome(KvApplMan_createApplGroupHandle_2(pool, devices, handles, 2, &group)),
                  (Outcome{-100, {self("1024")}}));
    }
    EXPECT_EQ(t.target.acceptedConnections(), 0U);
}

TEST_F(Groups, ATargetWithoutGroupsServesOneSlotOnly) {
    t.target.scriptAlways(kOpenGroup, wire::notOffered());
    EXPECT_EQ(create({gap, t.device}), (Outcome{-200, {self("0x12500035"), self("0x12500033")}}));
    EXPECT_EQ(group, nullptr);
    EXPECT_EQ(create({t.device}).first, 0);
    EXPECT_EQ(group->targetGroupId1 + group->targetGroupId2, 0U);
}

TEST_F(Groups, WhateverFailsNothingIsCreated) {
    t.target.script(kOpenGroup, wire::reply(TApplManGroupResult{0, 1, {}, 5, 6}));
    EXPECT_EQ(create({t.device}), (Outcome{-840, {self("0x12500033")}})) << "any value but 0 is a refusal";
    t.target.script(kGetParam, wire::value(std::uint32_t{1}));
    t.target.script(kGetParam, wire::noValue());
    EXPECT_EQ(create({t.device, gap, t.device}),
              (Outcome{-840, {"KvApplMan_getApplInfo 0x12500007", self("0x12500046(2,-175)"), self("0x12500048")}}))
        << "the slot is named";
    addressIsRefused = true;
    EXPECT_EQ(create({gap, t.device}), (Outcome{-840, {self("0x12500047(1,7)"), self("0x12500048")}}));
    addressIsRefused = false;
    EXPECT_EQ(group, nullptr);
}
