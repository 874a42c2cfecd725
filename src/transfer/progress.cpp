#include "transfer/progress.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string_view>

#include "platform/host_system.h"

namespace applman {
namespace {

static_assert(sizeof(void*) != 8 || sizeof(KvTApplManProgress) == 32);
static_assert(offsetof(KvTApplManProgress, fraction) == 0);
static_assert(offsetof(KvTApplManProgress, phase) == 8);
static_assert(offsetof(KvTApplManProgress, phaseCount) == 12);
static_assert(offsetof(KvTApplManProgress, fileName) == 16);
static_assert(offsetof(KvTApplManProgress, phaseName) == 16 + sizeof(void*));

bool reporting(const TApplManProgressTracker* tracker) { return tracker != nullptr && tracker->callback != nullptr; }

std::string_view baseName(std::string_view path) {
    return path.substr(path.find_last_of(host_system::kPathSeparators) + 1); // npos + 1 is the start
}

std::uint64_t saturatingSum(std::uint64_t a, std::uint64_t b) {
    return a + std::min(b, std::numeric_limits<std::uint64_t>::max() - a);
}

double fractionOf(std::uint64_t done, std::uint64_t total) {
    return total == 0 ? 0.0 : std::min(static_cast<double>(done) / static_cast<double>(total), 1.0);
}

} // namespace

void updateProgress(TApplManProgressTracker* tracker, const char* pathUtf8, std::uint64_t increment,
                    const char* phaseName, std::uint32_t phase, std::uint32_t phaseCount) {
    if (!reporting(tracker)) { return; }
    tracker->fileName = pathUtf8 == nullptr ? std::string_view{} : baseName(pathUtf8);
    tracker->doneUnits = saturatingSum(tracker->doneUnits, increment);
    if (phaseName != nullptr) { tracker->phaseName = phaseName; }
    if (phase != 0) { tracker->phase = phase; }
    if (phaseCount != 0) { tracker->phaseCount = phaseCount; }
    reportProgress(tracker, 0);
}

void reportProgress(TApplManProgressTracker* tracker, std::uint64_t extraUnits) noexcept {
    if (!reporting(tracker)) { return; }
    const KvTApplManProgress progress{
        .fraction = fractionOf(saturatingSum(tracker->doneUnits, extraUnits), tracker->totalUnits),
        .phase = std::max(tracker->phase, 1U),
        .phaseCount = std::max(tracker->phaseCount, 1U),
        .fileName = tracker->fileName.c_str(),
        .phaseName = tracker->phaseName == nullptr ? "" : tracker->phaseName,
    };
    try {
        tracker->callback(&progress, tracker->userData);
    } catch (...) { tracker->callback = nullptr; }
}

void onTransferProgress(std::uint64_t bytes, void* tracker) noexcept {
    reportProgress(static_cast<TApplManProgressTracker*>(tracker), bytes);
}

} // namespace applman
