#include "simulator/application_manager.h"

#include <algorithm>
#include <charconv>
#include <random>
#include <utility>

#include "protocol/procedure_numbers.h"
#include "simulator/procedure_row.h"
#include "simulator/program_commands.h"
#include "simulator/replies.h"
#include "simulator/target_messages.h"

namespace simulated_target {
namespace {

using namespace applman;

constexpr std::uint32_t kManager = 0;            // in place of a process
constexpr std::size_t kMostFreeParameters = 256; // per process, under numbers that mean nothing to the target
constexpr std::size_t kMostUnloaded = 1024;      // that are remembered
constexpr std::uint32_t kHighestOfEarlierRun = 0x3FFFFFFF;

namespace command_state {
constexpr std::int32_t kDone = 0;
constexpr std::int32_t kFailed = 1;
constexpr std::int32_t kBusy = 2;
} // namespace command_state

std::int64_t secondsSince1970() {
    using std::chrono::system_clock;
    return std::chrono::duration_cast<std::chrono::seconds>(system_clock::now().time_since_epoch()).count();
}

std::uint32_t randomWord() {
    std::random_device device;
    return std::uniform_int_distribution<std::uint32_t>{1, 0xFFFFFFFF}(device);
}

/// The highest number of a process that has a directory in the store. New processes count on from there, so that none
/// finds the binary of an earlier one.
std::uint32_t highestEarlierId(const Store* store) {
    if (store == nullptr) { return 0; }
    std::uint32_t highest = 0;
    for (const std::string& name : store->directoriesIn({kApplicationsDirectory})) {
        std::uint32_t number = 0;
        const auto parsed = std::from_chars(name.data(), name.data() + name.size(), number);
        const bool whole = parsed.ec == std::errc{} && parsed.ptr == name.data() + name.size();
        if (whole && number <= kHighestOfEarlierRun) { highest = std::max(highest, number); }
    }
    return highest;
}

Failure unknownProcess(std::uint32_t applId) { return message(Code::unknownProcess, {applId}); }

GroupIdentity identityOf(const TApplManGroupPart& group) { return {group.words[1], group.words[2]}; }
std::uint32_t sizeOf(const TApplManGroupPart& group) { return group.words[3]; }

std::uint32_t applIdOf(const TApplManRequest& request) { return request.third; }
std::uint32_t applIdOf(const TApplManPairRequest& request) { return request.second; }
std::uint32_t applIdOf(const TApplManAddFileRequest2& request) {
    return request.file ? request.file->applId : kManager;
}
std::uint32_t applIdOf(const auto& request) { return request.applId; }

} // namespace

ApplicationManager::ApplicationManager(ApplicationManagerOptions options, const Store* store)
    : options_(std::move(options)), store_(store), startTime_(secondsSince1970()), groupWord_(randomWord()),
      lastApplId_(highestEarlierId(store)), flash_(options_.flashApplications) {}

template <auto kMember, class Request>
kvrpc::RpcReply ApplicationManager::serve(ApplicationManager& manager, std::span<const std::uint8_t> arguments) {
    const std::optional<Request> request = decodeRecord<Request>(arguments);
    if (!request) { return refusedCall(kvrpc::AcceptStatus::garbageArguments); }
    std::unique_lock lock{manager.mutex_};
    manager.carryOutWhatIsDue();
    auto record = (manager.*kMember)(*request);
    lock.unlock();
    return repliedCall(std::move(record));
}

template <auto kMember, class Request>
auto ApplicationManager::withEnd(const Request& request) {
    auto record = (this->*kMember)(request);
    const Application* const process = find(applIdOf(request));
    if (process != nullptr && process->end) { record.errorList = inFront(*process->end, record.errorList); }
    return record;
}

kvrpc::RpcReply ApplicationManager::answer(std::uint32_t procedure, std::span<const std::uint8_t> arguments) {
    using Manager = ApplicationManager;
    static constexpr ProcedureRow<Manager> kRows[] = {
        {kSetParam, serveProcess<&Manager::setParameter, TApplManSetParamRequest>},
        {kInitAppl, serveProcess<&Manager::command<kInitAppl, TApplManRequest>, TApplManRequest>},
        {kLoadAppl, serveProcess<&Manager::command<kLoadAppl, TApplManRequest>, TApplManRequest>},
        {kUnloadAppl, serveProcess<&Manager::command<kUnloadAppl, TApplManRequest>, TApplManRequest>},
        {kStartAppl, serveProcess<&Manager::command<kStartAppl, TApplManRequest>, TApplManRequest>},
        {kStopAppl, serveProcess<&Manager::command<kStopAppl, TApplManRequest>, TApplManRequest>},
        {kApplyAppl, serveProcess<&Manager::command<kApplyAppl, TApplManRequest>, TApplManRequest>},
        {kGetCommandState, serveProcess<&Manager::commandState, TApplManRequest>},
        {kGetParam, serveProcess<&Manager::getParameter, TApplManGetParamRequest>},
        {kGetApplications, serve<&Manager::processesInState, TApplManRequest>},
        {kLoadApplComplete, serveProcess<&Manager::command<kLoadApplComplete, TApplManRequest>, TApplManRequest>},
        {kAddFile2, serveProcess<&Manager::addFileRecord, TApplManAddFileRequest2>},
        {kAddFile, serveProcess<&Manager::addFile, TApplManAddFileRequest>},
        {kGetFileList, serveProcess<&Manager::fileList, TApplManRequest>},
        {kOpenGroup, serve<&Manager::openGroup, TApplManOpenGroupRequest>},
        {kRegisterAppl, serve<&Manager::registerProcess, TApplManRegisterRequest>},
        {kGetCoreIds, serve<&Manager::coreIds, TApplManPairRequest>},
        {kRemoveFile, serveProcess<&Manager::removeFileOf, TApplManRemoveFileRequest>},
        {kPauseAppl, serveProcess<&Manager::command<kPauseAppl, TApplManPairRequest>, TApplManPairRequest>},
        {kStepAppl, serveProcess<&Manager::command<kStepAppl, TApplManPairRequest>, TApplManPairRequest>},
        {kGetFlashApplications, serve<&Manager::flashList, TApplManPairRequest>},
        {kGetFlashParam, serve<&Manager::getFlashParameter, TApplManRequest>},
        {kSetFlashParam, serve<&Manager::setFlashParameter, TApplManSetFlashParamRequest>},
        {kLoadFlashAppl, serve<&Manager::loadFlash, TApplManFlashRequest>},
        {kClearFlashAppl, serve<&Manager::clearFlash, TApplManFlashRequest>},
        {kTerminateAppl, serveProcess<&Manager::command<kTerminateAppl, TApplManPairRequest>, TApplManPairRequest>},
    };
    if (options_.lackedProcedures.contains(procedure)) {
        return refusedCall(kvrpc::AcceptStatus::procedureUnavailable);
    }
    return serveFrom(kRows, *this, procedure, arguments);
}

Application* ApplicationManager::find(std::uint32_t applId) {
    const auto found = applications_.find(applId);
    return found == applications_.end() ? nullptr : &found->second;
}

// --- groups

TApplManGroupResult ApplicationManager::openGroup(const TApplManOpenGroupRequest&) {
    if (++groupCount_ == 0) { ++groupCount_; }
    return {.targetGroupId1 = groupWord_, .targetGroupId2 = groupCount_};
}

TApplManRegisterResult ApplicationManager::registerProcess(const TApplManRegisterRequest& request) {
    if (const Failure refusal = refusalOfRegistration(request)) {
        return {.result = kRefused, .errorList = errorList(refusal)};
    }
    Application process;
    process.id = lastApplId_ + 1;
    process.group = identityOf(request.group);
    process.number = request.applNo;
    process.groupSize = sizeOf(request.group);
    applications_.emplace(process.id, process);
    ++lastApplId_;
    return {.applId = static_cast<std::int32_t>(process.id)};
}

Failure ApplicationManager::refusalOfRegistration(const TApplManRegisterRequest& request) const {
    const std::uint32_t size = sizeOf(request.group);
    const GroupIdentity group = identityOf(request.group);
    if (request.applNo == 0 || request.applNo > size) {
        return message(Code::badApplicationNumber, {request.applNo, size});
    }
    if (group.first == groupWord_ && (group.second == 0 || group.second > groupCount_)) {
        return message(Code::unknownGroup, {group.first, group.second});
    }
    for (const auto& [id, process] : applications_) {
        if (group.none() || process.group != group) { continue; }
        if (process.groupSize != size) { return message(Code::otherGroupSize, {size, process.groupSize}); }
        if (process.number == request.applNo) { return message(Code::numberTaken, {request.applNo, id}); }
    }
    if (applications_.size() >= kMostProcesses || lastApplId_ >= kHighestApplId) {
        return message(Code::limitReached, {static_cast<std::uint32_t>(kMostProcesses)});
    }
    return {};
}

// --- commands

template <std::uint32_t kProcedure, class Request>
TApplManResult ApplicationManager::command(const Request& request) {
    return resultOf(accept(commandOf(kProcedure), applIdOf(request)));
}

Failure ApplicationManager::accept(const Command& command, std::uint32_t applId) {
    Application* const process = find(applId);
    if (process == nullptr) { return unknownProcess(applId); }
    if (auto refusal = refusalOf(command, *process, setting())) { return refusal; }
    process->failure.reset();
    process->pending = {&command, Clock::now() + options_.commandDelay};
    begin(command, *process, setting());
    return {};
}

TApplManResult ApplicationManager::commandState(const TApplManRequest& request) {
    using namespace command_state;
    const std::uint32_t applId = applIdOf(request);
    if (applId == kManager) { return {.result = flashLoad_ ? kBusy : kDone}; }
    const Application* const process = find(applId);
    if (process != nullptr) {
        return process->pending ? TApplManResult{.result = kBusy} : resultOf(process->failure, kFailed);
    }
    const bool unloaded = std::find(unloaded_.begin(), unloaded_.end(), applId) != unloaded_.end();
    return unloaded ? TApplManResult{.result = kDone} : resultOf(unknownProcess(applId), kFailed);
}

void ApplicationManager::carryOutWhatIsDue() {
    carryOutFlashLoad();
    const auto now = Clock::now();
    for (auto entry = applications_.begin(); entry != applications_.end();) {
        Application& process = entry->second;
        noticeEnd(process);
        const bool due = process.pending && process.pending->due <= now && !isBusy(process);
        const Command* const command = due ? std::exchange(process.pending, {})->command : nullptr;
        if (command != nullptr) { carryOut(*command, process, setting()); }
        if (command != nullptr && command->removes && !process.failure) {
            rememberUnloaded(process.id);
            entry = applications_.erase(entry);
        } else {
            noticeEnd(process);
            ++entry;
        }
    }
}

bool ApplicationManager::crash(std::uint32_t applId) {
    const std::lock_guard lock{mutex_};
    carryOutWhatIsDue();
    Application* const process = find(applId);
    const bool alive =
        process != nullptr && (process->state == AppState::running || process->state == AppState::paused);
    if (!alive) { return false; }
    if (process->program) {
        process->program->crash();
    } else {
        endByItself(*process, "simulated crash");
    }
    return true;
}

void ApplicationManager::rememberUnloaded(std::uint32_t applId) {
    unloaded_.push_back(applId);
    if (unloaded_.size() > kMostUnloaded) { unloaded_.pop_front(); }
}

TApplManValueResult ApplicationManager::processesInState(const TApplManRequest& request) {
    const std::uint32_t state = request.third;
    if (state > kHighestState) {
        return {.result = kRefused, .errorList = errorList(message(Code::unknownState, {state}))};
    }
    std::vector<std::uint32_t> ids;
    for (const auto& [id, process] : applications_) {
        const AppState wanted{state};
        if (wanted == AppState::any || wanted == process.state) { ids.push_back(id); }
    }
    return {.value = std::move(ids)};
}

// --- parameters

ManagerFacts ApplicationManager::facts() const {
    return {.cnSerialNumber = options_.cnSerialNumber,
            .initialisationCalls = options_.initialisationCalls,
            .commandTimeout = options_.commandTimeout,
            .processCount = static_cast<std::uint32_t>(applications_.size()),
            .startTime = startTime_,
            .time = secondsSince1970()};
}

/// `parameter` is null for a number that means nothing to the target.
Failure ApplicationManager::refusalOfParameter(const Parameter* parameter, std::uint32_t number,
                                               std::uint32_t applId) const {
    const bool isOne = parameter == nullptr || (applId == kManager ? parameter->ofManager : parameter->ofProcess);
    if (isOne && !options_.lackedParameters.contains(number)) { return {}; }
    return message(Code::unknownParameter, {number, applId});
}

TApplManResult ApplicationManager::setParameter(const TApplManSetParamRequest& request) {
    return resultOf(store(request));
}

Failure ApplicationManager::store(const TApplManSetParamRequest& request) {
    const std::uint32_t number = request.targetParamId;
    Application* const process = find(request.applId);
    if (process == nullptr && request.applId != kManager) { return unknownProcess(request.applId); }
    const Parameter* const parameter = findParameter(number);
    if (auto refusal = refusalOfParameter(parameter, number, request.applId)) { return refusal; }
    if (parameter != nullptr && parameter->access == Access::readOnly) {
        return message(Code::readOnlyParameter, {number});
    }
    if (parameter != nullptr && request.value.index() != parameter->tag) {
        return message(Code::wrongValueType, {number, static_cast<std::uint32_t>(parameter->tag),
                                              static_cast<std::uint32_t>(request.value.index())});
    }
    Values& values = process == nullptr ? values_ : process->values;
    const auto isFree = [](const Values::value_type& value) { return findParameter(value.first) == nullptr; };
    const bool another = parameter == nullptr && !values.contains(number);
    if (another && std::count_if(values.begin(), values.end(), isFree) >= std::ptrdiff_t{kMostFreeParameters}) {
        return message(Code::limitReached, {static_cast<std::uint32_t>(kMostFreeParameters)});
    }
    const bool bindsProgram = number == kCores && process != nullptr;
    if (auto refusal =
            bindsProgram ? bindProgram(*process, std::get<kTagWords>(request.value), setting()) : Failure{}) {
        return refusal;
    }
    values[number] = request.value;
    return {};
}

TApplManValueResult ApplicationManager::getParameter(const TApplManGetParamRequest& request) {
    TApplManValueResult reply;
    if (const Failure refusal = read(request, reply.value)) {
        return {.result = kRefused, .errorList = errorList(refusal)};
    }
    return reply;
}

Failure ApplicationManager::read(const TApplManGetParamRequest& request, TApplManValue& value) {
    const std::uint32_t number = request.targetParamId;
    const Application* const process = find(request.applId);
    if (process == nullptr && request.applId != kManager) { return unknownProcess(request.applId); }
    const Parameter* const parameter = findParameter(number);
    if (auto refusal = refusalOfParameter(parameter, number, request.applId)) { return refusal; }
    const Values& values = process == nullptr ? values_ : process->values;
    const auto written = values.find(number);
    if (written != values.end()) {
        value = written->second;
    } else if (parameter != nullptr) {
        value = parameter->value(facts(), process);
    } else {
        return message(Code::unknownParameter, {number, request.applId});
    }
    return {};
}

} // namespace simulated_target
