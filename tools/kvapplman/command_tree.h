// Looking around in the tree of commands.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace tool {

/// The command of this name right below another; null when there is none.
inline const CLI::App* subcommandOf(const CLI::App& app, const std::string& name) {
    for (const CLI::App* const sub : app.get_subcommands([](const CLI::App*) { return true; })) {
        if (sub->get_name() == name) { return sub; }
    }
    return nullptr;
}

/// Those right below it that help shows.
inline std::vector<const CLI::App*> shownSubcommandsOf(const CLI::App& app) {
    return app.get_subcommands([](const CLI::App* sub) { return !sub->get_group().empty(); });
}

/// What stands behind an option: "SECONDS"; empty when nothing does.
inline std::string valueNameOf(const CLI::Option& option) {
    if (option.get_expected_max() == 0) { return {}; }
    const std::string name = option.get_type_name();
    return name.substr(0, name.find(':')); // behind it CLI11 tells what is checked
}

} // namespace tool
