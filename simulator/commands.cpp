#include "simulator/commands.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "protocol/procedure_numbers.h"
#include "simulator/parameters.h"
#include "simulator/program_commands.h"
#include "simulator/target_messages.h"

namespace simulated_target {
namespace {

constexpr std::uint32_t in(AppState state) { return 1U << static_cast<std::uint32_t>(state); }
using enum AppState;
constexpr std::uint32_t kAtRest = in(registered) | in(loaded) | in(ready) | in(stopped);
constexpr std::uint32_t kWithBinary = in(loaded) | in(ready) | in(running) | in(paused) | in(stopped);

Failure load(Application& process, const CommandSetting& setting) {
    const std::string directory = binaryDirectory(process);
    const std::string name = binaryName(process);
    const auto path = parseStorePath(directory);
    if (setting.store == nullptr || !path || !setting.store->holdsFile(*path, name)) {
        return message(Code::binaryMissing, {directory, name});
    }
    if (auto refusal = prepareProgram(process, setting)) { return refusal; }
    process.initialised = 0;
    return {};
}

Failure initialise(Application& process, const CommandSetting&) {
    ++process.initialised;
    return {};
}

Failure notYetInitialised(const Application& process, const CommandSetting& setting) {
    if (process.initialised >= setting.initialisationCalls) { return {}; }
    return message(Code::notInitialised, {process.id, process.initialised, setting.initialisationCalls});
}

Failure refusalInState(const Command& command, const Application& process) {
    if ((command.allowedIn & in(process.state)) != 0) { return {}; }
    const auto state = static_cast<std::uint32_t>(process.state);
    return message(Code::notAllowedInState, {command.name, process.id, state});
}

constexpr Command kCommands[] = {
    // procedure, name, allowed in, leads to, removes, refusal, work, order
    {applman::kInitAppl, "initialise", in(loaded), loaded, false, nullptr, initialise, nullptr},
    {applman::kLoadAppl, "load", kAtRest, loaded, false, nullptr, load, nullptr},
    {applman::kUnloadAppl, "unload", kWithBinary | in(registered), registered, true, nullptr, removeProgram,
     killProgram},
    {applman::kStartAppl, "start", in(ready) | in(paused) | in(stopped), running, false, nullptr, confirmStart,
     startProgram},
    {applman::kStopAppl, "stop", in(running) | in(paused), stopped, false, nullptr, nullptr, stopProgram},
    {applman::kApplyAppl, "apply", in(loaded), ready, false, notYetInitialised, nullptr, nullptr},
    {applman::kLoadApplComplete, "load completely", kAtRest, ready, false, nullptr, load, nullptr},
    {applman::kPauseAppl, "pause", in(running), paused, false, nullptr, nullptr, pauseProgram},
    {applman::kStepAppl, "step", in(paused), paused, false, nullptr, nullptr, stepProgram},
    {applman::kTerminateAppl, "terminate", kWithBinary, registered, false, nullptr, nullptr, killProgram},
};

} // namespace

const Command& commandOf(std::uint32_t procedure) {
    const auto* const found = std::find_if(std::begin(kCommands), std::end(kCommands),
                                           [=](const Command& command) { return command.procedure == procedure; });
    if (found == std::end(kCommands)) { throw std::logic_error{"no command has this procedure"}; }
    return *found;
}

Failure refusalOf(const Command& command, const Application& process, const CommandSetting& setting) {
    if (process.pending) { return message(Code::commandUnderWay, {command.name, process.id}); }
    if (auto refusal = refusalInState(command, process)) { return refusal; }
    return command.refusal == nullptr ? Failure{} : command.refusal(process, setting);
}

void begin(const Command& command, Application& process, const CommandSetting& setting) {
    if (command.order != nullptr && setting.programs != nullptr) { command.order(process, setting); }
}

void carryOut(const Command& command, Application& process, const CommandSetting& setting) {
    process.failure = command.work == nullptr ? Failure{} : command.work(process, setting);
    if (process.failure) { return; }
    process.state = command.leadsTo;
    process.end.reset();
}

void endByItself(Application& process, const std::string& how) {
    process.state = stopped;
    process.end = message(Code::programEnded, {process.id, how});
    process.failure = process.pending ? refusalInState(*process.pending->command, process) : Failure{};
    if (process.failure) { process.pending.reset(); }
}

} // namespace simulated_target
