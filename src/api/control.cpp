// Start, stop, terminate and unload: one command on one application process, waited for.
#include <cstdint>

#include "api/KvApplicationManagerAP.h"
#include "api/client_level.h"
#include "frame/calling_frame.h"
#include "protocol/completion_wait.h"
#include "protocol/procedures.h"

namespace applman {
namespace {

/// A command that the target either refuses at once or carries out by itself.
template <class Request>
struct Command {
    const Procedure<Request, TApplManResult>& procedure;
    Msg refused;
    Status failure; // of a refusal, and of a command that fails or runs out of time
};

constexpr Command<TApplManRequest> kStart{APPLMAN_START_APPL, Msg::cannotStart, Status::start};
constexpr Command<TApplManRequest> kStop{APPLMAN_STOP_APPL, Msg::cannotStop, Status::stop};
constexpr Command<TApplManPairRequest> kTerminate{APPLMAN_TERMINATE_APPL, Msg::cannotTerminate, Status::terminate};
constexpr Command<TApplManRequest> kUnload{APPLMAN_UNLOAD_APPL, Msg::cannotUnload, Status::unload};

template <class Request>
Status runCommand(const Reporter& report, KV_RPC_PROG_APPLMAN_HOST2Client& client, std::uint32_t accessId,
                  std::uint32_t applId, const Command<Request>& command, const Request& request) {
    Reply<TApplManResult> reply{client};
    if (command.procedure(client, report.pool(), request, reply) != 0) { return report.failRemoteCall(); }
    if (reply->result == kRefused) {
        report.addChosen(command.refused);
        return command.failure;
    }
    return waitWhileBusy(report.pool(), &client, applId, accessId, command.failure);
}

} // namespace

Status KvApplMan_stopTerminateAppl(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client,
                                   std::uint32_t accessId, std::uint32_t applId, bool terminate) {
    const Reporter report{pool, "KvApplMan_stopTerminateAppl"};
    if (client == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    return terminate ? runCommand(report, *client, accessId, applId, kTerminate, {accessId, applId})
                     : runCommand(report, *client, accessId, applId, kStop, {kMode, accessId, applId});
}

Status KvApplMan_unloadAppl(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client, std::uint32_t accessId,
                            std::uint32_t applId) {
    const Reporter report{pool, "KvApplMan_unloadAppl"};
    if (client == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    return runCommand(report, *client, accessId, applId, kUnload, {kUnloadMode, accessId, applId});
}

} // namespace applman

using namespace applman;

extern "C" std::int32_t KvApplMan_startAppl(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                            std::uint32_t applId) noexcept {
    const Reporter report{pool, "KvApplMan_startAppl"};
    return guardedFrame(report, devHandle, accessResHandle, [&](const Session& session) {
        return runCommand(report, session.client, session.accessId, applId, kStart, {kMode, session.accessId, applId});
    });
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
