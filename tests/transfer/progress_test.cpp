#include "transfer/progress.h"

#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

namespace applman {
namespace {

struct Report {
    double fraction;
    std::uint32_t phase, phaseCount;
    std::string fileName, phaseName;
    bool operator==(const Report&) const = default;
};
using Reports = std::vector<Report>;

void keep(const KvTApplManProgress* p, void* reports) {
    static_cast<Reports*>(reports)->push_back({p->fraction, p->phase, p->phaseCount, p->fileName, p->phaseName});
}

TEST(Progress, AFreshTrackerReportsPhaseOneOfOneAndNoNames) {
    Reports reports;
    TApplManProgressTracker tracker{.callback = keep, .userData = &reports};
    reportProgress(&tracker, 7);
    EXPECT_EQ(reports, (Reports{{0.0, 1, 1, "", ""}}));
}

TEST(Progress, CountsUnitsAndKeepsWhatAnUpdateLeavesOut) {
    Reports reports;
    TApplManProgressTracker tracker{.callback = keep, .userData = &reports, .totalUnits = 8};
    updateProgress(&tracker, "D:\\a\\model.x86", 2, kPhaseInit, 2, 3);
    onTransferProgress(4, &tracker);
    updateProgress(&tracker, nullptr, 1, nullptr, 0, 0);
    onTransferProgress(100, &tracker);
    onTransferProgress(~std::uint64_t{0}, &tracker);
    EXPECT_EQ(reports, (Reports{{0.25, 2, 3, "model.x86", "\"Init\""},
                                {0.75, 2, 3, "model.x86", "\"Init\""},
                                {0.375, 2, 3, "", "\"Init\""},
                                {1.0, 2, 3, "", "\"Init\""},
                                {1.0, 2, 3, "", "\"Init\""}}));
}

TEST(Progress, NamesTheFileByWhatFollowsTheLastSeparator) {
#if defined(_WIN32)
    const char* const slashed = "a/b.bin";
#else
    const char* const slashed = "b.bin";
#endif
    const std::pair<const char*, const char*> names[] = {
        {"b.bin", "b.bin"}, {"a\\b.bin", "b.bin"}, {"a\\", ""}, {"", ""}, {"a/b.bin", slashed}};
    for (const auto& [path, name] : names) {
        Reports reports;
        TApplManProgressTracker tracker{.callback = keep, .userData = &reports};
        updateProgress(&tracker, path, 0, nullptr, 0, 0);
        EXPECT_EQ(reports.at(0).fileName, name) << path;
    }
}

TEST(Progress, WithoutACallbackNothingIsKept) {
    TApplManProgressTracker tracker{.totalUnits = 8};
    updateProgress(&tracker, "f", 2, kPhaseLoad, 1, 3);
    EXPECT_EQ(tracker.fileName, "");
    EXPECT_EQ(tracker.doneUnits, 0U);
    updateProgress(nullptr, "f", 2, kPhaseLoad, 1, 3);
    onTransferProgress(1, nullptr);
}

TEST(Progress, ACallbackThatThrowsIsNotCalledAgain) {
    int calls = 0;
    const auto thrower = [](const KvTApplManProgress*, void* count) {
        ++*static_cast<int*>(count);
        throw std::runtime_error{"the host's own trouble"};
    };
    TApplManProgressTracker tracker{.callback = thrower, .userData = &calls};
    updateProgress(&tracker, "f", 2, nullptr, 0, 0);
    onTransferProgress(1, &tracker);
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace applman
