// Start, stop, terminate, unload, pause and step: one command on one application process, waited for.
#include <cstdint>

#include "api/KvApplicationManagerAP.h"
#include "api/client_level.h"
#include "frame/calling_frame.h"
#include "protocol/commands.h"

namespace applman {
namespace {

/// The handles are checked under the function's own name.
std::int32_t pauseOrStep(const Reporter& report, void* devHandle, void* accessResHandle, const Command& command,
                         std::uint32_t applId) noexcept {
    return guarded(report, [&] {
        return runFrame(report, report, devHandle, accessResHandle,
                        [&](const Session& session) { return carryOut(report, session, command, applId); });
    });
}

} // namespace

Status KvApplMan_stopTerminateAppl(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client,
                                   std::uint32_t accessId, std::uint32_t applId, bool terminate) {
    const Reporter report{pool, "KvApplMan_stopTerminateAppl"};
    return carryOut(report, client, accessId, terminate ? kTerminate : kStop, applId);
}

Status KvApplMan_unloadAppl(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client, std::uint32_t accessId,
                            std::uint32_t applId) {
    return carryOut(Reporter{pool, "KvApplMan_unloadAppl"}, client, accessId, kUnload, applId);
}

} // namespace applman

using namespace applman;

extern "C" std::int32_t KvApplMan_startAppl(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                            std::uint32_t applId) noexcept {
    const Reporter report{pool, "KvApplMan_startAppl"};
    return guardedFrame(report, devHandle, accessResHandle,
                        [&](const Session& session) { return carryOut(report, session, kStart, applId); });
}

extern "C" std::int32_t KvApplMan_stopAppl(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                           std::uint32_t applId) noexcept {
    const Reporter report{pool, "KvApplMan_stopAppl"};
    return guardedFrame(report, devHandle, accessResHandle, [&](const Session& session) {
        return KvApplMan_stopTerminateAppl(pool, &session.client, session.accessId, applId, false);
    });
}

extern "C" std::int32_t KvApplMan_terminateAppl(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                                std::uint32_t applId) noexcept {
    const Reporter report{pool, "KvApplMan_terminateAppl"};
    return guardedFrame(report, devHandle, accessResHandle, [&](const Session& session) {
        return KvApplMan_stopTerminateAppl(pool, &session.client, session.accessId, applId, true);
    });
}

extern "C" std::int32_t KvApplMan_unloadAppl(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                             std::uint32_t applId) noexcept {
    const Reporter report{pool, "KvApplMan_unloadAppl"};
    return guardedFrame(report, devHandle, accessResHandle, [&](const Session& session) {
        return applman::KvApplMan_unloadAppl(pool, &session.client, session.accessId, applId);
    });
}

extern "C" std::int32_t KvApplMan_pauseAppl(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                            std::uint32_t applId) noexcept {
    return pauseOrStep(Reporter{pool, "KvApplMan_pauseAppl"}, devHandle, accessResHandle, kPause, applId);
}

extern "C" std::int32_t KvApplMan_stepAppl(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                           std::uint32_t applId) noexcept {
    return pauseOrStep(Reporter{pool, "KvApplMan_stepAppl"}, devHandle, accessResHandle, kStep, applId);
}
