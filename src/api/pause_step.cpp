// Pause and step: commands that check the handles under their own names and end a failure with a summary.
#include <cstdint>

#include "api/KvApplicationManagerAP.h"
#include "frame/calling_frame.h"
#include "protocol/completion_wait.h"
#include "protocol/procedures.h"

namespace applman {
namespace {

struct SummarizedCommand {
    const PairProcedure& procedure;
    Status failure; // of a refusal, and of a command that fails or runs out of time
    void (*summarize)(const Reporter& report, std::uint32_t applId);
};

constexpr SummarizedCommand kPause{APPLMAN_PAUSE_APPL, Status::pause, [](const Reporter& report, std::uint32_t applId) {
                                       report.add(Msg::cannotPause, applId);
                                   }};
constexpr SummarizedCommand kStep{APPLMAN_STEP_APPL, Status::step, [](const Reporter& report, std::uint32_t applId) {
                                      report.add(Msg::cannotStep, applId);
                                  }};

Status order(const Reporter& report, KV_RPC_PROG_APPLMAN_HOST2Client& client, std::uint32_t accessId,
             std::uint32_t applId, const SummarizedCommand& command) {
    Reply<TApplManResult> reply{client};
    if (command.procedure(client, report.pool(), {accessId, applId}, reply) != 0) { return report.failRemoteCall(); }
    const Status status = reply->result == kRefused
                              ? command.failure
                              : waitWhileBusy(report.pool(), &client, applId, accessId, command.failure);
    if (status != Status::ok) { command.summarize(report, applId); }
    return status;
}

std::int32_t run(const Reporter& report, void* devHandle, void* accessResHandle, std::uint32_t applId,
                 const SummarizedCommand& command) noexcept {
    return guarded(report, [&] {
        std::uint32_t accessId = 0;
        const Status checked = checkHandles(report, devHandle, accessResHandle, &accessId);
        if (checked != Status::ok) { return checked; }
        return withClient(report, devHandle, [&](KV_RPC_PROG_APPLMAN_HOST2Client& client) {
            return order(report, client, accessId, applId, command);
        });
    });
}

} // namespace
} // namespace applman

using namespace applman;

extern "C" std::int32_t KvApplMan_pauseAppl(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                            std::uint32_t applId) noexcept {
    return run(Reporter{pool, "KvApplMan_pauseAppl"}, devHandle, accessResHandle, applId, kPause);
}

extern "C" std::int32_t KvApplMan_stepAppl(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                           std::uint32_t applId) noexcept {
    return run(Reporter{pool, "KvApplMan_stepAppl"}, devHandle, accessResHandle, applId, kStep);
}
