// Flash applications: how they differ from applications in lists, items, parameters and commands.
#include "api/KvApplicationManagerAP.h"
#include "api/client_level.h"
#include "protocol/procedure_numbers.h"
#include "support/one_target.h"

using namespace applman;

namespace {

using Ids = std::vector<std::uint32_t>;

constexpr std::uint32_t kFill = 0x55555555;
constexpr std::uint64_t kWideId = 0xfedcba9876543210;

const char* const kBadHandles = "checkDeviceAndAccessRestrictionHandle 1024";

class Flash : public OneTarget {
protected:
    std::int32_t list(std::uint32_t mode, std::uint32_t* into, std::uint32_t capacity) {
        count = capacity;
        return KvApplMan_getFlashApplications(pool, t.device, t.access, mode, &count, into);
    }
    std::int32_t read(std::uint32_t infoId, void* buffer, std::int32_t given) {
        size = given;
        return KvApplMan_getFlashApplInfo(pool, t.device, t.access, 7, infoId, buffer, &size);
    }
    std::int32_t set(std::uint32_t infoId, const void* data, std::uint32_t bytes) {
        return KvApplMan_setFlashApplParameter(pool, t.device, t.access, 7, infoId, data, bytes);
    }
    void answer(std::int32_t result, const Ids& listed) {
        t.target.script(kGetFlashApplications, wire::reply(TApplManFlashListResult{77, result, {}, listed, {}, {8}}));
    }

    Ids ids = Ids(4, kFill);
    std::uint32_t count = 0;
    std::int32_t size = 0;
};

} // namespace

TEST_F(Flash, ArgumentsOfTheListAreJudgedAfterTheHandles) {
    const std::string self = "KvApplMan_getFlashApplications ";
    EXPECT_EQ(KvApplMan_getFlashApplications(pool, t.device, nullptr, 1, nullptr, nullptr), -100);
    EXPECT_EQ(KvApplMan_getFlashApplications(pool, t.device, t.access, 1, nullptr, ids.data()), -100);
    EXPECT_EQ(list(1, nullptr, 1), -100);
    EXPECT_EQ(list(1, ids.data(), 3), -850);
    EXPECT_EQ(messages(pool), (Messages{kBadHandles, self + "1024", self + "1024", self + "0x1250003a(1)"}));
    EXPECT_EQ(ids, (Ids{0, 0, 0, kFill})) << "the array is cleared before the mode is judged";
    EXPECT_EQ(procedures(), Ids{});
}

TEST_F(Flash, AListThatDoesNotFitTellsItsLengthAndARefusedOneDoesNot) {
    answer(5, {9, 8}); // any value but -1 is success
    EXPECT_EQ(list(0, ids.data(), 3), 0);
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(ids, (Ids{9, 8, 0, kFill}));
    const auto asked = request<TApplManPairRequest>(0);
    EXPECT_EQ((Ids{asked.accessId, asked.second}), (Ids{t.accessId, 1}));
    answer(0, {1, 2, 3, 4, 5});
    EXPECT_EQ(list(0, ids.data(), 2), -200);
    EXPECT_EQ(count, 5U);
    EXPECT_EQ(ids, (Ids{0, 0, 0, kFill}));
    answer(0, {1});
    EXPECT_EQ(list(0, nullptr, 0), -200);
    EXPECT_EQ(count, 1U);
    answer(-1, {1});
    EXPECT_EQ(list(0, ids.data(), 2), -851);
    EXPECT_EQ(count, 2U);
    const std::string self = "KvApplMan_getFlashApplications ";
    EXPECT_EQ(messages(pool), (Messages{self + "0x1250003c(5,2)", self + "0x1250003c(1,0)", self + "0x1250003b"}));
}

TEST_F(Flash, AnyFailedCallReadsAsAnEmptyList) {
    for (const auto& reply : {wire::notOffered(), wire::failedCall()}) {
        t.target.script(kGetFlashApplications, reply);
        EXPECT_EQ(list(0, ids.data(), 2), 0);
        EXPECT_EQ(count, 0U);
    }
    answer(0, {});
    EXPECT_EQ(list(0, nullptr, 0), 0);
    EXPECT_EQ(messages(pool), Messages{});
}

TEST_F(Flash, ItemsAreThoseOfApplicationsButWithoutDefaults) {
    std::int64_t quads[2] = {};
    t.target.script(kGetFlashParam, wire::value(std::vector<std::int64_t>{-1, 5}));
    EXPECT_EQ(read(1200, quads, sizeof quads), 0);
    EXPECT_EQ(size, 16);
    EXPECT_EQ((std::array{quads[0], quads[1]}), (std::array<std::int64_t, 2>{-1, 5}));
    const auto asked = request<TApplManRequest>(0);
    EXPECT_EQ((Ids{asked.first, asked.second, asked.third}), (Ids{t.accessId, 7, 64}));
    KvPlatform_addEntry(pool, 4711);
    t.target.script(kGetFlashParam, wire::noValue({0x14a00804}));
    std::uint32_t word = kFill;
    EXPECT_EQ(read(9, &word, 4), -175);
    EXPECT_EQ(word, 0U);
    EXPECT_EQ(pool.codes(), (Ids{4711, 0x14a00804, 0x1250003d})) << "the pool is not emptied";
    t.target.script(kGetFlashParam, wire::failedCall());
    EXPECT_EQ(read(9, &word, 4), -185);
    EXPECT_EQ(messages(pool).back(), "KvApplMan_getFlashApplInfo 0x1250000a(KvApplMan_getFlashApplInfo)");
}

TEST_F(Flash, ArgumentsOfAnItemAreJudgedAfterTheHandles) {
    char buffer[3] = {1, 1, 1};
    EXPECT_EQ(KvApplMan_getFlashApplInfo(pool, nullptr, t.access, 7, 1, buffer, nullptr), -100);
    EXPECT_EQ(KvApplMan_getFlashApplInfo(pool, t.device, t.access, 7, 1, buffer, nullptr), -100);
    EXPECT_EQ(read(1, nullptr, 1), -100);
    EXPECT_EQ(read(1, buffer, 2), -205);
    EXPECT_EQ(std::string(buffer, 3), std::string("\0\0\1", 3)) << "the buffer is cleared before the item is judged";
    EXPECT_EQ(messages(pool), (Messages{kBadHandles, "KvApplMan_getFlashApplInfo 1024",
                                        "KvApplMan_getFlashApplInfo 1024", "mapParamAndCheckParamSize 0x12500014"}));
    EXPECT_EQ(procedures(), Ids{});
}

TEST_F(Flash, TheOneWritableItemIsSentInWholeValues) {
    const std::int64_t values[] = {1, -2, 3};
    for (const std::uint32_t bytes : {20U, 7U, 0U}) {
        t.target.forgetRequests();
        t.target.script(kSetFlashParam, wire::result(5));
        EXPECT_EQ(set(1200, bytes == 0 ? nullptr : values, bytes), 0);
        const auto asked = request<TApplManSetFlashParamRequest>(0);
        EXPECT_EQ((Ids{asked.accessId, asked.flashApplId, asked.targetParamId}), (Ids{t.accessId, 7, 64}));
        EXPECT_EQ(asked.value, TApplManValue(std::vector<std::int64_t>(values, values + bytes / 8)));
    }
    EXPECT_EQ(set(0, nullptr, 1), -100);
    EXPECT_EQ(set(0, values, 8), -205) << "what can be read cannot be written";
    t.target.script(kSetFlashParam, wire::result(-1, {0x14a00804}));
    EXPECT_EQ(set(1200, values, 8), -176) << "nothing is tolerated";
    t.target.script(kSetFlashParam, wire::notOffered());
    EXPECT_EQ(set(1200, values, 8), -185);
    const std::string self = "KvApplMan_setFlashApplParameter ";
    EXPECT_EQ(messages(pool), (Messages{self + "1024", self + "0x12500014", "target 0x14a00804", self + "0x1250003e",
                                        self + "0x1250000a(KvApplMan_setFlashApplParameter)"}));
    EXPECT_EQ(procedures().size(), 3U);
}

TEST_F(Flash, LoadingIsWaitedForOnTheApplicationManagerAndClearingIsNot) {
    t.target.script(kLoadFlashAppl, wire::result(5));
    t.target.script(kGetParam, wire::value(std::uint32_t{10}));
    t.target.script(kGetCommandState, wire::result(0));
    t.target.script(kClearFlashAppl, wire::result(5));
    EXPECT_EQ(KvApplMan_loadFlashAppl(pool, t.device, t.access, kWideId), 0);
    EXPECT_EQ(KvApplMan_clearFlashAppl(pool, t.device, t.access, kWideId), 0);
    EXPECT_EQ(procedures(), (Ids{kLoadFlashAppl, kGetParam, kGetCommandState, kClearFlashAppl}));
    EXPECT_EQ(request<TApplManRequest>(2).third, 0U);
    TApplManFlashRequest expected{t.accessId, {}};
    expected.command.command = 1;
    expected.command.flashApplId = static_cast<std::int64_t>(kWideId);
    for (const std::size_t index : {0U, 3U}) {
        EXPECT_EQ(t.target.requests()[index].arguments, wire::bytesOf(expected));
    }
    EXPECT_EQ(messages(pool), Messages{});
}

TEST_F(Flash, ACommandThatIsRefusedOrFailsHasItsOwnStatus) {
    t.target.script(kGetParam, wire::value(std::uint32_t{10}));
    t.target.script(kGetCommandState, wire::result(1));
    for (const auto& [reply, status] :
         {std::pair{wire::result(-1), -852}, {wire::result(0), -852}, {wire::failedCall(), -185}}) {
        t.target.script(kLoadFlashAppl, reply);
        EXPECT_EQ(KvApplMan_loadFlashAppl(pool, t.device, t.access, kWideId), status);
    }
    for (const auto& [reply, status] : {std::pair{wire::result(-1), -853}, {wire::notOffered(), -185}}) {
        t.target.script(kClearFlashAppl, reply);
        EXPECT_EQ(KvApplMan_clearFlashAppl(pool, t.device, t.access, kWideId), status);
    }
    const std::string load = "KvApplMan_loadFlashAppl ";
    const std::string clear = "KvApplMan_clearFlashAppl ";
    EXPECT_EQ(messages(pool),
              (Messages{load + "0x1250003f", "waitWhileBusy 0x1250003f", load + "0x1250000a(KvApplMan_loadFlashAppl)",
                        clear + "0x12500040", clear + "0x1250000a(KvApplMan_clearFlashAppl)"}));
}

TEST(ClientLevelForms, RefuseAMissingClientUnderTheirOwnNames) {
    Pool pool;
    KV_RPC_PROG_APPLMAN_HOST2Client* const none = nullptr;
    std::int32_t count = 0;
    EXPECT_EQ(KvApplMan_getApplications(*pool, none, 1, 0, nullptr, &count), Status::argument);
    EXPECT_EQ(KvApplMan_setFlashApplParameter(*pool, none, 1, 2, 0, nullptr, 0), Status::argument);
    EXPECT_EQ(applman::KvApplMan_loadFlashAppl(*pool, none, 1, 2), Status::argument);
    EXPECT_EQ(applman::KvApplMan_clearFlashAppl(*pool, none, 1, 2), Status::argument);
    EXPECT_EQ(messages(pool), (Messages{"KvApplMan_getApplications 1024", "KvApplMan_setFlashApplParameter 1024",
                                        "KvApplMan_loadFlashAppl 1024", "KvApplMan_clearFlashAppl 1024"}));
}
