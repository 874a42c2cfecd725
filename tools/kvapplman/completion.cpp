// completion bash: a script that completes commands, options and names
#include <cstdio>
#include <functional>
#include <string>

#include <CLI/CLI.hpp>

#include "command.h"
#include "command_tree.h"
#include "explanations.h"

namespace tool {
namespace {

template <class Rows>
std::string namesOf(const Rows& rows) {
    std::string all;
    for (const auto& row : rows) {
        all += " " + std::string{row.name};
    }
    return all;
}

struct Words {
    const char* command;
    std::string (*words)();
};

// What may stand behind a command besides its options.
const Words kWords[] = {
    {"info get", [] { return namesOf(kvapplman::kItems); }},
    {"flash info", [] { return namesOf(kvapplman::kItems); }},
    {"param get", [] { return namesOf(kvapplman::kParams); }},
    {"param set", [] { return namesOf(kvapplman::kParams); }},
    {"apps", [] { return namesOf(kvapplman::kStates); }},
    {"explain", [] { return namesOf(explanations()); }},
    {"help", [] { return namesOf(commands()); }},
};

std::string wordsOf(const std::string& command) {
    for (const Words& row : kWords) {
        if (command == row.command) { return row.words(); }
    }
    return {};
}

std::string optionsOf(const CLI::App& app) {
    std::string all;
    for (const CLI::Option* const option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            all += " --" + name;
        }
        for (const std::string& name : option->get_snames()) {
            all += " -" + name;
        }
    }
    return all;
}

/// A row of the script per command, and one for what stands before commands.
std::string rowsOf(const CLI::App& app, const std::string& path) {
    std::string below;
    std::string words = wordsOf(path);
    for (const CLI::App* const sub : shownSubcommandsOf(app)) {
        words += " " + sub->get_name();
        below += rowsOf(*sub, path.empty() ? sub->get_name() : path + " " + sub->get_name());
    }
    const std::string own = path.empty() ? "" : optionsOf(app);
    return "        \"" + path + "\") words=\"" + words + "\" options+=\"" + own + "\" ;;\n" + below;
}

/// The options that are followed by a value.
std::string valueOptionsOf(const CLI::App& app) {
    std::string all;
    for (const CLI::Option* const option : app.get_options()) {
        if (option->get_positional() || option->get_expected_max() == 0) { continue; }
        for (const std::string& name : option->get_lnames()) {
            all += "|--" + name;
        }
        for (const std::string& name : option->get_snames()) {
            all += "|-" + name;
        }
    }
    return all;
}

std::string scriptOf(const CLI::App& root) {
    std::string script = R"(# bash completion for kvapplman; written by "kvapplman completion bash"
_kvapplman() {
    local current=${COMP_WORDS[COMP_CWORD]} path="" word words options i
    options=")" + optionsOf(root) +
                         R"("
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        case $word in
        --) COMPREPLY=(); return ;;
        )" + valueOptionsOf(root).substr(1) +
                         R"() ((++i)) ;;
        -*) ;;
        *) _kvapplman_knows "${path:+$path }$word" && path=${path:+$path }$word ;;
        esac
    done
    case $path in
)" + rowsOf(root, "") + R"(    esac
    if [[ $current == -* ]]; then words=$options; fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
_kvapplman_knows() {
    case $1 in
)";
    for (const Command& command : commands()) {
        script += "    \"" + std::string{command.name} + "\") return 0 ;;\n";
    }
    for (const CommandFamily& family : commandFamilies()) {
        script += "    \"" + std::string{family.name} + "\") return 0 ;;\n";
    }
    return script + "    esac\n    return 1\n}\ncomplete -o default -F _kvapplman kvapplman kvapplman.exe\n";
}

} // namespace

Action bindCompletionBash(CLI::App&) {
    return [](Context& context) {
        std::fputs(scriptOf(context.root).c_str(), stdout);
        return ExitCode::done;
    };
}

} // namespace tool
