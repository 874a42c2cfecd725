#include "simulator/program_commands.h"

#include <cstdio>

#include "simulator/parameters.h"
#include "simulator/target_messages.h"

namespace simulated_target {
namespace {

using applman::Text;

void order(Application& process, ProgramOrder order) {
    if (process.program) { process.program->order(order); }
}

std::vector<std::string> argumentsOf(const Application& process) {
    std::vector<std::string> arguments;
    const auto written = process.values.find(kArguments);
    if (written == process.values.end()) { return arguments; }
    for (const Text& argument : std::get<applman::kTagTexts>(written->second)) {
        arguments.push_back(argument.value_or(""));
    }
    return arguments;
}

std::vector<std::uint32_t> coresOf(const Application& process) {
    const auto written = process.values.find(kCores);
    return written == process.values.end() ? std::vector<std::uint32_t>{}
                                           : std::get<applman::kTagWords>(written->second);
}

std::vector<std::string> environmentOf(const Application& process) {
    return {"PATH=/usr/local/bin:/usr/bin:/bin", "KVTARGET_APPL_ID=" + std::to_string(process.id),
            "KVTARGET_APPL_NO=" + std::to_string(process.number),
            "KVTARGET_GROUP=" + std::to_string(process.group.first) + ":" + std::to_string(process.group.second),
            "KVTARGET_GROUP_SIZE=" + std::to_string(process.groupSize)};
}

std::string joined(const std::vector<std::uint32_t>& numbers) {
    std::string text;
    for (const std::uint32_t number : numbers) {
        text += (text.empty() ? "" : " ") + std::to_string(number);
    }
    return text;
}

} // namespace

void startProgram(Application& process, const CommandSetting& setting) {
    if (process.state == AppState::paused) { return order(process, ProgramOrder::goOn); }
    process.program = setting.programs->start(*setting.store, {.applId = process.id,
                                                               .directory = binaryDirectory(process),
                                                               .name = binaryName(process),
                                                               .arguments = argumentsOf(process),
                                                               .environment = environmentOf(process),
                                                               .cores = coresOf(process)});
}

void stopProgram(Application& process, const CommandSetting&) { order(process, ProgramOrder::stop); }
void pauseProgram(Application& process, const CommandSetting&) { order(process, ProgramOrder::pause); }
void stepProgram(Application& process, const CommandSetting&) { order(process, ProgramOrder::step); }
void killProgram(Application& process, const CommandSetting&) { order(process, ProgramOrder::kill); }

bool isBusy(const Application& process) { return process.program && process.program->status().busy; }

Failure prepareProgram(Application& process, const CommandSetting& setting) {
    if (setting.programs == nullptr) { return {}; }
    const std::string directory = binaryDirectory(process);
    const std::string name = binaryName(process);
    if (const auto reason = setting.programs->refusalOf(*setting.store, directory, name)) {
        return message(Code::noProgram, {directory, name, *reason});
    }
    process.program.reset();
    return {};
}

Failure confirmStart(Application& process, const CommandSetting&) {
    if (!process.program) { return {}; }
    if (const auto reason = process.program->status().notStarted) {
        process.program.reset();
        return message(Code::programNotStarted, {process.id, *reason});
    }
    return {};
}

Failure removeProgram(Application& process, const CommandSetting& setting) {
    if (setting.programs == nullptr) { return {}; }
    const std::string name = std::to_string(process.id);
    if (setting.store->remove({kApplicationsDirectory}, name)) { return {}; }
    return message(Code::fileNotRemoved, {kApplicationsDirectory, name});
}

void noticeEnd(Application& process) {
    const bool alive = process.state == AppState::running || process.state == AppState::paused;
    if (!alive || !process.program) { return; }
    const ProgramStatus status = process.program->status();
    if (status.end && !status.endWasOrdered) { endByItself(process, *status.end); }
}

Failure bindProgram(Application& process, const std::vector<std::uint32_t>& cores, const CommandSetting& setting) {
    if (setting.programs == nullptr) { return {}; }
    const std::uint32_t count = setting.programs->coreCount();
    for (const std::uint32_t core : cores) {
        if (core < 1 || core > count) { return message(Code::unknownCore, {core, count}); }
    }
    if (process.program) { process.program->bindTo(cores); }
    return {};
}

std::string describeProgram(const Application& process) {
    const ProgramStatus status = process.program->status();
    const ProgramUsage usage = process.program->usage();
    char time[48];
    std::snprintf(time, sizeof time, "CPU time %.2f s", std::chrono::duration<double>{usage.cpuTime}.count());
    if (status.end) {
        return (status.endWasOrdered ? "ended as ordered, " : "ended by itself, ") + *status.end + ", " + time;
    }
    return "pid " + std::to_string(status.pid) + ", cores " + joined(usage.cores) + ", " + time;
}

} // namespace simulated_target
