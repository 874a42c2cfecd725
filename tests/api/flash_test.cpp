// Flash applications: how they differ from applications in items, parameters and commands.
#include "api/api_test.h"

using namespace applman;

namespace {

class Flash : public ApiTest {
protected:
    std::int32_t read(std::uint32_t infoId, void* buffer, std::int32_t given) {
        size = given;
        return KvApplMan_getFlashApplInfo(pool, t.device, t.access, 7, infoId, buffer, &size);
    }
    Outcome set(std::uint32_t infoId, const void* data, std::uint32_t bytes) {
        return outcome(KvApplMan_setFlashApplParameter(pool, t.device, t.access, 7, infoId, data, bytes));
    }
    Outcome load() { return outcome(KvApplMan_loadFlashAppl(pool, t.device, t.access, kWideId)); }
    Outcome clear() { return outcome(KvApplMan_clearFlashAppl(pool, t.device, t.access, kWideId)); }

    static constexpr std::uint64_t kWideId = 0xfedcba9876543210;
    std::int32_t size = 0;
};

} // namespace

TEST_F(Flash, ItemsAreThoseOfApplicationsButWithoutDefaults) {
    std::vector<std::int64_t> quads(2);
    t.target.script(kGetFlashParam, wire::value(std::vector<std::int64_t>{-1, 5}));
    EXPECT_EQ(read(1200, quads.data(), 16), 0);
    EXPECT_EQ(quads, (std::vector<std::int64_t>{-1, 5}));
    EXPECT_EQ(sentWords(0), (Words{t.accessId, 7, 64}));
    KvPlatform_addEntry(pool, 4711);
    t.target.script(kGetFlashParam, wire::noValue({0x14a00804}));
    std::uint32_t word = 5;
    EXPECT_EQ(read(9, &word, 4), -175);
    EXPECT_EQ(word, 0U);
    EXPECT_EQ(pool.codes(), (Words{4711, 0x14a00804, 0x1250003d})) << "the pool is not emptied";
}

TEST_F(Flash, TheOneWritableItemIsSentInWholeValues) {
    const std::int64_t values[] = {1, -2, 3};
    for (const std::uint32_t bytes : {20U, 7U, 0U}) {
        t.target.forgetRequests();
        t.target.script(kSetFlashParam, wire::result(5));
        EXPECT_EQ(set(1200, bytes == 0 ? nullptr : values, bytes), (Outcome{0, {}}));
        EXPECT_EQ(sentWords(0, 3), (Words{t.accessId, 7, 64}));
        EXPECT_EQ(request<TApplManSetFlashParamRequest>(0).value,
                  TApplManValue(std::vector<std::int64_t>(values, values + bytes / 8)));
    }
    const std::string self = "KvApplMan_setFlashApplParameter ";
    t.target.script(kSetFlashParam, wire::result(-1, {0x14a00804}));
    EXPECT_EQ(set(1200, values, 8), (Outcome{-176, {"target 0x14a00804", self + "0x1250003e"}}))
        << "nothing is tolerated";
}

TEST_F(Flash, LoadingIsWaitedForOnTheApplicationManagerAndClearingIsNot) {
    t.target.script(kLoadFlashAppl, wire::result(5));
    t.target.script(kGetParam, wire::value(std::uint32_t{10}));
    t.target.script(kGetCommandState, wire::result(0));
    t.target.script(kClearFlashAppl, wire::result(5));
    EXPECT_EQ(load(), (Outcome{0, {}}));
    EXPECT_EQ(clear(), (Outcome{0, {}}));
    EXPECT_EQ(procedures(), (Words{kLoadFlashAppl, kGetParam, kGetCommandState, kClearFlashAppl}));
    EXPECT_EQ(sentWords(2).back(), 0U);
    TApplManFlashRequest expected{t.accessId, {}};
    expected.command.command = 1;
    expected.command.flashApplId = static_cast<std::int64_t>(kWideId);
    for (const std::size_t index : {0U, 3U}) {
        EXPECT_EQ(t.target.requests()[index].arguments, wire::bytesOf(expected));
    }
}
