// Information items through the exported function: sizes, types, defaults, and what the caller's buffer and pool hold.
#include <array>
#include <cstring>

#include "api/KvApplicationManagerAP.h"
#include "protocol/application_states.h"
#include "protocol/information_decode.h"
#include "protocol/procedure_numbers.h"
#include "support/one_target.h"

using namespace applman;

namespace {

constexpr std::uint32_t kUnsupported = 0x14a00804;
constexpr char kFill = 0x55;

class Information : public OneTarget {
protected:
    std::int32_t read(std::uint32_t applId, std::uint32_t infoId, std::int32_t given) {
        buffer.fill(kFill);
        size = given;
        return KvApplMan_getApplInfo(pool, t.device, t.access, applId, infoId, buffer.data(), &size);
    }

    template <class Value>
    Value delivered() const {
        Value value{};
        std::memcpy(&value, buffer.data(), sizeof value);
        return value;
    }

    std::string text() const { return buffer.data(); }

    void answer(TApplManValue value) { t.target.script(kGetParam, wire::value(std::move(value))); }
    void refuse() { t.target.script(kGetParam, wire::noValue({kUnsupported})); }

    std::array<char, 64> buffer{};
    std::int32_t size = 0;
};

} // namespace

TEST_F(Information, AnItemIsAskedForByTheTargetsOwnNumber) {
    answer(std::uint32_t{7});
    EXPECT_EQ(read(3, 9, 4), 0);
    EXPECT_EQ(delivered<std::uint32_t>(), 7U);
    EXPECT_EQ(size, 4);
    const auto asked = request<TApplManGetParamRequest>(0);
    EXPECT_EQ((std::array{asked.mode, asked.accessId, asked.applId, asked.targetParamId}),
              (std::array<std::uint32_t, 4>{1, t.accessId, 3, 19}));
    EXPECT_EQ(messages(pool), Messages{});
}

TEST_F(Information, ArgumentsAreJudgedBeforeAnythingIsSent) {
    EXPECT_EQ(KvApplMan_getApplInfo(pool, t.device, t.access, 1, 9, buffer.data(), nullptr), -100);
    size = 1;
    EXPECT_EQ(KvApplMan_getApplInfo(pool, t.device, t.access, 1, 9, nullptr, &size), -100);
    EXPECT_EQ(messages(pool), (Messages{"KvApplMan_getApplInfo 1024", "KvApplMan_getApplInfo 1024"}));
    pool->reset();

    struct Row {
        std::uint32_t infoId;
        std::int32_t size;
        std::int32_t status;
    };
    for (const Row& row : {Row{0, 8, -200}, Row{0, 0, -200}, Row{9, 3, -200}, Row{2, -1, -200}, Row{1, 4, -205},
                           Row{23, -1, -205}, Row{1001, 4, -205}}) {
        EXPECT_EQ(read(1, row.infoId, row.size), row.status) << row.infoId;
        EXPECT_EQ(messages(pool), Messages{"mapParamAndCheckParamSize 0x12500014"});
        EXPECT_EQ(size, row.size);
        const auto given = static_cast<std::size_t>(std::max(row.size, 0));
        EXPECT_EQ(std::string(buffer.data(), given), std::string(given, '\0')) << "the buffer is cleared all the same";
        EXPECT_EQ(buffer[given], kFill);
        pool->reset();
    }
    EXPECT_EQ(procedures(), std::vector<std::uint32_t>{});
}

TEST_F(Information, ATextNeedsRoomForItsTerminatingZero) {
    for (int i = 0; i < 3; ++i) {
        answer(Text{"model.x86"});
    }
    EXPECT_EQ(read(1, 2, 10), 0);
    EXPECT_EQ(text(), "model.x86");
    EXPECT_EQ(size, 10);
    EXPECT_EQ(read(1, 2, 9), -200);
    EXPECT_EQ(size, 10);
    EXPECT_EQ(delivered<char>(), '\0');
    EXPECT_EQ(read(1, 2, 0), -200);
    EXPECT_EQ(size, 10);
    EXPECT_EQ(delivered<char>(), kFill);
    EXPECT_EQ(messages(pool).back(), "decodeParameterReturnValue 0x12500014");
    answer(Text{std::string("a\0b", 3)});
    EXPECT_EQ(read(1, 2, 2), 0) << "a text ends at its first zero";
    TApplManValueResult absent{0, Text{}, {}};
    size = 1;
    EXPECT_EQ(decodeParameterReturnValue(pool, 5, absent, buffer.data(), &size), Status::ok) << "absent reads as empty";
    EXPECT_EQ(delivered<char>(), '\0');
}

TEST_F(Information, AnArrayTellsItsBytesWhetherItFitsOrNot) {
    for (int i = 0; i < 2; ++i) {
        answer(std::vector<std::uint32_t>{1, 2, 3});
    }
    EXPECT_EQ(read(1, 11, 8), -200);
    EXPECT_EQ(size, 12);
    EXPECT_EQ(read(1, 11, 64), 0);
    EXPECT_EQ(size, 12);
    EXPECT_EQ((delivered<std::array<std::uint32_t, 4>>()), (std::array<std::uint32_t, 4>{1, 2, 3, 0}));
    answer(std::vector<std::int64_t>{-1, 5});
    EXPECT_EQ(read(1, 1200, 16), 0);
    EXPECT_EQ((delivered<std::array<std::int64_t, 2>>()), (std::array<std::int64_t, 2>{-1, 5}));
    answer(std::vector<std::uint32_t>{});
    size = 0;
    EXPECT_EQ(KvApplMan_getApplInfo(pool, t.device, t.access, 1, 11, nullptr, &size), 0) << "nothing fits into nothing";
    EXPECT_EQ(size, 0);
}

TEST_F(Information, AddressesAreOneTextWithAGapForEachMissingOne) {
    const std::vector<std::uint32_t> addresses{0x0100a8c0, 0, 0xffffffff};
    const std::string expected = "192.168.0.1;;255.255.255.255";
    answer(addresses);
    EXPECT_EQ(read(1, 16, 64), 0);
    EXPECT_EQ(text(), expected);
    EXPECT_EQ(size, static_cast<std::int32_t>(expected.size() + 1));
    answer(addresses);
    EXPECT_EQ(read(1, 16, 5), -200);
    EXPECT_EQ(size, static_cast<std::int32_t>(expected.size() + 1));
    EXPECT_EQ(messages(pool), Messages{"KvApplMan_decodeIpAddresses 0x12500014"});
    answer(std::vector<std::uint32_t>{});
    EXPECT_EQ(read(1, 16, 1), 0);
    EXPECT_EQ(size, 1);
}

TEST_F(Information, NegatedTextsAreRestoredUpToTheirZero) {
    answer(Text{std::string("\xbf\x80\xff\0\xbf", 5)});
    EXPECT_EQ(read(1, 19, 64), 0);
    EXPECT_EQ(text(), "A\x80\x01");
}

TEST_F(Information, StatesAreTranslatedAndAnUnknownOneIsDeliveredAsSuch) {
    constexpr std::array<std::int32_t, 8> kExtern{1, 2, 3, 4, 0, 5, 6, -210};
    for (std::uint32_t state = 0; state < kExtern.size(); ++state) {
        answer(state);
        EXPECT_EQ(read(1, 0, 4), 0);
        EXPECT_EQ(delivered<std::int32_t>(), kExtern[state]) << state;
        if (state < 7) {
            EXPECT_EQ(getInternalApplState(pool, static_cast<std::uint32_t>(kExtern[state])),
                      static_cast<std::int32_t>(state));
        }
    }
    EXPECT_EQ(getInternalApplState(pool, 7), -210);
    EXPECT_EQ(messages(pool), (Messages{"getExternApplState 0x12500015", "getInternalApplState 0x12500015"}));
}

TEST_F(Information, AReplyOfAnotherTypeIsRefused) {
    answer(std::int64_t{1});
    EXPECT_EQ(read(1, 9, 4), -204);
    EXPECT_EQ(messages(pool), Messages{"decodeParameterReturnValue 0x12500013"});
    EXPECT_EQ(delivered<std::uint32_t>(), 0U);
}

TEST_F(Information, ARefusalAndAFailedCallAreToldApart) {
    t.target.script(kGetParam, wire::noValue({0x14a00805}));
    EXPECT_EQ(read(1, 9, 4), -175);
    EXPECT_EQ(messages(pool), (Messages{"target 0x14a00805", "KvApplMan_getApplInfo 0x12500007"}));
    pool->reset();
    t.target.script(kGetParam, wire::failedCall());
    EXPECT_EQ(read(1, 9, 4), -185);
    EXPECT_EQ(messages(pool), Messages{"KvApplMan_getApplInfo 0x1250000a(KvApplMan_getApplInfo)"});
}

TEST_F(Information, WhatATargetDoesNotKnowHasADefaultAndThePoolIsEmptied) {
    struct Row {
        std::uint32_t infoId;
        std::uint32_t applId;
        std::int32_t size;
        std::int64_t value; // of the first `size` bytes; -1: none, the call fails
    };
    const Row rows[] = {
        {9, 1, 4, 1},    {9, 0, 4, -1},   {10, 1, 4, 1},    {8, 1, 8, 0},     {11, 1, 4, 1},
        {1005, 1, 4, 1}, {1008, 1, 4, 0}, {1011, 1, 1, 0},  {12, 0, 1, 0},    {12, 1, 4, -1},
        {19, 0, 1, 0},   {21, 0, 4, 0},   {2050, 5, 4, 0},  {2050, 0, 4, -1}, {2055, 0, 4, 120},
        {2055, 5, 4, 0}, {2051, 0, 4, 1}, {2051, 5, 4, -1}, {0, 1, 4, -1},    {2, 1, 4, -1},
    };
    for (const Row& row : rows) {
        KvPlatform_addEntry(pool, 4711);
        refuse();
        const std::int32_t status = read(row.applId, row.infoId, row.size);
        if (row.value < 0) {
            EXPECT_EQ(status, -175) << row.infoId << " of " << row.applId;
            EXPECT_EQ(pool.codes(), (std::vector<std::uint32_t>{4711, kUnsupported, 0x12500007}));
            pool->reset();
            continue;
        }
        EXPECT_EQ(status, 0) << row.infoId << " of " << row.applId;
        std::int64_t value = 0;
        std::memcpy(&value, buffer.data(), static_cast<std::size_t>(row.size));
        EXPECT_EQ(value, row.value) << row.infoId << " of " << row.applId;
        EXPECT_EQ(pool.codes(), std::vector<std::uint32_t>{}) << "entries from before the call are gone too";
    }
}

TEST_F(Information, AnOlderEntryOfThePoolIsEnoughForADefault) {
    KvPlatform_addEntry(pool, kUnsupported);
    t.target.script(kGetParam, wire::noValue());
    EXPECT_EQ(read(1, 9, 4), 0);
    EXPECT_EQ(delivered<std::uint32_t>(), 1U);
    EXPECT_EQ(pool.codes(), std::vector<std::uint32_t>{});
}

TEST_F(Information, ItemEighteenFallsBackToItemThirteen) {
    refuse();
    answer(Text{"other"});
    EXPECT_EQ(read(0, 18, 6), 0);
    EXPECT_EQ(text(), "other");
    EXPECT_EQ(request<TApplManGetParamRequest>(1).targetParamId, 26U);
    refuse();
    refuse();
    EXPECT_EQ(read(0, 18, 6), 0);
    EXPECT_EQ(text(), "");
    refuse();
    t.target.script(kGetParam, wire::failedCall());
    EXPECT_EQ(read(0, 18, 6), -185) << "the failure of the second reading is the result";
}

TEST_F(Information, SerialNumbersAndAddressesDefaultToTheDeviceOncePerProcess) {
    refuse();
    answer(std::uint32_t{2});
    EXPECT_EQ(read(5, 15, 64), 0);
    EXPECT_EQ(size, 8);
    EXPECT_EQ((delivered<std::array<std::uint32_t, 2>>()), (std::array<std::uint32_t, 2>{1, 1}));
    refuse();
    answer(std::uint32_t{2});
    EXPECT_EQ(read(5, 16, 64), 0);
    EXPECT_EQ(text(), "127.0.0.1;127.0.0.1");
    refuse();
    t.target.script(kGetParam, wire::failedCall());
    EXPECT_EQ(read(5, 16, 64), 0) << "without the number of processes there are no addresses";
    EXPECT_EQ(text(), "");
    refuse();
    answer(std::uint32_t{0xffffffff});
    EXPECT_EQ(read(5, 15, 64), 0) << "a group of four billion processes is not believed";
    EXPECT_EQ(size, 0);
    EXPECT_EQ(pool.codes(), std::vector<std::uint32_t>{});
}

TEST_F(Information, WithTwoDevicesAtOneAddressTheSerialNumberIsUnknown) {
    Pool other;
    void* twin = nullptr;
    ASSERT_EQ(KvPlatform_addDevice(other, "127.0.0.1:1", 9, &twin), 0);
    refuse();
    EXPECT_EQ(read(0, 2051, 4), -175);
    EXPECT_EQ(messages(pool), (Messages{"target 0x14a00804", "KvApplMan_getApplInfo 0x12500007"}));
    EXPECT_EQ(KvPlatform_removeDevice(other, twin), 0);
}
