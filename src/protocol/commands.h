// The commands of the application manager: a target refuses one at once, or accepts it and carries it out by itself.
#pragma once

#include <cstdint>

#include "frame/calling_frame.h"

namespace applman {

struct Command;

extern const Command kInitialise;
extern const Command kLoad;
extern const Command kLoadComplete;
extern const Command kApply;
extern const Command kStart;
extern const Command kStop;
extern const Command kTerminate;
extern const Command kUnload;
extern const Command kPause;
extern const Command kStep;
extern const Command kLoadFlash;
extern const Command kClearFlash;

/// Sends a command to a target and waits until it is done, where it is one to be waited for. `id` is that of the
/// application process, or of the flash application.
Status carryOut(const Reporter& report, const Session& session, const Command& command, std::uint64_t id);

/// The same for an operation that is given its client, which may be missing.
Status carryOut(const Reporter& report, KV_RPC_PROG_APPLMAN_HOST2Client* client, std::uint32_t accessId,
                const Command& command, std::uint64_t id);

} // namespace applman
