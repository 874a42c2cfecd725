#include "target/kvtarget_options.h"

#include <gtest/gtest.h>

namespace simulated_target {
namespace {

TEST(CommandLine, SetsEveryOption) {
    const auto options = parseCommandLine({"--listen", "127.0.0.2:4711", "--store", "folder", "--serial", "4294967295",
                                           "--init-calls", "0", "--timeout", "3", "--delay", "7", "--lack-procedure",
                                           "14", "--lack-procedure", "17", "--lack-parameter", "43"});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->host, "127.0.0.2");
    EXPECT_EQ(options->port, 4711);
    EXPECT_EQ(options->store, "folder");
    EXPECT_EQ(options->cnSerialNumber, 4294967295U);
    EXPECT_EQ(options->initialisationCalls, 0U);
    EXPECT_EQ(options->commandTimeout, 3U);
    EXPECT_EQ(options->commandDelay, std::chrono::milliseconds{7});
    EXPECT_EQ(options->lackedProcedures, (std::set<std::uint32_t>{14, 17}));
    EXPECT_EQ(options->lackedParameters, (std::set<std::uint32_t>{43}));
    EXPECT_FALSE(parseCommandLine({"--help"}));
}

TEST(CommandLine, ListensOnLoopbackAndRecordsNothingUnlessTold) {
    const auto options = parseCommandLine({});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->host, "127.0.0.1");
    EXPECT_EQ(options->port, 0);
    EXPECT_FALSE(options->store.empty());
    EXPECT_FALSE(options->recordRequests);
}

TEST(CommandLine, IsRefusedWhenItMakesNoSense) {
    const std::vector<std::string> bad[] = {{"--bogus", "1"},
                                            {"extra"},
                                            {"--serial"},
                                            {"--serial", "x"},
                                            {"--serial", "-1"},
                                            {"--serial", "4294967296"},
                                            {"--serial", "1 "},
                                            {"--listen", ""},
                                            {"--listen", "localhost"},
                                            {"--listen", "1.2.3"},
                                            {"--listen", "1.2.3.256"},
                                            {"--listen", "1.2.3.4.5"},
                                            {"--listen", "1.2.3.4:"},
                                            {"--listen", "1.2.3.4:65536"},
                                            {"--listen", ":80"},
                                            {"--store", ""},
                                            {"--delay", "1s"},
                                            {"--lack-procedure", "many"}};
    for (const auto& words : bad) {
        EXPECT_THROW(parseCommandLine(words), BadCommandLine) << testing::PrintToString(words);
    }
}

} // namespace
} // namespace simulated_target
