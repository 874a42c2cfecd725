// What a reply of 1 KiB costs in memory, whatever lengths and counts it declares, and what a call does.
#include <algorithm>

#include <gtest/gtest.h>

#include "KvApplManConstants.h"
#include "api/api_test.h"
#include "support/failing_memory.h"
#include "support/pool.h"
#include "support/wire.h"

using namespace applman;

namespace {

constexpr std::size_t kResults = 1000; // bytes, behind the header
constexpr std::size_t kMost = 128 << 10;

/// Bytes that are taken to decode the record and its error list.
template <class Record>
std::size_t costOf(const std::vector<std::uint8_t>& bytes) {
    const Pool pool;
    const std::size_t before = memoryUse().bytes;
    Record record;
    Xdr decoder = Xdr::decoder(bytes);
    if (xdr_record(decoder, record)) {
        pool->deSerialize(record.errorList.data(), static_cast<std::uint32_t>(record.errorList.size()));
    }
    return memoryUse().bytes - before;
}

/// The most that a record costs when one of its words is something else: a count that the bytes behind it could just
/// hold, or one far beyond.
template <class Record>
std::size_t worstOf(const Record& record) {
    std::vector<std::uint8_t> bytes = wire::bytesOf(record);
    bytes.resize(kResults);
    std::size_t worst = costOf<Record>(bytes);
    for (std::size_t at = 0; at < kResults; at += 4) {
        const auto left = static_cast<std::uint32_t>(kResults - at - 4);
        for (const std::uint32_t lie :
             {left, left / 4, left / 16, 0x10000U, 0x20000001U, 0x40000001U, 0x80000000U, 0xfffffffdU}) {
            std::vector<std::uint8_t> lying = bytes;
            for (std::size_t i = 0; i < 4; ++i) {
                lying[at + i] = static_cast<std::uint8_t>(lie >> (24 - 8 * i));
            }
            worst = std::max(worst, costOf<Record>(lying));
        }
    }
    return worst;
}

} // namespace

TEST(Reply, CostsAHundredTimesItsBytesAtMost) {
    const ErrorListBytes list = KvErrorListAccess::serialize(std::vector<KvErrorListEntry>(60));
    const KvErrorListEntry entry{1, 2, "target", "%s%u", {std::string{"text"}, 3U}};
    const ErrorListBytes one = KvErrorListAccess::serialize({entry});
    EXPECT_LE(worstOf(TApplManValueResult{0, Text{"a"}, one}), kMost);
    EXPECT_LE(worstOf(TApplManValueResult{0, std::vector<std::uint32_t>{1}, one}), kMost);
    EXPECT_LE(worstOf(TApplManValueResult{0, std::vector<Text>{"a"}, one}), kMost);
    EXPECT_LE(worstOf(TApplManValueResult{0, std::vector<std::uint8_t>{1}, one}), kMost);
    EXPECT_LE(worstOf(TApplManValueResult{0, std::vector<std::int64_t>{1}, one}), kMost);
    EXPECT_LE(worstOf(TApplManResult{0, list}), kMost);
    EXPECT_LE(worstOf(TApplManRegisterResult{0, 7, "a", "b", one}), kMost);
    EXPECT_LE(worstOf(TApplManFileListResult{0, 0, {{"a", "b", "c", 9}}, one}), kMost);
    EXPECT_LE(worstOf(TApplManAddFileResult{0, "p", one, "n"}), kMost);
    EXPECT_LE(worstOf(TApplManGroupResult{1, 0, one, 3, 4}), kMost);
    EXPECT_LE(worstOf(TApplManCoreIdResult{1, 0, one, {3}}), kMost);
    EXPECT_LE(worstOf(TApplManFlashListResult{1, 0, one, {3}, {}, {4}}), kMost);
}

using WarmCall = ApiTest;

TEST_F(WarmCall, AllocatesNothing) {
    const auto read = [this] {
        std::uint32_t value = 0;
        std::int32_t size = sizeof value;
        return KvApplMan_getApplInfo(pool, t.device, t.access, 16, KV_APPLMAN_ITEM_GROUP_SIZE, &value, &size);
    };
    t.target.scriptAlways(kGetParam, wire::value(std::uint32_t{4}));
    EXPECT_EQ(read(), 0);
    const std::size_t before = memoryUse().bytes;
    EXPECT_EQ(read(), 0);
    EXPECT_EQ(memoryUse().bytes, before);
}
