#include "target/target_service.h"

#include <utility>

#include "file_transfer/file_transfer_protocol.h"
#include "protocol/procedure_numbers.h"
#include "target/procedure_row.h"

namespace simulated_target {
namespace {

constexpr std::uint32_t kNullProcedure = 0; // of every program: answers nothing, so that a host can see who is there

std::optional<Store> openStore(const std::filesystem::path& folder) {
    if (folder.empty()) { return {}; }
    return std::optional<Store>{std::in_place, folder};
}

ApplicationManagerOptions managerOptions(const Options& options) {
    return {options.cnSerialNumber,  options.initialisationCalls, options.commandTimeout,
            options.commandDelay,    options.lackedProcedures,    options.lackedParameters,
            options.lackedFileTypes, options.flashApplications,   options.coreCount};
}

kvrpc::RpcReply versionMismatch(std::uint32_t offered) {
    kvrpc::RpcReply reply = refusedCall(kvrpc::AcceptStatus::programMismatch);
    reply.lowestVersion = offered;
    reply.highestVersion = offered;
    return reply;
}

} // namespace

TargetService::TargetService(const Options& options)
    : recording_(options.recordRequests), store_(openStore(options.store)),
      manager_(managerOptions(options), store_ ? &*store_ : nullptr), files_(store_ ? &*store_ : nullptr) {}

kvrpc::RpcReply TargetService::handle(const kvrpc::RpcCall& call) {
    switch (call.program) {
    case applman::kApplManProgram:
        return call.version == applman::kApplManVersion ? manage(call) : versionMismatch(applman::kApplManVersion);
    case file_transfer::kProgram:
        if (call.version != file_transfer::kVersion) { return versionMismatch(file_transfer::kVersion); }
        return call.procedure == kNullProcedure ? kvrpc::RpcReply{} : files_.handle(call);
    default:
        return refusedCall(kvrpc::AcceptStatus::programUnavailable);
    }
}

kvrpc::RpcReply TargetService::manage(const kvrpc::RpcCall& call) {
    if (const auto prescribed = admit(call)) { return answerLate(*prescribed); }
    return call.procedure == kNullProcedure ? kvrpc::RpcReply{} : manager_.answer(call.procedure, call.arguments);
}

void TargetService::connectionClosed(std::uint64_t connection) noexcept { files_.connectionClosed(connection); }

void TargetService::hurry(bool on) noexcept {
    const std::lock_guard lock{mutex_};
    hurry_ = on;
    hurried_.notify_all();
}

kvrpc::RpcReply TargetService::answerLate(const ScriptedReply& scripted) {
    std::unique_lock lock{mutex_};
    hurried_.wait_for(lock, scripted.delay, [this] { return hurry_; });
    return scripted.reply;
}

std::vector<Request> TargetService::requests() const {
    const std::lock_guard lock{mutex_};
    return requests_;
}

void TargetService::forgetRequests() {
    const std::lock_guard lock{mutex_};
    requests_.clear();
}

std::optional<ScriptedReply> TargetService::admit(const kvrpc::RpcCall& call) {
    const std::lock_guard lock{mutex_};
    if (recording_) { requests_.push_back({call.procedure, {call.arguments.begin(), call.arguments.end()}}); }
    const auto next = scripts_.find(call.procedure);
    if (next != scripts_.end() && !next->second.empty()) {
        ScriptedReply reply = std::move(next->second.front());
        next->second.pop_front();
        return reply;
    }
    const auto lasting = lastingScripts_.find(call.procedure);
    return lasting == lastingScripts_.end() ? std::nullopt : std::optional{lasting->second};
}

void TargetService::script(std::uint32_t procedure, ScriptedReply reply) {
    const std::lock_guard lock{mutex_};
    scripts_[procedure].push_back(std::move(reply));
}

void TargetService::scriptAlways(std::uint32_t procedure, ScriptedReply reply) {
    const std::lock_guard lock{mutex_};
    lastingScripts_[procedure] = std::move(reply);
}

void TargetService::forgetScripts() {
    const std::lock_guard lock{mutex_};
    scripts_.clear();
    lastingScripts_.clear();
}

} // namespace simulated_target
