// The command-channel client of a device: looked up in the device's registry, or created, configured, connected and
// registered there.
#pragma once

#include <memory>

#include "frame/status.h"
#include "platform/error_lists.h"
#include "platform/rpc_client.h"

namespace applman {

class KV_RPC_PROG_APPLMAN_HOST2Client : public KvCRpcClient {
public:
    KV_RPC_PROG_APPLMAN_HOST2Client(KvCErrorListPool& pool, const char* address) noexcept;
    ~KV_RPC_PROG_APPLMAN_HOST2Client() override;
};

/// The client under which the device's registry keeps this program. It stays the registry's. A result of the registry
/// that is not 0 is passed through.
Status getRpcClient(KvCErrorListPool& pool, void* device, KV_RPC_PROG_APPLMAN_HOST2Client** client);

/// A new client, configured and connected; none after a failure.
Status createRpcClient(KvCErrorListPool& pool, const char* address,
                       std::unique_ptr<KV_RPC_PROG_APPLMAN_HOST2Client>* client);

/// Ends one use of a client, which stays registered and connected for the next call.
Status releaseRpcClient(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client) noexcept;

} // namespace applman
