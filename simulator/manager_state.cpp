// What the application manager holds, as JSON.
#include "simulator/application_manager.h"
#include "simulator/program_commands.h"
#include "simulator/report_json.h"

namespace simulated_target {
namespace {

constexpr std::array kStateNames{"registered", "loaded", "ready", "running", "any", "paused", "stopped"};

Json toJson(std::uint32_t value) { return value; }
Json toJson(std::int64_t value) { return value; }
Json toJson(std::uint8_t value) { return value; }
Json toJson(double value) { return value; }
Json toJson(const applman::Text& text) { return text.value_or(""); }

Json toJson(const AdditionalFile& file) {
    return {{"type", file.fileType}, {"directory", file.directory}, {"name", file.name}, {"source", file.sourcePath}};
}

template <class Element>
Json toJson(const std::vector<Element>& elements) {
    Json list = Json::array();
    for (const Element& element : elements) {
        list.push_back(toJson(element));
    }
    return list;
}

Json toJson(const applman::TApplManValue& value) {
    return std::visit([](const auto& arm) { return toJson(arm); }, value);
}

/// By the number of the parameter.
Json toJson(const Values& values) {
    Json all = Json::object();
    for (const auto& [number, value] : values) {
        all[std::to_string(number)] = toJson(value);
    }
    return all;
}

Json toJson(const std::optional<KvErrorListEntry>& entry) {
    if (!entry) { return nullptr; }
    const auto messages = messagesOf(KvErrorListAccess::serialize({*entry}));
    return messages.empty() ? Json(nullptr) : toJson(messages.front());
}

Json toJson(const GroupIdentity& group) { return Json::array({group.first, group.second}); }

Json toJson(const Application& process) {
    return {{"id", process.id},
            {"group", process.group.none() ? Json(nullptr) : toJson(process.group)},
            {"number", process.number},
            {"groupSize", process.groupSize},
            {"state", kStateNames.at(static_cast<std::size_t>(process.state))},
            {"command", process.pending ? Json(process.pending->command->name) : Json(nullptr)},
            {"failure", toJson(process.failure)},
            {"end", toJson(process.end)},
            {"program", process.program ? Json(describeProgram(process)) : Json(nullptr)},
            {"initialisations", process.initialised},
            {"binary", binaryDirectory(process) + '/' + binaryName(process)},
            {"parameters", toJson(process.values)},
            {"files", toJson(process.files)}};
}

} // namespace

Json ApplicationManager::state() {
    const std::lock_guard lock{mutex_};
    carryOutWhatIsDue();
    Json processes = Json::array();
    std::map<std::pair<std::uint32_t, std::uint32_t>, Json> groups;
    for (const auto& [id, process] : applications_) {
        processes.push_back(toJson(process));
        if (process.group.none()) { continue; }
        Json& group = groups[{process.group.first, process.group.second}];
        if (group.is_null()) { group = {{"identity", toJson(process.group)}, {"size", process.groupSize}}; }
        group["processes"].push_back(id);
    }
    Json groupList = Json::array();
    for (auto& [identity, group] : groups) {
        groupList.push_back(std::move(group));
    }
    Json flash = Json::array();
    for (const std::uint32_t id : flash_.ids()) {
        applman::TApplManValue values;
        flash_.read(id, applman::param::kFlashValues.target, values);
        flash.push_back({{"id", id}, {"name", *flash_.nameOf(id)}, {"values", toJson(values)}});
    }
    return {{"groupsOpened", groupCount_},
            {"groups", std::move(groupList)},
            {"processes", std::move(processes)},
            {"parameters", toJson(values_)},
            {"flash", std::move(flash)}};
}

} // namespace simulated_target
