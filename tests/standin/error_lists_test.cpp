#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "error_lists/error_list_access.h"
#include "support/failing_memory.h"
#include "support/pool.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

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

Bytes withWord(Bytes bytes, std::size_t offset, std::uint32_t word) {
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[offset + i] = static_cast<std::uint8_t>(word >> (24 - 8 * i));
    }
    return bytes;
}

/// As KvCErrorList::setError, without the compiler's eye on the signature.
template <class... Arguments>
void setUnchecked(KvCErrorListPool& pool, const char* signature, Arguments... arguments) {
    void (KvCErrorList::*volatile const set)(std::uint32_t, std::uint32_t, const char*, const char*, ...) =
        &KvCErrorList::setError;
    (pool.*set)(1, 1, "operation", signature, arguments...);
}

} // namespace

TEST(ErrorList, EntryKeepsWhatWasReported) {
    Pool pool;
    {
        std::string operation = "operation";
        std::string text = "text";
        pool->setError(0x12500004, 77, operation.c_str(), "%s%u%d%x", text.c_str(), 4000000000U, -5, 0xBEEFU);
        operation = text = "overwritten";
    }
    pool->setError(3, 1, nullptr, nullptr);
    ASSERT_EQ(KvPlatform_entryCount(pool), 2U);
    EXPECT_EQ(KvPlatform_entryCode(pool, 0), 0x12500004U);
    EXPECT_EQ(KvPlatform_entryLine(pool, 0), 77U);
    EXPECT_STREQ(KvPlatform_entryOperation(pool, 0), "operation");
    EXPECT_STREQ(KvPlatform_entrySignature(pool, 0), "%s%u%d%x");
    ASSERT_EQ(KvPlatform_entryArgumentCount(pool, 0), 4U);
    EXPECT_STREQ(KvPlatform_entryArgument(pool, 0, 0), "text");
    EXPECT_STREQ(KvPlatform_entryArgument(pool, 0, 1), "4000000000");
    EXPECT_STREQ(KvPlatform_entryArgument(pool, 0, 2), "-5");
    EXPECT_STREQ(KvPlatform_entryArgument(pool, 0, 3), "beef");
    EXPECT_STREQ(KvPlatform_entryOperation(pool, 1), "");
    EXPECT_EQ(KvPlatform_entrySignature(pool, 1), nullptr);
    EXPECT_EQ(KvPlatform_entryArgumentCount(pool, 1), 0U);
}

TEST(ErrorList, IndexOutsideReadsAsNothing) {
    Pool pool;
    pool->setError(3, 1, "operation", "%u", 1U);
    EXPECT_EQ(KvPlatform_entryCode(pool, 1), 0U);
    EXPECT_EQ(KvPlatform_entryLine(pool, 1), 0U);
    EXPECT_EQ(KvPlatform_entryOperation(pool, 1), nullptr);
    EXPECT_EQ(KvPlatform_entrySignature(pool, 1), nullptr);
    EXPECT_EQ(KvPlatform_entryArgumentCount(pool, 1), 0U);
    EXPECT_EQ(KvPlatform_entryArgument(pool, 0, 1), nullptr);
    EXPECT_EQ(KvPlatform_entryText(pool, 0xFFFFFFFF), nullptr);
}

TEST(ErrorList, NothingIsReadBehindAnUnknownConversion) {
    Pool pool;
    setUnchecked(pool, "%u%q%s", 6U, "x", "y");
    setUnchecked(pool, "%ld", 7L);
    setUnchecked(pool, "%u%", 8U);
    setUnchecked(pool, "%s", static_cast<const char*>(nullptr));
    EXPECT_STREQ(KvPlatform_entrySignature(pool, 0), "%u");
    EXPECT_STREQ(KvPlatform_entryArgument(pool, 0, 0), "6");
    EXPECT_EQ(KvPlatform_entrySignature(pool, 1), nullptr);
    EXPECT_STREQ(KvPlatform_entrySignature(pool, 2), "%u");
    EXPECT_STREQ(KvPlatform_entryArgument(pool, 3, 0), "(null)");
}

TEST(ErrorList, AppendingKeepsTheOrderAndTheOther) {
    Pool first;
    Pool second;
    KvPlatform_addEntry(first, 1);
    KvPlatform_addEntry(second, 2);
    KvPlatform_addEntry(second, 3);
    *first += *second;
    EXPECT_EQ(first.codes(), (std::vector<std::uint32_t>{1, 2, 3}));
    EXPECT_EQ(second.codes(), (std::vector<std::uint32_t>{2, 3}));
    *second += *second;
    EXPECT_EQ(second.codes(), (std::vector<std::uint32_t>{2, 3, 2, 3}));
    second->reset();
    *first += *second;
    EXPECT_EQ(first->getErrorCount(), 3U);
    KvPlatform_addEntry(second, 4);
    EXPECT_EQ(second.codes(), std::vector<std::uint32_t>{4});
}

TEST(ErrorList, EntryWithoutMemoryIsLostAndNothingElse) {
    for (std::size_t allowed = 0;; ++allowed) {
        Pool pool;
        KvPlatform_addEntry(pool, 1);
        const FailingMemory memory{allowed};
        pool->setError(2, 1, "an operation with a name on the heap", "%s%s", "a text that is stored on the heap too",
                       "another text that is stored on the heap");
        const bool lost = memory.hasFailed();
        ASSERT_EQ(pool->getErrorCount(), lost ? 1U : 2U);
        ASSERT_EQ(pool->getErrorCode(0), 1U);
        if (!lost) {
            ASSERT_GT(allowed, 3U);
            break;
        }
    }
    const FailingMemory none{0};
    EXPECT_EQ(KvPlatform_createPool(), nullptr);
}

TEST(SerialisedErrorList, ReadsAndWritesTheDocumentedBytes) {
    Pool pool;
    KvPlatform_addEntry(pool, 9);
    ASSERT_EQ(receive(pool, kTwoEntries), 0);
    EXPECT_EQ(pool.codes(), (std::vector<std::uint32_t>{9, 0x14a00804, 1}));
    EXPECT_EQ(KvPlatform_entryLine(pool, 1), 7U);
    EXPECT_STREQ(KvPlatform_entryOperation(pool, 1), "open");
    EXPECT_STREQ(KvPlatform_entrySignature(pool, 1), "%s%u%d%x");
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
        broken.push_back(withWord(kTwoEntries, 0, lie)); // entries
    }
    for (const std::uint32_t lie : {9U, 0x80000000U, 0xfffffffdU, 0xffffffffU}) {
        broken.push_back(withWord(kTwoEntries, 12, lie)); // length of the operation
        broken.push_back(withWord(kTwoEntries, 20, lie)); // length of the signature
        broken.push_back(withWord(kTwoEntries, 32, lie)); // length of a text
    }
    for (const char* const conversion : {"%n", "%l", "%%", "s%", "%S"}) {
        Bytes bytes = kTwoEntries;
        std::copy_n(conversion, 2, bytes.begin() + 24);
        broken.push_back(bytes);
    }
    Pool pool;
    for (const Bytes& bytes : broken) {
        EXPECT_LT(receive(pool, bytes), 0);
        ASSERT_EQ(pool->getErrorCount(), 0U) << bytes.size();
    }
    EXPECT_LT(pool->deSerialize(nullptr, 4), 0);
    EXPECT_EQ(receive(pool, {0, 0, 0, 0}), 0); // no entries are a list too
    EXPECT_EQ(pool->getErrorCount(), 0U);
}

TEST(SerialisedErrorList, DamagedBytesGiveAWholeListOrNothing) {
    std::mt19937 random{20};
    std::uint32_t accepted = 0;
    for (int round = 0; round < 20000; ++round) {
        Bytes bytes = kTwoEntries;
        for (auto changes = 1 + random() % 3; changes != 0; --changes) {
            bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
        }
        Pool pool;
        const bool whole = receive(pool, bytes) == 0;
        ASSERT_EQ(pool->getErrorCount(), whole ? 2U : 0U);
        if (whole) { ASSERT_EQ(KvErrorListAccess::serialize(KvErrorListAccess::entries(pool)).size(), bytes.size()); }
        accepted += whole ? 1 : 0;
    }
    EXPECT_GT(accepted, 1000U); // changed codes, lines and texts still make a list
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

    Pool whole;
    *whole += *pool;
    *whole += *pool;
    EXPECT_EQ(whole->getErrorCount(), 2 * kept);
    KvPlatform_addEntry(pool, 5);
    EXPECT_EQ(pool->getErrorCode(kept), 5U);

    pool->reset();
    EXPECT_EQ(receive(pool, kTwoEntries), 0);
    EXPECT_EQ(pool->getErrorCount(), 2U);
}

TEST(SerialisedErrorList, TextIsNeverAFormat) {
    const std::string text = "%n%s%1" + std::string(1 << 20, 'x');
    const auto bytes = KvErrorListAccess::serialize({{1024, 1, "%n%s", "%s", {text}}});
    Pool pool;
    ASSERT_EQ(receive(pool, bytes), 0);
    EXPECT_STREQ(KvPlatform_entryOperation(pool, 0), "%n%s");
    EXPECT_EQ(KvPlatform_entryArgument(pool, 0, 0), text);
    pool->setError(0x7fffffff, 1, "operation", "%s", text.c_str());
    EXPECT_EQ(pool.text(1), "Message 0x7fffffff is not registered. Its arguments: " + text);
}
