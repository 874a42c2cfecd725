// info, param, and what items look like
#include "items.h"

#include <algorithm>
#include <memory>

#include "application_commands.h"
#include "command.h"

namespace tool {
namespace {

using kvapplman::Application;

struct Wishes {
    std::string application{};
    std::vector<std::string> names{};
    std::vector<std::string> values{};
};

/// The items under which parameters can be read.
std::vector<std::string> itemsOfParameters(const std::vector<std::string>& names) {
    std::vector<std::string> items;
    for (const std::string& name : names) {
        const kvapplman::ParamRow& row = paramFrom(name);
        const auto number = static_cast<std::uint32_t>(row.id);
        const auto sameNumber = [&](const auto& item) { return static_cast<std::uint32_t>(item.id) == number; };
        if (std::ranges::none_of(kvapplman::kItems, sameNumber)) {
            throw Failed(ExitCode::usage,
                         "The parameter " + std::string{row.name} + " can only be written: there is no item for it.");
        }
        items.push_back(std::to_string(number));
    }
    return items;
}

std::string quoted(const std::string& text) { return text.empty() ? "\"\"" : text; }

} // namespace

Told toldOf(const std::vector<ReadItem>& items) {
    Json list = Json::array();
    std::vector<std::vector<std::string>> table{{"ITEM", "NUMBER", "VALUE"}};
    for (const ReadItem& item : items) {
        list.push_back({{"item", item.name}, {"number", item.number}, {"value", jsonOf(item.value)}});
        table.push_back({item.name, std::to_string(item.number), quoted(textOf(item.value))});
    }
    const bool one = items.size() == 1;
    return {{{"items", list}}, one ? textOf(items.front().value) + "\n" : tableOf(table)};
}

Action bindInfoGet(CLI::App& app) {
    const auto wishes = std::make_shared<Wishes>();
    addApplication(app, wishes->application);
    app.add_option("ITEM", wishes->names, "names or numbers of items")->type_name("")->required();
    return [wishes](Context& context) {
        return askApplication(context, wishes->application, [&](const Application& application) {
            return toldOf(readItems(application, wishes->names));
        });
    };
}

Action bindInfoList(CLI::App& app) {
    const auto wishes = std::make_shared<Wishes>();
    addApplication(app, wishes->application);
    return [wishes](Context& context) {
        return askApplication(context, wishes->application,
                              [](const Application& application) { return toldOf(readItems(application, {})); });
    };
}

Action bindParamGet(CLI::App& app) {
    const auto wishes = std::make_shared<Wishes>();
    addApplication(app, wishes->application);
    app.add_option("PARAMETER", wishes->names, "names or numbers of parameters")->type_name("")->required();
    return [wishes](Context& context) {
        return askApplication(context, wishes->application,
                              [items = itemsOfParameters(wishes->names)](const Application& application) {
                                  return toldOf(readItems(application, items));
                              });
    };
}

Action bindParamSet(CLI::App& app) {
    const auto wishes = std::make_shared<Wishes>();
    const auto name = std::make_shared<std::string>();
    addApplication(app, wishes->application);
    app.add_option("PARAMETER", *name, "name or number of the parameter")->type_name("")->required();
    app.add_option("VALUE", wishes->values, "its value; several for a list")->type_name("");
    return [wishes, name](Context& context) {
        const kvapplman::ParamRow& row = paramFrom(*name);
        const kvapplman::Value value = valueFrom(row.kind, wishes->values);
        return askApplication(context, wishes->application, [&](const Application& application) {
            application.set(row.id, value);
            return Told{
                {{"parameter", row.name}, {"number", static_cast<std::uint32_t>(row.id)}, {"value", jsonOf(value)}},
                row.name + (" is set to " + quoted(textOf(value))) + "\n"};
        });
    };
}

} // namespace tool
