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

Status KvApplMan_getApplications(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client,
                                 std::uint32_t accessId, std::uint32_t state, std::uint32_t* applIds,
                                 std::int32_t* count);

Status KvApplMan_getFlashApplications(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client,
                                      std::uint32_t accessId, std::uint32_t requestMode, std::uint32_t* count,
                                      std::uint32_t* flashApplIds);

Status KvApplMan_getFlashApplInfo(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client,
                                  std::uint32_t accessId, std::uint32_t flashApplId, std::uint32_t infoId, void* buffer,
                                  std::int32_t* size);

Status KvApplMan_setFlashApplParameter(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client,
                                       std::uint32_t accessId, std::uint32_t flashApplId, std::uint32_t infoId,
                                       const void* data, std::uint32_t size);

Status KvApplMan_loadFlashAppl(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client, std::uint32_t accessId,
                               std::uint64_t flashApplId);

Status KvApplMan_clearFlashAppl(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client, std::uint32_t accessId,
                                std::uint64_t flashApplId);

} // namespace applman
