// help COMMAND
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "command.h"
#include "command_tree.h"

namespace tool {
namespace {

const CLI::App& commandOf(const CLI::App& root, const std::vector<std::string>& words) {
    const CLI::App* app = &root;
    for (const std::string& word : words) {
        app = subcommandOf(*app, word);
        if (app == nullptr) {
            throw Failed(ExitCode::usage, "There is no command \"" + word + "\". Try kvapplman help.");
        }
    }
    return *app;
}

} // namespace

Action bindHelp(CLI::App& app) {
    const auto words = std::make_shared<std::vector<std::string>>();
    app.add_option("COMMAND", *words, "the command")->type_name("");
    return [words](Context& context) {
        const CLI::App& command = commandOf(context.root, *words);
        std::fputs(command.help().c_str(), stdout);
        if (!words->empty()) { std::puts("Options of all commands: kvapplman help"); }
        return ExitCode::done;
    };
}

} // namespace tool
