#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
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

Bytes withWord(std::size_t offset, std::uint32_t word) {
    Bytes bytes = kTwoEntries;
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[offset + i] = static_cast<std::uint8_t>(word >> (24 - 8 * i));
    }
    return bytes;
}

const char* const kTexts[] = {"plain", "%1 before %2, then %1", "%5%4%3%2%1", "0x%1", "100 % of %1%", "%6 %0 %%1 %"};
constexpr KvResRange kRange{2, 6};
constexpr KvResText kTable{kTexts, &kRange, 1, 0x70000000};

class MessageTables : public testing::Test {
protected:
    MessageTables() { EXPECT_EQ(KvCErrorManager::_registerMessages(kTable), 0); }
    ~MessageTables() override { KvCErrorManager::_unregisterMessages(kTable); }

    Pool pool_;
};

} // namespace

TEST(SerialisedErrorList, ReadsAndWritesTheDocumentedBytes) {
    Pool pool;
    KvPlatform_addEntry(pool, 9);
    ASSERT_EQ(receive(pool, kTwoEntries), 0);
    EXPECT_EQ(pool.codes(), (Codes{9, 0x14a00804, 1}));
    EXPECT_EQ(KvPlatform_entryLine(pool, 1), 7U);
    EXPECT_STREQ(KvPlatform_entryOperation(pool, 1), "open");
    EXPECT_EQ(pool.text(1), "Message 0x14a00804 is not registered. Its arguments: ab, 5, -2, ff");
    EXPECT_EQ(KvPlatform_entrySignature(pool, 2), nullptr);
    auto entries = KvErrorListAccess::entries(pool);
    entries.erase(entries.begin());
    EXPECT_EQ(KvErrorListAccess::serialize(entries), kTwoEntries);
}

TEST(SerialisedErrorList, BytesThatAreNotOneWholeListAddNothing) {
    std::vector<Bytes> broken;
    for (std::size_t length = 0; length < kTwoEntries.size(); ++length) {
        broken.emplace_back(kTwoEntries.begin(), kTwoEntries.begin() + static_cast<std::ptrdiff_t>(length));
    }
    broken.push_back(kTwoEntries);
    broken.back().push_back(0);
    for (const std::uint32_t lie : {0U, 1U, 3U, 0x7fffffffU, 0xffffffffU}) {
        broken.push_back(withWord(0, lie)); // entries
    }
    for (const char* const conversion : {"%n", "%l", "%%", "s%", "%S"}) {
        broken.push_back(kTwoEntries);
        std::copy_n(conversion, 2, broken.back().begin() + 24);
    }
    Pool pool;
    for (const Bytes& bytes : broken) {
        EXPECT_LT(receive(pool, bytes), 0);
        ASSERT_EQ(pool->getErrorCount(), 0U) << bytes.size();
    }
    EXPECT_LT(pool->deSerialize(nullptr, 4), 0);
    EXPECT_EQ(receive(pool, {0, 0, 0, 0}), 0); // no entries are a list too
}

TEST(SerialisedErrorList, ReceivedEntriesEndAtEightMebibytesAndOthersDoNot) {
    const Bytes smallEntries = KvErrorListAccess::serialize(std::vector<KvErrorListEntry>(20000));
    Pool pool;
    for (int poll = 0; poll < 20; ++poll) {
        EXPECT_EQ(receive(pool, smallEntries), 0);
    }
    const std::uint32_t kept = pool->getErrorCount();
    EXPECT_GE(kept, 8U * 1024 * 1024 / 200);
    EXPECT_LE(kept, 8U * 1024 * 1024 / sizeof(KvErrorListEntry));
    KvPlatform_addEntry(pool, 5);
    EXPECT_EQ(pool->getErrorCode(kept), 5U);
    pool->reset();
    EXPECT_EQ(receive(pool, kTwoEntries), 0);
    EXPECT_EQ(pool->getErrorCount(), 2U);
}

TEST_F(MessageTables, ArgumentsTakeThePlaceOfTheirNumbers) {
    pool_->setError(0x70000002, 1, "", "%s", "surplus");
    pool_->setError(0x70000003, 1, "", "%s%s", "%2", "%n");
    pool_->setError(0x70000004, 1, "", "%d%d", -1, -2);
    pool_->setError(0x70000005, 1, "", "%x", 0xFF00AAU);
    pool_->setError(0x70000006, 1, "", "%d", -2147483647 - 1);
    pool_->setError(0x70000007, 1, "", "%s", "a");
    KvPlatform_addEntry(pool_, 0x70000001);
    KvPlatform_addEntry(pool_, 0x70000008);
    const char* const texts[] = {"plain",
                                 "%2 before %n, then %2", // an argument stays text
                                 "%5%4%3-2-1",
                                 "0xff00aa",
                                 "100 % of -2147483648%",
                                 "%6 %0 %a %",
                                 "Message 0x70000001 is not registered.",
                                 "Message 0x70000008 is not registered."};
    for (std::uint32_t i = 0; i < std::size(texts); ++i) {
        EXPECT_EQ(pool_.text(i), texts[i]);
    }
}

TEST_F(MessageTables, ATableMayComeAndGoWhileTextsAreRenderedAndLent) {
    KvPlatform_addEntry(pool_, 0x70000002);
    const char* const lent = KvPlatform_entryText(pool_, 0);
    std::atomic<bool> done = false;
    std::thread loader{[&] {
        for (int i = 0; i < 2000; ++i) {
            KvCErrorManager::_unregisterMessages(kTable);
            KvCErrorManager::_registerMessages(kTable);
        }
        KvCErrorManager::_unregisterMessages(kTable);
        done = true;
    }};
    Pool other;
    KvPlatform_addEntry(other, 0x70000002);
    while (!done) {
        const std::string text = other.text(0);
        EXPECT_TRUE(text == "plain" || text == "Message 0x70000002 is not registered.") << text;
    }
    loader.join();
    EXPECT_EQ(other.text(0), "Message 0x70000002 is not registered.");
    EXPECT_STREQ(lent, "plain");
    EXPECT_NE(KvCErrorManager::_unregisterMessages(kTable), 0);
}
