// Waiting until a target has carried out a command that it accepted.
#pragma once

#include <cstdint>
#include <optional>

#include "frame/messages.h"
#include "frame/rpc_client_cache.h"
#include "frame/status.h"
#include "platform/error_lists.h"

namespace applman {

/// What a command that failed or ran out of time comes to.
struct CommandFailure {
    Status status;
    std::optional<Msg> message{}; // without arguments; none: the one of commands that have none of their own
};

/// Polls the target until the last command of `applId` is done, has failed or has run out of the target's own time, which
/// is read first.
Status waitWhileBusy(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client, std::uint32_t applId,
                     std::uint32_t accessId, const CommandFailure& failure);

} // namespace applman
