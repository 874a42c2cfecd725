// What the application manager keeps of an application process.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "error_lists/error_list_access.h"
#include "protocol/records.h"
#include "simulator/programs/program_runner.h"

namespace simulated_target {

using Clock = std::chrono::steady_clock;
using Values = std::map<std::uint32_t, applman::TApplManValue>; // by parameter number

/// In the numbering of targets. 4 is no state of a process: whoever asks for the processes in it gets them all.
enum class AppState : std::uint32_t {
    registered = 0, // known by its number, nothing is loaded
    loaded = 1,     // its binary is loaded, it is being initialised
    ready = 2,      // loaded, initialised and applied; never started
    running = 3,
    any = 4,
    paused = 5,
    stopped = 6, // may be started again
};
inline constexpr std::uint32_t kHighestState = 6;

struct GroupIdentity {
    std::uint32_t first = 0;
    std::uint32_t second = 0;

    bool operator==(const GroupIdentity&) const = default;
    bool none() const { return *this == GroupIdentity{}; }
};

/// An additional file, or a directory, that a host has registered for a process.
struct AdditionalFile {
    std::uint32_t fileType = 0;
    std::string directory{}; // in the store
    std::string name{};
    std::string sourcePath{}; // on the host
};

struct Command;

struct PendingCommand {
    const Command* command;
    Clock::time_point due;
};

struct Application {
    std::uint32_t id = 0;
    GroupIdentity group{};
    std::uint32_t number = 0; // position in the group, from 1
    std::uint32_t groupSize = 0;
    AppState state = AppState::registered;
    std::uint32_t initialised = 0; // initialisation calls since the load
    Values values{};               // what hosts have written
    std::vector<AdditionalFile> files{};
    std::optional<PendingCommand> pending{};
    std::optional<KvErrorListEntry> failure{}; // of the last command
    std::shared_ptr<Program> program{};        // that was started last; null on a target that runs none
    std::optional<KvErrorListEntry> end{};     // that came by itself: every answer about the process tells of it
};

} // namespace simulated_target
