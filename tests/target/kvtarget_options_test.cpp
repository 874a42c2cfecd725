#include "target/kvtarget_options.h"

#include <gtest/gtest.h>

namespace simulated_target {
namespace {

TEST(CommandLine, SetsEveryOption) {
    const auto options = parseCommandLine({"--listen",         "127.0.0.2:4711",
                                           "--store",          "folder",
                                           "--serial",         "4294967295",
                                           "--init-calls",     "0",
                                           "--timeout",        "3",
                                           "--delay",          "7",
                                           "--lack-procedure", "14",
                                           "--lack-procedure", "17",
                                           "--lack-parameter", "43",
                                           "--fault",          "6@2-:cut=0x10,reboot"});
    EXPECT_EQ(parseCommandLine({})->host, "127.0.0.1");
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
    ASSERT_EQ(options->faults.size(), 1U);
    EXPECT_EQ(options->faults[0].procedure, 6U);
    EXPECT_EQ(options->faults[0].first, 2U);
    EXPECT_EQ(options->faults[0].faults.at(0).value, 16U);
    EXPECT_FALSE(parseCommandLine({"--help"}));
}

TEST(CommandLine, IsRefusedWhenItMakesNoSense) {
    for (const char* const number : {"x", "-1", "4294967296", "1 "}) {
        EXPECT_THROW(parseCommandLine({"--serial", number}), BadCommandLine) << number;
    }
    for (const char* const address : {"", "localhost", "1.2.3.256", "1.2.3.4:", "1.2.3.4:65536", ":80"}) {
        EXPECT_THROW(parseCommandLine({"--listen", address}), BadCommandLine) << address;
    }
    for (const char* const fault : {"", "6", "6:", "x:hang", "6@0:hang", "6@3-2:hang", "6@%0:hang", "6:hang=1", "6:cut",
                                    "6:hang,", "file.:hang", "4294967296:hang", "6:cut=1x"}) {
        EXPECT_THROW(parseCommandLine({"--fault", fault}), BadCommandLine) << fault;
    }
    EXPECT_THROW(parseCommandLine({"--fault-file", "no such file"}), BadCommandLine);
    EXPECT_THROW(parseCommandLine({"--bogus", "1"}), BadCommandLine);
    EXPECT_THROW(parseCommandLine({"--store", ""}), BadCommandLine);
    EXPECT_THROW(parseCommandLine({"--serial"}), BadCommandLine);
}

} // namespace
} // namespace simulated_target
