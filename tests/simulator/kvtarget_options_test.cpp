#include "simulator/kvtarget_options.h"

#include <gtest/gtest.h>

TEST(CommandLine, IsRefusedWhenItMakesNoSense) {
    using namespace simulated_target;
    const std::pair<const char*, std::vector<const char*>> bad[] = {
        {"--serial", {"x", "-1", "4294967296", "1 "}},
        {"--listen", {"", "localhost", "1.2.3.256", "1.2.3.04", "1.2.3.4:", "1.2.3.4:65536", ":80"}},
        {"--fault", {"", "6", "6:", "x:hang", "6@0:hang", "6@3-2:hang", "6@%0:hang", "6:hang=1", "6:cut", "6:cut=1x"}},
        {"--bogus", {"1"}}};
    for (const auto& [option, values] : bad) {
        for (const char* const value : values) {
            EXPECT_THROW(parseCommandLine({option, value}), BadCommandLine) << option << " " << value;
        }
    }
    EXPECT_THROW(parseCommandLine({"--serial"}), BadCommandLine);
}
