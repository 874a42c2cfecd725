/// @file
/// Progress of a long operation, as the host's callback receives it. C99 and C++11.
#ifndef KV_APPL_MAN_PROGRESS_H
#define KV_APPL_MAN_PROGRESS_H

#include <stdint.h>

/// One progress report. The record and its texts are valid only during the callback; a host copies what it keeps.
typedef struct KvTApplManProgress {
    double fraction;       ///< share of the whole task that is done, 0.0 to 1.0
    uint32_t phase;        ///< number of the current phase, from 1
    uint32_t phaseCount;   ///< number of phases of the task, at least 1
    const char* fileName;  ///< base name (UTF-8) of the file being handled; "" when there is none, never null
    const char* phaseName; ///< name of the current phase, with its quote characters; "" when there is none, never null
} KvTApplManProgress;

/// Receives the progress of a call, on the thread that made the call and while it runs. It should return soon, since the
/// operation waits for it. When it throws, the exception ends there: the operation goes on and reports no more progress.
/// @param progress the report
/// @param userData the pointer that the host gave together with the callback
typedef void (*KvTApplManProgressCallback)(const KvTApplManProgress* progress, void* userData);

#endif
