// When progress is told.
#include <chrono>
#include <vector>

#include <gtest/gtest.h>

#include "tools/kvapplman/progress.h"

namespace {

using std::chrono::milliseconds;
using tool::ProgressPace;

TEST(Progress, IsDrawnTwentyTimesASecondAtMost) {
    ProgressPace pace{false};
    const ProgressPace::Time begin{};
    int drawn = 0;
    for (int i = 0; i < 1000; ++i) {
        if (pace.isDue(i / 1000.0, begin + milliseconds{i})) { ++drawn; }
    }
    EXPECT_EQ(drawn, 20);
}

TEST(Progress, IsToldOncePerTenthElsewhereAndNeverAsComplete) {
    ProgressPace pace{true};
    std::vector<int> told;
    for (int i = 0; i <= 1000; ++i) {
        if (pace.isDue(i / 1000.0, {})) { told.push_back(ProgressPace::percentOf(i / 1000.0)); }
    }
    EXPECT_EQ(told, (std::vector<int>{10, 20, 30, 40, 50, 60, 70, 80, 90}));
    EXPECT_EQ(ProgressPace::percentOf(1.0), 99);
}

} // namespace
