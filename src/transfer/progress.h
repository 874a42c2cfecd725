// Progress of one call: what is done so far, and reporting it to the host's callback.
// A file counts once, when it is over, whether it arrived or not; the bytes of one on its way are only added to a report. The
// callback runs on the thread of the call with no lock held, so it may call the library.
#pragma once

#include <cstdint>
#include <string>

#include "transfer/KvApplManProgress.h"

namespace applman {

// The quotation marks belong to the names.
inline constexpr const char* kPhaseLoad = "\"Load\"";
inline constexpr const char* kPhaseInit = "\"Init\"";
inline constexpr const char* kPhaseApply = "\"Apply\"";

/// The progress state of one call; belongs to the operation that makes it.
struct TApplManProgressTracker {
    KvTApplManProgressCallback callback = nullptr; // null = no reporting
    void* userData = nullptr;
    std::string fileName{};
    std::uint64_t totalUnits = 0;
    std::uint64_t doneUnits = 0; // only grows
    const char* phaseName = nullptr;
    std::uint32_t phase = 0;
    std::uint32_t phaseCount = 0;
};

/// Counts `increment` units for the file of `pathUtf8` (null = no file) and reports. A null phase name, and 0 as phase or
/// phase count, keep what the tracker has.
void updateProgress(TApplManProgressTracker* tracker, const char* pathUtf8, std::uint64_t increment,
                    const char* phaseName, std::uint32_t phase, std::uint32_t phaseCount);

/// Calls the callback with what is done plus `extraUnits`. A callback that throws is not called again.
void reportProgress(TApplManProgressTracker* tracker, std::uint64_t extraUnits) noexcept;

/// The byte callback of the file transfer: `tracker` is a TApplManProgressTracker.
void onTransferProgress(std::uint64_t bytes, void* tracker) noexcept;

} // namespace applman
