// What the application manager does for additional files, processor cores and flash memory.
#include <algorithm>

#include "simulator/application_manager.h"
#include "simulator/replies.h"
#include "simulator/target_messages.h"

namespace simulated_target {
namespace {

using namespace applman;

constexpr std::uint32_t kAllCores = 1; // kinds of the request for cores
constexpr std::uint32_t kFreeCores = 2;

FileOutcome unknownProcess(std::uint32_t applId) {
    return {kFileUnknownProcess, message(Code::unknownProcess, {applId})};
}

} // namespace

// --- additional files

TApplManAddFileResult ApplicationManager::add(std::uint32_t applId, const FileRequest& request) {
    Application* const process = find(applId);
    AdditionalFile file;
    const FileOutcome outcome =
        process == nullptr ? unknownProcess(applId) : registerFile(*process, request, options_.lackedFileTypes, &file);
    if (outcome.failure) { return {.result = outcome.result, .errorList = errorList(outcome.failure)}; }
    const bool isDirectory = storeDirectory(file) != file.directory;
    return {.targetPath = storeDirectory(file), .targetName = isDirectory ? "" : file.name};
}

TApplManAddFileResult ApplicationManager::addFile(const TApplManAddFileRequest& request) {
    return add(request.applId, {request.fileType, request.sourcePath, request.targetPath, request.targetName});
}

TApplManAddFileResult ApplicationManager::addFileRecord(const TApplManAddFileRequest2& request) {
    const TApplManAddFileRecord file = request.file.value_or(TApplManAddFileRecord{});
    return add(file.applId, {file.fileType, file.sourcePath, file.targetPath, file.targetName});
}

TApplManFileListResult ApplicationManager::fileList(const TApplManRequest& request) {
    const Application* const process = find(request.third);
    if (process == nullptr) {
        const FileOutcome unknown = unknownProcess(request.third);
        return {.errorCode = unknown.result, .errorList = errorList(unknown.failure)};
    }
    TApplManFileListResult reply;
    for (const AdditionalFile& file : process->files) {
        reply.files.push_back({file.sourcePath, file.name, file.directory, file.fileType});
    }
    return reply;
}

TApplManResult ApplicationManager::removeFileOf(const TApplManRemoveFileRequest& request) {
    Application* const process = find(request.applId);
    const FileOutcome outcome = process == nullptr ? unknownProcess(request.applId)
                                                   : removeFile(*process, request.fileType, request.fileName, store_);
    return {.result = outcome.result, .errorList = errorList(outcome.failure)};
}

// --- processor cores

/// Those that processes which run or are paused have asked for.
std::set<std::uint32_t> ApplicationManager::coresInUse() const {
    std::set<std::uint32_t> used;
    for (const auto& [id, process] : applications_) {
        if (process.state != AppState::running && process.state != AppState::paused) { continue; }
        const auto written = process.values.find(kCores);
        const auto value =
            written != process.values.end() ? written->second : findParameter(kCores)->value(facts(), &process);
        const auto& cores = std::get<kTagWords>(value);
        used.insert(cores.begin(), cores.end());
    }
    return used;
}

TApplManCoreIdResult ApplicationManager::coreIds(const TApplManPairRequest& request) {
    const std::uint32_t kind = request.second;
    if (kind != kAllCores && kind != kFreeCores) {
        return {.result = kRefused, .errorList = errorList(message(Code::unknownCoreKind, {kind}))};
    }
    const std::set<std::uint32_t> used = kind == kFreeCores ? coresInUse() : std::set<std::uint32_t>{};
    TApplManCoreIdResult reply;
    for (std::uint32_t core = 1; core <= options_.coreCount; ++core) {
        if (!used.contains(core)) { reply.coreIds.push_back(core); }
    }
    return reply;
}

// --- flash memory

TApplManFlashListResult ApplicationManager::flashList(const TApplManPairRequest&) {
    return {.flashApplIds = flash_.ids()};
}

TApplManValueResult ApplicationManager::getFlashParameter(const TApplManRequest& request) {
    TApplManValueResult reply;
    if (const Failure refusal = flash_.read(request.second, request.third, reply.value)) {
        return {.result = kRefused, .errorList = errorList(refusal)};
    }
    return reply;
}

TApplManResult ApplicationManager::setFlashParameter(const TApplManSetFlashParamRequest& request) {
    return resultOf(flash_.write(request.flashApplId, request.targetParamId, request.value));
}

TApplManResult ApplicationManager::loadFlash(const TApplManFlashRequest& request) {
    const std::int64_t id = request.command.flashApplId;
    const std::string* const name = flash_.nameOf(id);
    if (name == nullptr) { return resultOf(message(Code::unknownFlashApplication, {static_cast<std::uint32_t>(id)})); }
    if (flashLoad_) { return resultOf(message(Code::commandUnderWay, {"load from flash", std::uint32_t{0}})); }
    flashLoad_ = PendingFlashLoad{*name, Clock::now() + options_.commandDelay};
    return {};
}

TApplManResult ApplicationManager::clearFlash(const TApplManFlashRequest& request) {
    return resultOf(flash_.clear(request.command.flashApplId));
}

void ApplicationManager::carryOutFlashLoad() {
    if (!flashLoad_ || flashLoad_->due > Clock::now()) { return; }
    startFromFlash(flashLoad_->name);
    flashLoad_.reset();
}

/// What was loaded from flash is a process without a group, ready to be started.
void ApplicationManager::startFromFlash(const std::string& name) {
    if (applications_.size() >= kMostProcesses || lastApplId_ >= kHighestApplId) { return; }
    Application process;
    process.id = ++lastApplId_;
    process.number = 1;
    process.groupSize = 1;
    process.state = AppState::ready;
    process.values[param::kFileName.target] = Text{name};
    applications_.emplace(process.id, std::move(process));
}

} // namespace simulated_target
