#include "protocol/commands.h"

#include <optional>

#include "protocol/completion_wait.h"
#include "protocol/procedures.h"

namespace applman {
namespace {

using CommandReply = Reply<TApplManResult>;
using FlashProcedure = Procedure<TApplManFlashRequest, TApplManResult>;

// How a command is sent. The result is that of the call.

template <const CommandProcedure& procedure, std::uint32_t mode = kMode>
std::int32_t withMode(const Session& session, KvCErrorListPool& pool, std::uint64_t applId, CommandReply& reply) {
    return procedure(session.client, pool, {mode, session.accessId, static_cast<std::uint32_t>(applId)}, reply);
}

template <const CommandProcedure& procedure>
constexpr auto withUnloadMode = withMode<procedure, kUnloadMode>;

template <const PairProcedure& procedure>
std::int32_t withoutMode(const Session& session, KvCErrorListPool& pool, std::uint64_t applId, CommandReply& reply) {
    return procedure(session.client, pool, {session.accessId, static_cast<std::uint32_t>(applId)}, reply);
}

template <const FlashProcedure& procedure>
std::int32_t inFlash(const Session& session, KvCErrorListPool& pool, std::uint64_t flashApplId, CommandReply& reply) {
    constexpr std::uint32_t kCommandWord = 1;
    TApplManFlashRequest request;
    request.accessId = session.accessId;
    request.command.command = kCommandWord;
    request.command.flashApplId = static_cast<std::int64_t>(flashApplId); // the same bits
    return procedure(session.client, pool, request, reply);
}

// Summaries of a failure, which name the process.

void pauseFailed(const Reporter& report, std::uint32_t applId) { report.add(Msg::cannotPause, applId); }

void stepFailed(const Reporter& report, std::uint32_t applId) { report.add(Msg::cannotStep, applId); }

/// When the reply to a command is given back.
enum class ReplyLasts { untilDone, untilAccepted };

/// Whose completion is awaited.
enum class WaitsFor { process, manager, nobody };

} // namespace

struct Command {
    std::int32_t (*send)(const Session& session, KvCErrorListPool& pool, std::uint64_t id, CommandReply& reply);
    CommandFailure failure; // of a refusal too
    ReplyLasts replyLasts = ReplyLasts::untilDone;
    WaitsFor waitsFor = WaitsFor::process;
    void (*summarize)(const Reporter& report, std::uint32_t applId) = nullptr; // whatever failed but the call itself
};

using enum Status;
using enum ReplyLasts;
using enum WaitsFor;
using M = Msg;

// clang-format off
const Command kInitialise  {withMode<APPLMAN_INIT_APPL>,          {initialisation, M::cannotInitialize}, untilAccepted};
const Command kLoad        {withMode<APPLMAN_LOAD_APPL>,          {load,           M::cannotLoad},       untilAccepted};
const Command kLoadComplete{withMode<APPLMAN_LOAD_APPL_COMPLETE>, {load,           M::cannotLoad},       untilAccepted};
const Command kApply       {withMode<APPLMAN_APPLY_APPL>,         {apply,          M::cannotApply},      untilAccepted};
const Command kStart       {withMode<APPLMAN_START_APPL>,         {start,          M::cannotStart}};
const Command kStop        {withMode<APPLMAN_STOP_APPL>,          {stop,           M::cannotStop}};
const Command kTerminate   {withoutMode<APPLMAN_TERMINATE_APPL>,  {terminate,      M::cannotTerminate}};
const Command kUnload      {withUnloadMode<APPLMAN_UNLOAD_APPL>,  {unload,         M::cannotUnload}};
const Command kPause       {withoutMode<APPLMAN_PAUSE_APPL>,      {pause}, untilDone, process, pauseFailed};
const Command kStep        {withoutMode<APPLMAN_STEP_APPL>,       {step},  untilDone, process, stepFailed};
const Command kLoadFlash   {inFlash<APPLMAN_LOAD_FLASH_APPL>,     {flashLoad, M::cannotLoadFlash},  untilDone, manager};
const Command kClearFlash  {inFlash<APPLMAN_CLEAR_FLASH_APPL>,    {flashClear, M::cannotClearFlash}, untilDone, nobody};
// clang-format on

namespace {

/// Sends a command; reports the call that failed, or the refusal.
Status order(const Reporter& report, const Session& session, const Command& command, std::uint64_t id,
             CommandReply& reply) {
    if (command.send(session, report.pool(), id, reply) != 0) { return report.failRemoteCall(); }
    if (reply->result != kRefused) { return Status::ok; }
    if (command.failure.message) { report.addChosen(*command.failure.message); }
    return command.failure.status;
}

} // namespace

Status carryOut(const Reporter& report, const Session& session, const Command& command, std::uint64_t id) {
    const auto applId = static_cast<std::uint32_t>(id);
    std::optional<CommandReply> reply{std::in_place, session.client};
    Status status = order(report, session, command, id, *reply);
    if (status == Status::remoteCall) { return status; }
    if (command.replyLasts == untilAccepted) { reply.reset(); }
    if (status == Status::ok && command.waitsFor != nobody) {
        const std::uint32_t asked = command.waitsFor == manager ? kApplicationManager : applId;
        status = waitWhileBusy(report.pool(), &session.client, asked, session.accessId, command.failure);
    }
    if (status != Status::ok && command.summarize != nullptr) { command.summarize(report, applId); }
    return status;
}

Status carryOut(const Reporter& report, KV_RPC_PROG_APPLMAN_HOST2Client* client, std::uint32_t accessId,
                const Command& command, std::uint64_t id) {
    if (client == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    return carryOut(report, Session{*client, accessId}, command, id);
}

} // namespace applman
