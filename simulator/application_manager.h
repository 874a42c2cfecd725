// The application-manager program: groups, processes with their states and parameters, commands that take their time.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <span>
#include <string>

#include <nlohmann/json_fwd.hpp>

#include "protocol/records.h"
#include "rpc_server/rpc_server.h"
#include "simulator/additional_files.h"
#include "simulator/application.h"
#include "simulator/commands.h"
#include "simulator/flash_memory.h"
#include "simulator/parameters.h"
#include "simulator/store.h"

namespace simulated_target {

struct ApplicationManagerOptions {
    std::uint32_t cnSerialNumber;
    std::uint32_t initialisationCalls;
    std::uint32_t commandTimeout; // seconds
    std::chrono::milliseconds commandDelay;
    std::set<std::uint32_t> lackedProcedures;
    std::set<std::uint32_t> lackedParameters;
    std::set<std::uint32_t> lackedFileTypes;
    std::map<std::uint32_t, std::string> flashApplications;
    std::uint32_t coreCount;
    std::shared_ptr<ProgramRunner> programs; // null when nothing is run
};

inline constexpr std::size_t kMostProcesses = 4096;
inline constexpr std::uint32_t kHighestApplId = 0x7FFFFFFF;

/// A flash application that is being loaded.
struct PendingFlashLoad {
    std::string name;
    Clock::time_point due;
};

/// May be asked by several threads at once.
class ApplicationManager {
public:
    /// `store` may be null: then no binary can be loaded. It must outlive the manager.
    ApplicationManager(ApplicationManagerOptions options, const Store* store);

    kvrpc::RpcReply answer(std::uint32_t procedure, std::span<const std::uint8_t> arguments);

    /// Lets a process that runs or is paused end by itself. False when there is none.
    bool crash(std::uint32_t applId);

    /// All that it holds; docs/target.md has the fields.
    nlohmann::ordered_json state();

private:
    applman::TApplManGroupResult openGroup(const applman::TApplManOpenGroupRequest& request);
    applman::TApplManRegisterResult registerProcess(const applman::TApplManRegisterRequest& request);
    applman::TApplManResult setParameter(const applman::TApplManSetParamRequest& request);
    applman::TApplManValueResult getParameter(const applman::TApplManGetParamRequest& request);
    applman::TApplManValueResult processesInState(const applman::TApplManRequest& request);
    applman::TApplManResult commandState(const applman::TApplManRequest& request);
    applman::TApplManCoreIdResult coreIds(const applman::TApplManPairRequest& request);
    applman::TApplManAddFileResult addFile(const applman::TApplManAddFileRequest& request);
    applman::TApplManAddFileResult addFileRecord(const applman::TApplManAddFileRequest2& request);
    applman::TApplManFileListResult fileList(const applman::TApplManRequest& request);
    applman::TApplManResult removeFileOf(const applman::TApplManRemoveFileRequest& request);
    applman::TApplManFlashListResult flashList(const applman::TApplManPairRequest& request);
    applman::TApplManValueResult getFlashParameter(const applman::TApplManRequest& request);
    applman::TApplManResult setFlashParameter(const applman::TApplManSetFlashParamRequest& request);
    applman::TApplManResult loadFlash(const applman::TApplManFlashRequest& request);
    applman::TApplManResult clearFlash(const applman::TApplManFlashRequest& request);
    template <std::uint32_t kProcedure, class Request>
    applman::TApplManResult command(const Request& request);

    /// The handler runs under the lock, decoding and encoding do not.
    template <auto kMember, class Request>
    static kvrpc::RpcReply serve(ApplicationManager& manager, std::span<const std::uint8_t> arguments);
    /// For what concerns one process: the reply tells of its end, when that came by itself.
    template <auto kMember, class Request>
    auto withEnd(const Request& request);
    template <auto kMember, class Request>
    static kvrpc::RpcReply serveProcess(ApplicationManager& manager, std::span<const std::uint8_t> arguments) {
        return serve<&ApplicationManager::withEnd<kMember, Request>, Request>(manager, arguments);
    }

    applman::TApplManAddFileResult add(std::uint32_t applId, const FileRequest& request);
    std::set<std::uint32_t> coresInUse() const;
    void startFromFlash(const std::string& name);
    Failure refusalOfRegistration(const applman::TApplManRegisterRequest& request) const;
    Failure accept(const Command& command, std::uint32_t applId);
    Failure store(const applman::TApplManSetParamRequest& request);
    Failure read(const applman::TApplManGetParamRequest& request, applman::TApplManValue& value);
    Failure refusalOfParameter(const Parameter* parameter, std::uint32_t number, std::uint32_t applId) const;
    Application* find(std::uint32_t applId);
    void carryOutWhatIsDue();
    void rememberUnloaded(std::uint32_t applId);
    void carryOutFlashLoad();
    CommandSetting setting() const {
        return {store_, options_.initialisationCalls, store_ == nullptr ? nullptr : options_.programs.get()};
    }
    ManagerFacts facts() const;

    const ApplicationManagerOptions options_;
    const Store* const store_;
    const std::int64_t startTime_;
    const std::uint32_t groupWord_; // first identity word of this target's groups

    std::mutex mutex_{}; // guards what follows
    std::uint32_t groupCount_ = 0;
    std::uint32_t lastApplId_ = 0;
    std::map<std::uint32_t, Application> applications_{}; // by ID
    std::deque<std::uint32_t> unloaded_{};                // processes that were unloaded lately
    Values values_{};                                     // the manager's own
    FlashMemory flash_;
    std::optional<PendingFlashLoad> flashLoad_{};
};

} // namespace simulated_target
