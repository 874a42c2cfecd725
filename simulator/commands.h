// The commands on a process: in which states a target accepts them, and what they lead to.
#pragma once

#include <cstdint>
#include <optional>

#include "simulator/application.h"
#include "simulator/store.h"

namespace simulated_target {

struct CommandSetting {
    const Store* store; // null when there is none
    std::uint32_t initialisationCalls;
    ProgramRunner* programs; // null when nothing is run; else there is a store
};

using Failure = std::optional<KvErrorListEntry>;

struct Command {
    std::uint32_t procedure;
    const char* name;
    std::uint32_t allowedIn; // a bit per state
    AppState leadsTo;
    bool removes;                                                                  // the process is gone afterwards
    Failure (*refusal)(const Application& process, const CommandSetting& setting); // null: the state alone decides
    Failure (*work)(Application& process, const CommandSetting& setting);          // null: it cannot fail
    void (*order)(Application& process, const CommandSetting& setting);            // to the program; null: none
};

/// The procedure must be that of a command.
const Command& commandOf(std::uint32_t procedure);

/// Why a process does not accept a command now.
Failure refusalOf(const Command& command, const Application& process, const CommandSetting& setting);

/// What an accepted command does at once: it gives the program, where there is one, its order.
void begin(const Command& command, Application& process, const CommandSetting& setting);

/// Carries a command out, once its time is over and the program has done what it was told. A process for which it fails
/// stays in its state.
void carryOut(const Command& command, Application& process, const CommandSetting& setting);

/// A process that ran or was paused is stopped, and every answer about it says how it ended, until a command succeeds. One
/// that is under way fails unless a stopped process accepts it, too.
void endByItself(Application& process, const std::string& how);

} // namespace simulated_target
