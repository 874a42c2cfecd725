// files list, files remove
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "application_commands.h"
#include "command.h"
#include "numbers.h"

namespace tool {
namespace {

using kvapplman::AddedFile;
using kvapplman::Application;

struct Wishes {
    std::string application{};
    std::string name{};
    std::optional<std::uint32_t> type{};
};

Told listFiles(const Application& application) {
    Json list = Json::array();
    std::vector<std::vector<std::string>> table{{"NAME", "TYPE", "DIRECTORY", "SOURCE"}};
    for (const AddedFile& file : application.files()) {
        list.push_back(
            {{"name", file.name}, {"type", file.type}, {"directory", file.directory}, {"source", file.source}});
        table.push_back({file.name, std::to_string(file.type), file.directory, file.source});
    }
    return {{{"files", list}}, list.empty() ? "no additional file\n" : tableOf(table)};
}

/// The type under which the target has the file.
std::uint32_t typeOf(const Application& application, const std::string& name) {
    std::vector<std::uint32_t> types;
    for (const AddedFile& file : application.files()) {
        if (file.name == name) { types.push_back(file.type); }
    }
    if (types.size() == 1) { return types.front(); }
    if (types.empty()) {
        throw Failed(ExitCode::refused, "The application has no additional file \"" + name +
                                            "\". kvapplman files list shows those that it has.");
    }
    throw Failed(ExitCode::usage, "The application has several files \"" + name +
                                      "\". Give the --type of one of them: " + textOf(kvapplman::Value{types}) + ".");
}

Told removeFile(const Application& application, const Wishes& wishes) {
    const std::uint32_t type = wishes.type ? *wishes.type : typeOf(application, wishes.name);
    application.removeFile(wishes.name, type);
    return {{{"name", wishes.name}, {"type", type}}, wishes.name + " is removed\n"};
}

} // namespace

Action bindFilesList(CLI::App& app) {
    const auto wishes = std::make_shared<Wishes>();
    addApplication(app, wishes->application);
    return [wishes](Context& context) { return askApplication(context, wishes->application, listFiles); };
}

Action bindFilesRemove(CLI::App& app) {
    const auto wishes = std::make_shared<Wishes>();
    addApplication(app, wishes->application);
    app.add_option("NAME", wishes->name, "name of the file or directory on the target")->type_name("")->required();
    app.add_option("--type", wishes->type, "the type under which it was added, when there are several of the name")
        ->type_name("NUMBER");
    return [wishes](Context& context) {
        return askApplication(context, wishes->application,
                              [&](const Application& application) { return removeFile(application, *wishes); });
    };
}

} // namespace tool
