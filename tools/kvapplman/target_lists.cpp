// apps, cores: what targets have
#include <algorithm>
#include <map>
#include <memory>
#include <optional>

#include <CLI/CLI.hpp>

#include "command.h"
#include "each_device.h"
#include "values.h"

namespace tool {
namespace {

using kvapplman::Application;
using kvapplman::Item;
using kvapplman::State;
using kvapplman::Target;

struct Wishes {
    std::string name{};
    std::string state = "any";
};

/// Empty when the target refuses the item.
std::string textItem(const Application& application, Item item) {
    try {
        return textOf(application.info(item));
    } catch (const kvapplman::Error& error) {
        if (failureOf(error).exitCode != ExitCode::refused) { throw; }
        return {};
    }
}

/// None when the application is gone since it was listed.
std::optional<Json> described(const Application& application) {
    try {
        return Json{{"id", application.id()}, {"state", textOf(application.state())}};
    } catch (const kvapplman::Error& error) {
        if (!error.has(KV_APPLMAN_TARGET_MSG_UNKNOWN_PROCESS)) { throw; }
        return {};
    }
}

std::vector<std::uint32_t> wanted(const Target& target, const Wishes& wishes, State state) {
    if (wishes.name.empty()) { return target.applicationIds(state); }
    std::vector<std::uint32_t> ids;
    for (const auto& listed : target.applications(wishes.name)) {
        if (state == State::any || target.application(listed.id).state() == state) { ids.push_back(listed.id); }
    }
    return ids;
}

Told listApplications(const Target& target, const Wishes& wishes, State state) {
    Json list = Json::array();
    std::vector<std::vector<std::string>> table{{"ID", "STATE", "NAME", "GROUP OF", "INFORMATION"}};
    for (const std::uint32_t id : wanted(target, wishes, state)) {
        const Application application = target.application(id);
        auto entry = described(application);
        if (!entry) { continue; }
        const std::string name = textItem(application, Item::fileName);
        const std::string information = textItem(application, Item::informationText);
        const std::string groupSize = textItem(application, Item::groupSize);
        (*entry)["name"] = name;
        (*entry)["groupSize"] = groupSize.empty() ? Json{} : Json(std::stoul(groupSize));
        (*entry)["information"] = information;
        table.push_back({std::to_string(id), entry->at("state"), name, groupSize, information});
        list.push_back(*std::move(entry));
    }
    return {{{"applications", list}}, list.empty() ? "no application\n" : tableOf(table)};
}

} // namespace

Action bindApps(CLI::App& app) {
    const auto wishes = std::make_shared<Wishes>();
    app.add_option("--name", wishes->name, "only those of this name: the binary's file name without its last extension")
        ->type_name("NAME");
    app.add_option("--state", wishes->state, "only those in this state")->type_name("STATE");
    return [wishes](Context& context) {
        const State state = stateFrom(wishes->state);
        return askEachDevice(context, [&](const Target& target) { return listApplications(target, *wishes, state); });
    };
}

Action bindCores(CLI::App& app) {
    const auto free = std::make_shared<bool>(false);
    app.add_flag("--free", *free, "only those on which no application runs");
    return [free](Context& context) {
        return askEachDevice(context, [&](const Target& target) {
            const auto cores = target.cores(*free ? kvapplman::Cores::free : kvapplman::Cores::all);
            return Told{{{"cores", cores}},
                        cores.empty() ? "no core\n" : textOf(kvapplman::Value{cores}) + "\n",
                        cores.empty() ? "KvApplMan_getAvailableCoreIDs" : nullptr};
        });
    };
}

} // namespace tool
