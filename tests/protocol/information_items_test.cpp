// Information items through the exported function: sizes, types, defaults, and what the caller's buffer and pool hold.
#include <cstring>
#include <tuple>

#include "api/api_test.h"

using namespace applman;

namespace {

constexpr std::uint32_t kUnsupported = 0x14a00804;
constexpr char kFill = 0x55;

/// Status, text and size after a call.
using Delivered = std::tuple<std::int32_t, std::string, std::int32_t>;

class Information : public ApiTest {
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

    Delivered readText(std::uint32_t applId, std::uint32_t infoId, std::int32_t given) {
        const std::int32_t status = read(applId, infoId, given);
        return {status, buffer.data(), size};
    }

    void answer(TApplManValue value) { t.target.script(kGetParam, wire::value(std::move(value))); }
    void refuse() { t.target.script(kGetParam, wire::noValue({kUnsupported})); }

    alignas(4) std::array<char, 64> buffer{};
    std::int32_t size = 0;
};

} // namespace

TEST_F(Information, TheSizeBeforeTheCallCountsAlsoWhereItLiesInTheBuffer) {
    for (const auto& [infoId, given, filled] : {std::tuple{9U, 4, TApplManValue(7U)}, {18U, 64, Text{"other"}}}) {
        std::memcpy(buffer.data(), &given, sizeof given);
        if (infoId == 18) { refuse(); } // and 13 is read
        answer(filled);
        t.target.script(kGetFlashParam, wire::value(filled));
        auto* const both = reinterpret_cast<std::int32_t*>(buffer.data());
        EXPECT_EQ(KvApplMan_getApplInfo(pool, t.device, t.access, 0, infoId, both, both), 0);
        std::memcpy(buffer.data(), &given, sizeof given);
        EXPECT_EQ(KvApplMan_getFlashApplInfo(pool, t.device, t.access, 7, infoId, both, both), 0);
    }
}

TEST_F(Information, ATextEndsAtItsFirstZero) {
    answer(Text{std::string("a\0b", 3)});
    EXPECT_EQ(readText(1, 2, 2), (Delivered{0, "a", 2})) << "a text ends at its first zero";
    answer(Text{std::string("\xbf\x80\xff\0\xbf", 5)});
    EXPECT_EQ(readText(1, 19, 64), (Delivered{0, "A\x80\x01", 64})) << "a negated text is restored up to its zero";
}

TEST_F(Information, AddressesAreOneTextWithAGapForEachMissingOne) {
    answer(Words{0x0100a8c0, 0, 0xffffffff});
    EXPECT_EQ(readText(1, 16, 29), (Delivered{0, "192.168.0.1;;255.255.255.255", 29}));
    answer(Words{});
    EXPECT_EQ(readText(1, 16, 1), (Delivered{0, "", 1}));
    answer(Words{});
    size = 0;
    EXPECT_EQ(KvApplMan_getApplInfo(pool, t.device, t.access, 1, 11, nullptr, &size), 0) << "nothing fits into nothing";
}

TEST_F(Information, StatesAreTranslatedAndAnUnknownOneIsDeliveredAsSuch) {
    constexpr std::array<std::int32_t, 8> kExtern{1, 2, 3, 4, 0, 5, 6, -210};
    for (std::uint32_t state = 0; state < kExtern.size(); ++state) {
        answer(state);
        EXPECT_EQ(read(1, 0, 4), 0);
        EXPECT_EQ(delivered<std::int32_t>(), kExtern[state]) << state;
    }
    EXPECT_EQ(messages(pool), Messages{"getExternApplState 0x12500015"});
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
        const bool defaulted = row.value >= 0;
        KvPlatform_addEntry(pool, 4711);
        refuse();
        EXPECT_EQ(read(row.applId, row.infoId, row.size), defaulted ? 0 : -175) << row.infoId << " of " << row.applId;
        EXPECT_EQ(pool.codes(), defaulted ? Words{} : (Words{4711, kUnsupported, 0x12500007}));
        std::int64_t value = 0;
        std::memcpy(&value, buffer.data(), static_cast<std::size_t>(row.size));
        EXPECT_EQ(value, std::max<std::int64_t>(row.value, 0)) << row.infoId << " of " << row.applId;
        pool->reset();
    }
    KvPlatform_addEntry(pool, kUnsupported);
    t.target.script(kGetParam, wire::noValue());
    EXPECT_EQ(outcome(read(1, 9, 4)), (Outcome{0, {}})) << "an older entry of the pool is enough";
}

TEST_F(Information, ItemEighteenFallsBackToItemThirteen) {
    refuse();
    answer(Text{"other"});
    EXPECT_EQ(readText(0, 18, 6), (Delivered{0, "other", 6}));
    EXPECT_EQ(sentWords(0), (Words{1, t.accessId, 0, 36}));
    EXPECT_EQ(sentWords(1), (Words{1, t.accessId, 0, 26}));
    refuse();
    t.target.script(kGetParam, wire::failedCall());
    EXPECT_EQ(read(0, 18, 6), -185) << "the failure of the second reading is the result";
}

TEST_F(Information, SerialNumbersAndAddressesDefaultToTheDeviceOncePerProcess) {
    t.target.scriptAlways(kGetParam, wire::value(std::uint32_t{2})); // the number of processes
    refuse();
    EXPECT_EQ(read(5, 15, 64), 0);
    EXPECT_EQ(size, 8);
    EXPECT_EQ((delivered<std::array<std::uint32_t, 2>>()), (std::array<std::uint32_t, 2>{1, 1}));
    refuse();
    EXPECT_EQ(readText(5, 16, 64), (Delivered{0, "127.0.0.1;127.0.0.1", 20}));
    refuse();
    t.target.script(kGetParam, wire::failedCall());
    EXPECT_EQ(readText(5, 16, 64), (Delivered{0, "", 1}));
    EXPECT_EQ(messages(pool), Messages{});
    for (const auto& [infoId, needed] : {std::pair{15U, 4}, {16U, 10}}) {
        refuse();
        answer(70'000U);
        EXPECT_EQ(read(5, infoId, 64), -200);
        EXPECT_EQ(size, 70'000 * needed);
        pool->reset();
        refuse();
        answer(0xffffffff);
        EXPECT_EQ(read(5, infoId, 64), -100) << "there is no memory for such a group";
        EXPECT_EQ(pool.codes().back(), 1024U);
        pool->reset();
    }
}

TEST_F(Information, EachItemIsAskedForUnderTheTargetsNumber) {
    struct Row {
        std::uint32_t infoId;
        std::uint32_t targetParamId;
        std::int32_t size = 64;
    };
    const Row rows[] = {
        {0, 11, 4},      {2, 5},          {3, 6},       {4, 7, 8},     {5, 12, 8},      {6, 33},        {7, 34},
        {8, 18, 8},      {9, 19, 4},      {10, 20, 4},  {11, 21},      {12, 25},        {13, 26},       {14, 27},
        {15, 29},        {16, 30},        {17, 32},     {18, 36},      {19, 38},        {20, 39},       {21, 1, 4},
        {22, 41},        {128, 35},       {1002, 15},   {1003, 14},    {1004, 16, 8},   {1005, 17},     {1007, 8},
        {1008, 23, 4},   {1009, 24, 4},   {1011, 42},   {1200, 64},    {2049, 1025, 4}, {2050, 31, 4},  {2051, 37, 4},
        {2052, 1026, 8}, {2053, 1027, 8}, {2054, 1028}, {2055, 40, 4}, {3073, 134, 8},  {3074, 131, 8},
    };
    t.target.scriptAlways(kGetParam, wire::noValue());
    for (const Row& row : rows) {
        t.target.forgetRequests();
        EXPECT_EQ(read(1, row.infoId, row.size), -175) << row.infoId;
        EXPECT_EQ(sentWords(0), (Words{1, t.accessId, 1, row.targetParamId}));
    }
}
