#include "deployer.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "cleaning.h"
#include "each_device.h"
#include "times.h"

namespace tool {
namespace {

constexpr const char* kEndedWell = "exit code 0"; // [target]

/// The devices of a group.
std::string nameOf(const Deployment& deployment) {
    std::string names;
    std::set<std::string> named;
    for (const Slot& slot : deployment.slots) {
        if (slot.empty() || !named.insert(slot.device.name).second) { continue; }
        names += (names.empty() ? "" : ", ") + slot.device.name;
    }
    return names;
}

bool endedWell(const GroupRecord::Process& process) { return process.how == kEndedWell; }

std::string endOf(const GroupRecord::Process& process) {
    if (process.how.is_null()) { return "was stopped from elsewhere"; }
    return "has ended by itself: " + process.how.get<std::string>();
}

/// Whether every program that was to be followed has ended, and well.
bool programsEndedWell(const GroupRecord& group) {
    for (std::size_t i = 0; i < group.processes().size(); ++i) {
        if (!group.deployment().slots[i].empty() && !endedWell(group.processes()[i])) { return false; }
    }
    return true;
}

} // namespace

Deployer::Deployer(Output& output, std::vector<Deployment> groups, bool stays)
    : output_(output), progress_(output), stays_(stays) {
    for (Deployment& group : groups) {
        groups_.emplace_back(std::move(group));
    }
}

ExitCode Deployer::run(const JobLimits& limits) {
    catchInterruptions();
    std::vector<Job> jobs;
    for (const GroupRecord& group : groups_) {
        jobs.push_back(deploymentJob(group.deployment()));
    }
    const JobsDone done = runJobs(jobs, limits, [this](std::size_t group, const Json& event) { take(group, event); });
    for (std::size_t i = 0; i < groups_.size(); ++i) {
        groups_[i].take(done.ends[i]);
        progress_.drop(nameOf(groups_[i].deployment()));
    }
    tellFailures(done.cut);
    const bool clean = cleanUp(done.cut);
    tellResults(done.cut);
    return exitCode(done.cut, clean);
}

void Deployer::take(std::size_t group, const Json& event) {
    groups_[group].take(event);
    tell(groups_[group], event);
}

void Deployer::tell(const GroupRecord& group, const Json& event) {
    const std::string kind = event.at("event");
    const std::string name = nameOf(group.deployment());
    if (kind == "progress") {
        const std::uint64_t total = event.at("totalBytes");
        const std::uint64_t bytes = event.at("bytes");
        const double fraction =
            total == 0 ? event.at("fraction").get<double>() : static_cast<double>(bytes) / static_cast<double>(total);
        progress_.show(name, {fraction, event.at("phase"), event.at("file"), bytes, total});
    } else if (kind == "downloaded") {
        progress_.finish(name);
    } else if (kind == "warning") {
        output_.warning(name, failureFrom(event).messages);
    } else if (event.contains("slot")) {
        tellOfProcess(group, event);
    }
}

void Deployer::tellOfProcess(const GroupRecord& group, const Json& event) {
    const std::string kind = event.at("event");
    const std::size_t index = event.at("slot").get<std::size_t>() - 1;
    const GroupRecord::Process& process = group.processes()[index];
    const Device& device = group.deployment().slots[index].device;
    const std::string who = device.name + ": application " + std::to_string(process.id);
    if (kind == "registering") { return; }
    if (kind == "registered") { output_.note(who + " is registered"); }
    const bool endFollows = process.state == "stopped";
    if (kind == "state" && !endFollows) { output_.print(who + " is " + process.state + "\n"); }
    if (kind == "ended") { output_.print(who + " " + endOf(process) + "\n"); }
    Json told{{"device", device.name}, {"address", device.address}, {"slot", index + 1}, {"id", process.id}};
    if (kind == "state") { told["state"] = process.state; }
    if (kind == "ended") { told["how"] = process.how; }
    output_.event(kind.c_str(), std::move(told));
}

/// Tells why groups are not where they should be.
void Deployer::tellFailures(Cut cut) {
    for (const GroupRecord& group : groups_) {
        if (group.failure()) { output_.failure(nameOf(group.deployment()), *group.failure()); }
    }
    if (cut == Cut::interrupted) { output_.note("Interrupted. Cleaning up; once more leaves everything as it is."); }
    if (cut == Cut::timedOut) { output_.failure("", {ExitCode::timedOut, "The time is over. Cleaning up."}); }
}

bool Deployer::cleanUp(Cut cut) {
    const auto mustGo = [&](const GroupRecord& group) { return !stays_ || cut != Cut::none || !group.done(); };
    std::vector<Remains> remains;
    for (const GroupRecord& group : groups_) {
        if (mustGo(group)) { std::ranges::copy(group.remains(), std::back_inserter(remains)); }
    }
    const std::vector<Remains> left = tool::cleanUp(output_, std::move(remains));
    for (GroupRecord& group : groups_) {
        if (mustGo(group)) { group.takeLeft(left); }
    }
    return left.empty();
}

Json Deployer::resultOf(const GroupRecord& group, std::size_t slot, Cut cut) const {
    const Device& device = group.deployment().slots[slot].device;
    const GroupRecord::Process& process = group.processes()[slot];
    const auto startTime = group.startTime(device);
    Json result{{"device", device.name},
                {"address", device.address},
                {"exitCode", static_cast<int>(exitCodeOf(group, cut))},
                {"messages", group.warnings()},
                {"startTime", startTime ? Json(textOf(*startTime)) : Json{}},
                {"slot", slot + 1},
                {"file", kvapplman::toUtf8(group.deployment().slots[slot].file)},
                {"id", process.id == 0 ? Json{} : Json(process.id)},
                {"state", process.id == 0 || process.removed ? Json{} : Json(process.state)}};
    if (!stays_) { result["how"] = process.how; }
    if (group.failure()) { result["error"] = toJson(*group.failure()); }
    return result;
}

void Deployer::tellResults(Cut cut) {
    std::vector<std::vector<std::string>> table{{"DEVICE", "APPLICATION", "STATE", "FILE"}};
    for (const GroupRecord& group : groups_) {
        for (std::size_t i = 0; i < group.processes().size(); ++i) {
            const Slot& slot = group.deployment().slots[i];
            const GroupRecord::Process& process = group.processes()[i];
            if (slot.empty()) { continue; }
            output_.result(resultOf(group, i, cut));
            if (process.id == 0 || process.removed) { continue; }
            table.push_back(
                {slot.device.name, std::to_string(process.id), process.state, kvapplman::toUtf8(slot.file)});
        }
    }
    if (table.size() > 1) { output_.print(tableOf(table)); }
}

ExitCode Deployer::exitCodeOf(const GroupRecord& group, Cut cut) const {
    if (cut == Cut::timedOut) { return ExitCode::timedOut; }
    if (cut == Cut::interrupted) { return ExitCode::interrupted; }
    if (group.failure()) { return group.failure()->exitCode; }
    return stays_ || programsEndedWell(group) ? ExitCode::done : ExitCode::other;
}

ExitCode Deployer::exitCode(Cut cut, bool clean) const {
    if (cut == Cut::interrupted && !clean) { return ExitCode::leftBehind; }
    std::vector<ExitCode> exitCodes;
    for (const GroupRecord& group : groups_) {
        exitCodes.push_back(exitCodeOf(group, cut));
    }
    const ExitCode together = togetherOf(exitCodes);
    return together == ExitCode::done && !clean ? ExitCode::other : together;
}

} // namespace tool
