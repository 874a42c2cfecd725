#include "simulator/target_service.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "file_transfer/file_transfer_protocol.h"
#include "protocol/procedure_numbers.h"
#include "simulator/procedure_row.h"

namespace simulated_target {
namespace {

constexpr std::uint32_t kNullProcedure = 0; // of every program: answers nothing, so that a host can see who is there

std::optional<Store> openStore(const std::filesystem::path& folder) {
    if (folder.empty()) { return {}; }
    return std::optional<Store>{std::in_place, folder};
}

ApplicationManagerOptions managerOptions(const Options& options) {
    const std::uint32_t coreCount = options.programs ? options.programs->coreCount() : options.coreCount;
    return {options.cnSerialNumber,  options.initialisationCalls, options.commandTimeout,
            options.commandDelay,    options.lackedProcedures,    options.lackedParameters,
            options.lackedFileTypes, options.flashApplications,   coreCount,
            options.programs};
}

kvrpc::RpcReply versionMismatch(std::uint32_t offered) {
    kvrpc::RpcReply reply = refusedCall(kvrpc::AcceptStatus::programMismatch);
    reply.lowestVersion = offered;
    reply.highestVersion = offered;
    return reply;
}

} // namespace

TargetService::TargetService(const Options& options, RebootRequest rebootWanted)
    : options_(options), rebootWanted_(std::move(rebootWanted)), store_(openStore(options.store)),
      faults_(options.faults) {
    if (store_ && options_.programs) { options_.programs->examine(*store_); }
    forgetEverything();
}

void TargetService::forgetEverything() {
    const Store* const store = store_ ? &*store_ : nullptr;
    manager_.emplace(managerOptions(options_), store);
    files_.emplace(store);
}

kvrpc::RpcReply TargetService::handle(const kvrpc::RpcCall& call) {
    const auto begin = Clock::now();
    RequestReport report = reportOf(call, ++requestCount_);
    const std::vector<Fault> faults = faults_.due(call);
    kvrpc::RpcReply reply = answer(call, faults);
    if (options_.onRequest) {
        addAnswer(report, reply);
        std::ranges::transform(faults, std::back_inserter(report.faults), faultText);
    }
    reply.mayWait = reply.mayWait && faults_.empty(); // else what is done to the next answer is done to this one, too
    reply.shape = [this, faults, report, begin, connection = call.connection](kvrpc::Delivery& delivery) mutable {
        const auto reboot = spoil(faults, connection, {report.program, report.procedure, delivery});
        report.duration = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin);
        if (options_.onRequest) { options_.onRequest(report); } // before the host has its answer
        if (reboot && rebootWanted_) {
            delivery.afterwards = [this, reboot] { rebootWanted_(*reboot); };
        }
    };
    return reply;
}

kvrpc::RpcReply TargetService::answer(const kvrpc::RpcCall& call, const std::vector<Fault>& faults) {
    if (faults.empty() || faults.front().kind->answer == nullptr) { return carryOut(call); }
    record(call);
    return faults.front().kind->answer(call, faults.front().value);
}

kvrpc::RpcReply TargetService::carryOut(const kvrpc::RpcCall& call) {
    switch (call.program) {
    case applman::kApplManProgram:
        return call.version == applman::kApplManVersion ? manage(call) : versionMismatch(applman::kApplManVersion);
    case file_transfer::kProgram:
        if (call.version != file_transfer::kVersion) { return versionMismatch(file_transfer::kVersion); }
        return call.procedure == kNullProcedure ? kvrpc::RpcReply{} : files_->handle(call);
    default:
        return refusedCall(kvrpc::AcceptStatus::programUnavailable);
    }
}

kvrpc::RpcReply TargetService::manage(const kvrpc::RpcCall& call) {
    if (const auto prescribed = admit(call)) {
        pause(prescribed->delay);
        return prescribed->reply;
    }
    return call.procedure == kNullProcedure ? kvrpc::RpcReply{} : manager_->answer(call.procedure, call.arguments);
}

std::optional<std::chrono::milliseconds> TargetService::spoil(const std::vector<Fault>& faults,
                                                              std::uint64_t connection, Answer answer) {
    for (const Fault& fault : faults) {
        if (fault.kind->spoil != nullptr) { fault.kind->spoil(answer, fault.value); }
    }
    pause(answer.delay);
    kvrpc::Bytes& bytes = answer.delivery.bytes;
    if (answer.overtaken) {
        faults_.hold(connection, std::exchange(bytes, {}));
    } else {
        const kvrpc::Bytes held = faults_.release(connection);
        bytes.insert(bytes.end(), held.begin(), held.end());
    }
    return answer.reboot;
}

void TargetService::connectionClosed(std::uint64_t connection) noexcept {
    faults_.release(connection);
    files_->connectionClosed(connection);
}

void TargetService::hurry(bool on) noexcept {
    const std::lock_guard lock{mutex_};
    hurry_ = on;
    hurried_.notify_all();
}

void TargetService::pause(std::chrono::milliseconds time) {
    if (time.count() == 0) { return; }
    std::unique_lock lock{mutex_};
    hurried_.wait_for(lock, time, [this] { return hurry_; });
}

std::vector<Request> TargetService::requests() const {
    const std::lock_guard lock{mutex_};
    return requests_;
}

void TargetService::forgetRequests() {
    const std::lock_guard lock{mutex_};
    requests_.clear();
}

void TargetService::record(const kvrpc::RpcCall& call) {
    if (!options_.recordRequests || call.program != applman::kApplManProgram) { return; }
    const std::lock_guard lock{mutex_};
    requests_.push_back({call.procedure, {call.arguments.begin(), call.arguments.end()}});
}

std::optional<ScriptedReply> TargetService::admit(const kvrpc::RpcCall& call) {
    const std::lock_guard lock{mutex_};
    if (options_.recordRequests) {
        requests_.push_back({call.procedure, {call.arguments.begin(), call.arguments.end()}});
    }
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
