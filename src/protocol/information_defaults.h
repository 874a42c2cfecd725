// The values that are delivered for items that a target cannot answer for.
#pragma once

#include <cstdint>

#include "frame/rpc_client_cache.h"
#include "platform/error_lists.h"
#include "protocol/records.h"

namespace applman {

/// Puts the default into a refused reply and empties the whole pool, when the target has said that it does not know the
/// parameter and there is a default. Result: whether it did.
bool applyParamDefault(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client, std::uint32_t accessId,
                       std::uint32_t applId, std::uint32_t targetParamId, TApplManValueResult* reply);

} // namespace applman
