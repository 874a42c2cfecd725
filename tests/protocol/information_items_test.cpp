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

    std::array<char, 64> buffer{};
    std::int32_t size = 0;
};

} // namespace

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
    for (const auto& number : {wire::failedCall(), wire::value(std::uint32_t{0xffffffff})}) { // is not believed
        refuse();
        t.target.script(kGetParam, number);
        EXPECT_EQ(readText(5, 16, 64), (Delivered{0, "", 1}));
    }
    EXPECT_EQ(messages(pool), Messages{});
}
