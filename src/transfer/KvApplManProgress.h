/// @file
/// Progress of the long-running functions, as a host receives it.
#ifndef KV_APPL_MAN_PROGRESS_H
#define KV_APPL_MAN_PROGRESS_H

#include <cstdint>

/// How far a call is. The record and its texts are valid only during the callback; copy what is to be kept.
struct KvTApplManProgress {
    double fraction;          ///< share of the whole task that is done, 0.0 to 1.0
    std::uint32_t phase;      ///< number of the current phase, from 1
    std::uint32_t phaseCount; ///< number of phases of the task
    const char* fileName;     ///< base name of the file being handled, UTF-8; "" when there is none
    const char* phaseName;    ///< "Load", "Init" or "Apply", with the quotation marks; "" when there is none
};

/// Receives progress, on the thread that called.
/// @param progress the record
/// @param userData what the host gave with the callback
typedef void (*KvTApplManProgressCallback)(const KvTApplManProgress* progress, void* userData);

#endif
