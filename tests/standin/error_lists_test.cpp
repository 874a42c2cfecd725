#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "error_lists/error_list_access.h"
#include "support/pool.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Codes = std::vector<std::uint32_t>;

/// Two entries: 0x14a00804, line 7, "open", "%s%u%d%x" with "ab", 5, -2, 255; and 1, line 2, "", no arguments.
const Bytes kTwoEntries{
    0,    0,    0,    2,                                                            // entries
    0x14, 0xa0, 0x08, 0x04, 0,    0,    0,    7,                                    // code, line
    0,    0,    0,    4,    'o',  'p',  'e',  'n',                                  // operation
    0,    0,    0,    8,    '%',  's',  '%',  'u',  '%', 'd', '%', 'x',             // signature
    0,    0,    0,    2,    'a',  'b',  0,    0,                                    // "ab", padded
    0,    0,    0,    5,    0xff, 0xff, 0xff, 0xfe, 0,   0,   0,   0xff,            // 5, -2, 255
    0,    0,    0,    1,    0,    0,    0,    2,    0,   0,   0,   0,    0, 0, 0, 0 // second entry
};

std::int32_t receive(KvCErrorListPool& pool, const Bytes& bytes) {
    return pool.deSerialize(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

} // namespace

TEST(SerialisedErrorList, ReadsAndWritesTheDocumentedBytes) {
    Pool pool;
    KvPlatform_addEntry(pool, 9);
    ASSERT_EQ(receive(pool, kTwoEntries), 0);
    EXPECT_EQ(pool.codes(), (Codes{9, 0x14a00804, 1}));
    EXPECT_EQ(KvPlatform_entryLine(pool, 1), 7U);
    EXPECT_STREQ(KvPlatform_entryOperation(pool, 1), "open");
    EXPECT_EQ(pool.text(1), "The target system cannot answer for the parameter. Parameter: ab. Affected application: "
                            "0x5.");
    EXPECT_EQ(pool.text(2), "Message 0x1 is not registered.");
    EXPECT_EQ(KvPlatform_entrySignature(pool, 2), nullptr);
    auto entries = KvErrorListAccess::entries(pool);
    entries.erase(entries.begin());
    EXPECT_EQ(KvErrorListAccess::serialize(entries), kTwoEntries);
}

TEST(SerialisedErrorList, BytesThatAreNotOneWholeListAddNothing) {
    Pool pool;
    for (std::uint32_t length = 0; length < kTwoEntries.size(); ++length) {
        EXPECT_LT(pool->deSerialize(kTwoEntries.data(), length), 0) << length;
    }
    Bytes bytes = kTwoEntries;
    for (const char* const conversion : {"%n", "%l", "%%", "s%", "%S"}) {
        std::copy_n(conversion, 2, bytes.begin() + 24);
        EXPECT_LT(receive(pool, bytes), 0) << conversion;
    }
    bytes = kTwoEntries;
    bytes.push_back(0);
    EXPECT_LT(receive(pool, bytes), 0);
    EXPECT_EQ(pool->getErrorCount(), 0U);
}

TEST(SerialisedErrorList, OneListBringsEightMebibytesAtMostAndAPoolKeepsEveryListUntilItIsCleared) {
    const auto listOf = [](std::size_t count) {
        return KvErrorListAccess::serialize(std::vector<KvErrorListEntry>(count));
    };
    Pool pool;
    for (int reply = 0; reply < 20; ++reply) {
        EXPECT_EQ(receive(pool, listOf(20'000)), 0);
    }
    EXPECT_EQ(receive(pool, kTwoEntries), 0);
    EXPECT_EQ(pool->getErrorCount(), 400'002U);
    EXPECT_EQ(pool->getErrorCode(400'000), 0x14a00804U);
    KvPlatform_clearPool(pool);
    EXPECT_EQ(pool->getErrorCount(), 0U);
    EXPECT_EQ(receive(pool, listOf(200'000)), 0);
    const std::uint32_t kept = pool->getErrorCount();
    EXPECT_GE(kept, 8U * 1024 * 1024 / 200);
    EXPECT_LE(kept, 8U * 1024 * 1024 / sizeof(KvErrorListEntry));
}

TEST(MessageTables, ArgumentsTakeThePlaceOfTheirNumbersAndTextsThatWereLentOutliveTheirTable) {
    const char* const forms[] = {"%1 before %2, then %1", "%2%1", "0x%1", "100 % of %1%", "%6 %0 %%1 %"};
    const char* const texts[] = {"%2 before %n, then %2", "-2-1", "0xff00aa", "100 % of -2147483648%", "%6 %0 %a %"};
    constexpr KvResRange kRange{2, 6};
    const KvResText table{forms, &kRange, 1, 0x70000000};
    EXPECT_EQ(KvCErrorManager::_registerMessages(table), 0);
    Pool pool;
    pool->setError(0x70000002, 1, "", "%s%s", "%2", "%n"); // an argument stays text
    pool->setError(0x70000003, 1, "", "%d%d", -1, -2);
    pool->setError(0x70000004, 1, "", "%x", 0xFF00AAU);
    pool->setError(0x70000005, 1, "", "%d", -2147483647 - 1);
    pool->setError(0x70000006, 1, "", "%s", "a");
    for (std::uint32_t i = 0; i < std::size(texts); ++i) {
        EXPECT_EQ(pool.text(i), texts[i]);
    }
    const char* const lent = KvPlatform_entryText(pool, 0);
    EXPECT_EQ(KvCErrorManager::_unregisterMessages(table), 0);
    EXPECT_EQ(pool.text(0), "Message 0x70000002 is not registered. Its arguments: %2, %n");
    EXPECT_STREQ(lent, texts[0]);
    EXPECT_NE(KvCErrorManager::_unregisterMessages(table), 0);
}
