// Waiting until a target has carried out a command that it accepted.
#pragma once

#include <cstdint>

#include "frame/rpc_client_cache.h"
#include "frame/status.h"
#include "platform/error_lists.h"

namespace applman {

/// Polls the target until the last command of `applId` is done, has failed or has run out of the target's own time, which
/// is read first. `failure` is the status of a command that failed or ran out of time, and chooses its message.
Status waitWhileBusy(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client, std::uint32_t applId,
                     std::uint32_t accessId, Status failure);

} // namespace applman
