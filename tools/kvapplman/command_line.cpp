#include "command_line.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <string_view>

#include <CLI/CLI.hpp>

#include "command.h"
#include "command_tree.h"
#include "times.h"

namespace tool {
namespace {

constexpr const char* kCommonGroup = "Options of all commands";
constexpr const char* kCommandGroup = "Commands";

/// Help as it is written by hand: the whole name of a command, its arguments, and no word in capital letters but theirs.
class HelpFormatter : public CLI::Formatter {
public:
    HelpFormatter() {
        column_width(kColumn);
        label("Positionals", "Arguments");
    }

    std::string make_usage(const CLI::App* app, std::string) const override {
        std::string text = "\nUsage: " + pathOf(*app);
        for (const CLI::Option* const option : app->get_options()) {
            if (option->get_positional()) { text += " " + make_option_usage(option); }
        }
        return text + (shownSubcommandsOf(*app).empty() ? "" : " COMMAND") + " [OPTION...]\n";
    }

    std::string make_option_opts(const CLI::Option* option) const override {
        const std::string value = valueNameOf(*option);
        return value.empty() ? "" : " " + value;
    }

    std::string make_option_desc(const CLI::Option* option) const override {
        const std::string usual = option->get_default_str();
        return option->get_description() + (usual.empty() ? "" : " (" + usual + ")");
    }

private:
    static constexpr std::size_t kColumn = 26;

    static std::string pathOf(const CLI::App& app) {
        const CLI::App* const parent = app.get_parent();
        return (parent == nullptr ? "" : pathOf(*parent) + " ") + app.get_name();
    }
};

struct CommandLine {
    CommonOptions options{};
    std::vector<std::string> programArguments{};
    const Command* command = nullptr; ///< the one that was given
    Action action{};
};

std::chrono::milliseconds durationOf(const std::string& text) {
    constexpr double kLongest = 1e6;
    double seconds = 0.0;
    if (!CLI::detail::lexical_cast(text, seconds) || !(seconds > 0.0) || seconds > kLongest) {
        throw CLI::ValidationError{"--timeout", "\"" + text + "\" is not a time in seconds"};
    }
    return std::chrono::milliseconds{std::llround(seconds * 1000.0)};
}

void addCommonOptions(CLI::App& app, CommonOptions& options) {
    app.add_option("-d,--device", options.devices, "device: a name of the configuration, or HOST[:PORT]; repeatable")
        ->type_name("DEVICE")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->group(kCommonGroup);
    app.add_option("--config", options.configuration, "configuration file, in place of the user's own")
        ->type_name("FILE")
        ->group(kCommonGroup);
    const auto json = app.add_flag_callback(
        "--json", [&] { options.form = Form::json; }, "print one JSON document");
    const auto lines = app.add_flag_callback(
        "--json-lines", [&] { options.form = Form::jsonLines; }, "print JSON, a line for whatever happens");
    json->group(kCommonGroup);
    lines->group(kCommonGroup)->excludes(json);
    const auto quiet = app.add_flag("-q,--quiet", options.quiet, "tell nothing but results and failures");
    quiet->group(kCommonGroup);
    app.add_flag("-v,--verbose", options.verbose, "tell everything that was reported")
        ->excludes(quiet)
        ->group(kCommonGroup);
    app.add_option_function<std::string>(
           "--timeout", [&](const std::string& text) { options.timeout = durationOf(text); },
           "time for the whole command")
        ->type_name("SECONDS")
        ->group(kCommonGroup);
    app.add_option_function<std::string>(
           "--boot",
           [&](const std::string& text) {
               options.boot = timeFrom(text);
               if (!options.boot) { throw CLI::ValidationError{"--boot", "\"" + text + "\" is no time"}; }
           },
           "refuse application IDs from before a restart: start time of the target when they were given")
        ->type_name("TIME")
        ->group(kCommonGroup);
    app.set_help_flag("-h,--help", "show how it is used"); // commands have it from here
}

CLI::App* familyOf(CLI::App& root, const std::string& name) {
    if (subcommandOf(root, name) != nullptr) { return root.get_subcommand(name); }
    const auto families = commandFamilies();
    const auto family = std::ranges::find(families, name, &CommandFamily::name);
    CLI::App* const app = root.add_subcommand(name, family == families.end() ? "" : family->help);
    app->require_subcommand(1);
    app->group(kCommandGroup);
    return app;
}

CLI::App* addCommand(CLI::App& root, const Command& command) {
    const std::string name = command.name;
    const std::size_t space = name.find(' ');
    CLI::App* const parent = space == std::string::npos ? &root : familyOf(root, name.substr(0, space));
    CLI::App* const app = parent->add_subcommand(name.substr(space + 1), command.help);
    app->group(kCommandGroup);
    app->footer(command.details);
    return app;
}

void addCommands(CLI::App& root, CommandLine& line) {
    for (const Command& command : commands()) {
        CLI::App* const app = addCommand(root, command);
        const Action action = command.bind(*app);
        app->final_callback([&line, &command, action] {
            line.command = &command;
            line.action = action;
        });
    }
}

/// What stands behind "--" belongs to a program, when the command is one that starts programs.
void splitProgramArguments(std::vector<std::string>& words, CommandLine& line) {
    const auto dashes = std::ranges::find(words, "--");
    const auto takes = [&](const Command& command) {
        return command.needs == Needs::program && std::find(words.begin(), dashes, command.name) != dashes;
    };
    if (dashes == words.end() || std::ranges::none_of(commands(), takes)) { return; }
    line.programArguments.assign(std::next(dashes), words.end());
    words.erase(dashes, words.end());
}

/// " start", as far as commands were understood.
std::string understood(const CLI::App& app) {
    const auto parsed = app.get_subcommands();
    return parsed.empty() ? "" : " " + parsed.front()->get_name() + understood(*parsed.front());
}

/// For a command line that cannot be understood.
Form formOf(const std::vector<std::string>& words) {
    if (std::ranges::count(words, "--json") > 0) { return Form::json; }
    return std::ranges::count(words, "--json-lines") > 0 ? Form::jsonLines : Form::text;
}

ExitCode fail(Output& output, const Failure& failure) {
    output.failure("", failure);
    output.end(failure.exitCode, failure);
    return failure.exitCode;
}

ExitCode run(const CLI::App& root, const CommandLine& line, Output& output) {
    output.setOptions(line.options);
    output.setCommand(line.command->name);
    try {
        Context context{line.options, output, root, line.programArguments};
        if (line.command->needs != Needs::nothing) { context.configuration = readConfiguration(line.options); }
        const ExitCode exitCode = line.action(context);
        output.end(exitCode);
        return exitCode;
    } catch (const std::exception& thrown) { return fail(output, failureOf(thrown)); }
}

} // namespace

int runCommandLine(std::vector<std::string> words) {
    CommandLine line;
    line.options.form = formOf(words);
    Output output{line.options};

    CLI::App root{"Brings real-time applications onto targets and controls them there.", "kvapplman"};
    root.allow_windows_style_options(false);
    root.fallthrough();
    root.formatter(std::make_shared<HelpFormatter>());
    root.footer("kvapplman help COMMAND tells how a command is used.");
    root.require_subcommand(1);
    root.set_version_flag("--version", "kvapplman " KVAPPLMAN_VERSION, "show the version")->group(kCommonGroup);
    addCommonOptions(root, line.options);
    addCommands(root, line);

    splitProgramArguments(words, line);
    std::ranges::reverse(words); // as CLI11 wants them
    try {
        root.parse(std::move(words));
    } catch (const CLI::ParseError& fault) {
        if (fault.get_exit_code() == 0) { return root.exit(fault); } // help, or the version
        return static_cast<int>(fail(
            output, {ExitCode::usage, std::string{fault.what()} + ". Try kvapplman help" + understood(root) + "."}));
    }
    return static_cast<int>(run(root, line, output));
}

} // namespace tool
