#include "target/kvtarget_options.h"

#include <gtest/gtest.h>

namespace simulated_target {
namespace {

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
