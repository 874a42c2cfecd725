// Bringing the binary of one application process onto its target.
#pragma once

#include <cstdint>

#include "frame/status.h"
#include "platform/error_lists.h"
#include "transfer/progress.h"

namespace applman {

/// Announces a binary to the target, transfers it to where the target wants it and has it loaded. A complete load leaves
/// nothing to initialise and apply. `targetName` (null = none) is announced in place of the host path; `tracker` may be
/// null.
Status download(KvCErrorListPool& pool, void* devHandle, void* accessResHandle, std::uint32_t applId,
                std::uint32_t downloadOption, const char16_t* hostPath, bool completeLoad, std::uint8_t loadOptions,
                const char16_t* targetName, TApplManProgressTracker* tracker);

} // namespace applman
