// What every exported function runs around its own work: the guard at the boundary, the handle check, the client.
// Work may throw, for a lack of memory only, and from any depth: what it holds is released by destructors. `guarded` is
// where that becomes a message and a status. releaseRpcClient is left out then; it has nothing to give back.
#pragma once

#include <cstdint>
#include <utility>

#include "frame/report.h"
#include "frame/rpc_client_cache.h"
#include "platform/host_system.h"

namespace applman {

/// Checks the handles of a call and reads the caller's access ID, parameter 12 of the access-restriction handle. What is
/// wrong is told by the line that reports it.
Status checkHandles(const Reporter& report, void* device, void* accessRestriction, std::uint32_t* accessId);

/// The name under which most functions check them.
inline constexpr const char* kHandleCheck = "checkDeviceAndAccessRestrictionHandle";
Status checkDeviceAndAccessRestrictionHandle(KvCErrorListPool& pool, void* device, void* accessRestriction,
                                             std::uint32_t* accessId);

/// Parameter 12 of an access-restriction handle; false when it cannot be read.
bool readAccessId(KvCErrorListPool& pool, void* accessRestriction, std::uint32_t* accessId);

/// What a call has in hand once its handles are checked.
struct Session {
    KV_RPC_PROG_APPLMAN_HOST2Client& client;
    std::uint32_t accessId;
};

/// Gets the device's client, runs `work` with it and releases it.
template <class Work>
Status withClient(const Reporter& report, void* device, Work work) {
    KV_RPC_PROG_APPLMAN_HOST2Client* client = nullptr;
    if (const Status got = getRpcClient(report.pool(), device, &client); got != Status::ok) {
        return report.fail(Msg::noCommandChannelClient, got);
    }
    const Status worked = work(*client);
    const Status released = releaseRpcClient(report.pool(), client);
    if (released != Status::ok) { return report.fail(Msg::commandChannelClientNotReleased, released); }
    return worked;
}

/// The common order: handle check, client, `work`, release. The handles are checked under the name of `checking`.
template <class Work>
Status runFrame(const Reporter& report, const Reporter& checking, void* device, void* accessRestriction, Work work) {
    std::uint32_t accessId = 0;
    const Status checked = checkHandles(checking, device, accessRestriction, &accessId);
    if (checked != Status::ok) { return checked; }
    return withClient(report, device, [&](KV_RPC_PROG_APPLMAN_HOST2Client& client) {
        return work(Session{client, accessId});
    });
}

template <class Work>
Status runFrame(const Reporter& report, void* device, void* accessRestriction, Work work) {
    return runFrame(report, Reporter{report.pool(), kHandleCheck}, device, accessRestriction, std::move(work));
}

/// The boundary of an exported function: nothing thrown gets out, and the thread is not cancelled inside. What was
/// thrown (memory ran out) becomes `exhausted` and `status`.
template <Msg exhausted = Msg::invalidArgument, Status status = Status::argument, class Work>
std::int32_t guarded(const Reporter& report, Work work) noexcept {
    const host_system::CancellationOff cancellationOff;
    try {
        return numberOf(work());
    } catch (...) {
        report.addChosen(exhausted);
        return numberOf(status);
    }
}

/// guarded and runFrame in one, for the functions that follow the common order.
template <class Work>
std::int32_t guardedFrame(const Reporter& report, void* device, void* accessRestriction, Work work) noexcept {
    return guarded(report, [&] { return runFrame(report, device, accessRestriction, std::move(work)); });
}

} // namespace applman
