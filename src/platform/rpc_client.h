// The ONC RPC client class (RFC 5531 over TCP) that the command channel derives from.
#pragma once

#include <cstdint>

#include "platform/KvExport.h"
#include "platform/error_lists.h"
#include "platform/xdr.h"

/// A client of one RPC program at one address. Its operations may be called by any number of threads at once.
/// Negative results are failures; the reasons go into the pool.
class KVPLATFORM_API KvCRpcClient {
public:
    static constexpr std::int32_t kProcedureNotOffered = -3;

    /// `address` is "a.b.c.d:port" and is copied. Nothing is sent yet.
    KvCRpcClient(KvCErrorListPool& pool, const char* address) noexcept;
    virtual ~KvCRpcClient();
    KvCRpcClient(const KvCRpcClient&) = delete;
    KvCRpcClient& operator=(const KvCRpcClient&) = delete;

    /// 1 = IP protocol (6, TCP), 2 = program version, 6 = call timeout in microseconds, 14 = authentication flavour (0).
    std::int32_t setParameter(KvCErrorListPool& pool, std::uint32_t id, std::uint32_t value) noexcept;

    std::int32_t connect(KvCErrorListPool& pool) noexcept;

    /// Calls a procedure and waits for its reply, at most the call timeout. `reply` must be cleared. Result: 0 = carried
    /// out and decoded; -3 = the target does not offer the procedure; any other = the call failed, and what `reply` then
    /// holds must not be read, only freed.
    std::int32_t clntCall(KvCErrorListPool& pool, std::uint32_t procedure, XdrRoutine encode, void* request,
                          XdrRoutine decode, void* reply) noexcept;

    /// Frees what decoding allocated, by running `decode` over the record in the freeing direction.
    void freeResults(XdrRoutine decode, void* reply) noexcept;

    /// The target's IPv4 address as it lies in memory in network order; all bits set when there is none.
    std::uint32_t getIpAddressV4(KvCErrorListPool& pool) noexcept;

private:
    struct State;
    State* state_; // null when there was no memory: every operation then fails
};
