// The client-level forms of exported functions: they take a client and the access ID in place of the two handles.
#pragma once

#include <cstdint>

#include "frame/rpc_client_cache.h"
#include "frame/status.h"
#include "platform/error_lists.h"

namespace applman {

Status KvApplMan_stopTerminateAppl(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client,
                                   std::uint32_t accessId, std::uint32_t applId, bool terminate);

Status KvApplMan_unloadAppl(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client, std::uint32_t accessId,
                            std::uint32_t applId);

} // namespace applman
