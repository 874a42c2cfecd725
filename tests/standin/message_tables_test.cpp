#include <atomic>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "error_lists/platform_messages.h"
#include "support/pool.h"

namespace {

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

TEST_F(MessageTables, ArgumentsTakeThePlaceOfTheirNumbers) {
    pool_->setError(0x70000002, 1, "", "%s", "surplus");
    pool_->setError(0x70000003, 1, "", "%s%u", "%2", 7U);
    pool_->setError(0x70000004, 1, "", "%u%u%u%u%u%u", 1U, 2U, 3U, 4U, 5U, 6U);
    pool_->setError(0x70000004, 1, "", "%d%d", -1, -2);
    pool_->setError(0x70000005, 1, "", "%x", 0xFF00AAU);
    pool_->setError(0x70000006, 1, "", "%d", -2147483647 - 1);
    pool_->setError(0x70000007, 1, "", "%s", "a");
    EXPECT_EQ(pool_.text(0), "plain");
    EXPECT_EQ(pool_.text(1), "%2 before 7, then %2"); // a placeholder in an argument stays text
    EXPECT_EQ(pool_.text(2), "54321");
    EXPECT_EQ(pool_.text(3), "%5%4%3-2-1");
    EXPECT_EQ(pool_.text(4), "0xff00aa");
    EXPECT_EQ(pool_.text(5), "100 % of -2147483648%");
    EXPECT_EQ(pool_.text(6), "%6 %0 %a %");
}

TEST_F(MessageTables, CodesOutsideTheTableAreNotRegistered) {
    for (const std::uint32_t code : {0U, 0x70000001U, 0x70000008U, 0xFFFFFFFFU}) {
        KvPlatform_addEntry(pool_, code);
    }
    for (std::uint32_t i = 0; i < 4; ++i) {
        EXPECT_NE(pool_.text(i).find(" is not registered."), std::string::npos) << pool_.text(i);
    }
}

TEST_F(MessageTables, WithdrawnTableResolvesNothingButLentTextsStay) {
    KvPlatform_addEntry(pool_, 0x70000002);
    const char* const lent = KvPlatform_entryText(pool_, 0);
    EXPECT_EQ(KvCErrorManager::_unregisterMessages(kTable), 0);
    EXPECT_EQ(pool_.text(0), "Message 0x70000002 is not registered.");
    EXPECT_STREQ(lent, "plain");
    EXPECT_NE(KvCErrorManager::_unregisterMessages(kTable), 0);
    EXPECT_EQ(KvCErrorManager::_registerMessages(kTable), 0);
    EXPECT_EQ(pool_.text(0), "plain");
}

TEST_F(MessageTables, TableOfNothingIsRefused) {
    EXPECT_NE(KvCErrorManager::_registerMessages({nullptr, &kRange, 1, 1}), 0);
    EXPECT_NE(KvCErrorManager::_registerMessages({kTexts, nullptr, 1, 1}), 0);
}

TEST_F(MessageTables, RenderingWhileTablesComeAndGo) {
    std::atomic<bool> done = false;
    std::thread loader{[&] {
        for (int i = 0; i < 2000; ++i) {
            KvCErrorManager::_unregisterMessages(kTable);
            KvCErrorManager::_registerMessages(kTable);
        }
        done = true;
    }};
    KvPlatform_addEntry(pool_, 0x70000002);
    while (!done) {
        const std::string text = pool_.text(0);
        EXPECT_TRUE(text == "plain" || text == "Message 0x70000002 is not registered.") << text;
    }
    loader.join();
}

TEST(BuiltInMessages, AreAlwaysRegistered) {
    Pool pool;
    KvPlatform_addEntry(pool, 1024);
    EXPECT_EQ(pool.text(0), "Invalid argument or handle.");
    for (std::uint32_t code = platform_messages::kBase; code < platform_messages::kEnd; ++code) {
        KvPlatform_addEntry(pool, code);
        EXPECT_EQ(pool.text(pool->getErrorCount() - 1).find("not registered"), std::string::npos) << std::hex << code;
    }
}
