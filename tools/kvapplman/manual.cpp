// The manual page, for mandoc and groff: made of the same tree as help.
#include <cstdio>
#include <string>

#include <CLI/CLI.hpp>

#include "command.h"
#include "command_tree.h"

namespace tool {
namespace {

/// Lines that are not too long.
std::string filled(std::string text) {
    constexpr std::size_t kWidth = 72;
    std::size_t begin = 0;
    while (text.size() - begin > kWidth) {
        const std::size_t space = text.rfind(' ', begin + kWidth);
        if (space == std::string::npos || space <= begin) { break; }
        text[space] = '\n';
        begin = space + 1;
    }
    return text;
}

/// As roff takes it: no backslash, and no dot or apostrophe at the start of a line.
std::string roff(const std::string& text) {
    std::string all;
    for (const char letter : text) {
        const bool atStart = all.empty() || all.back() == '\n';
        if (atStart && (letter == '.' || letter == '\'')) { all += "\\&"; }
        if (letter == '\\') {
            all += "\\e";
        } else if (letter == '-') {
            all += "\\-";
        } else {
            all += letter;
        }
    }
    return all;
}

std::string italic(const std::string& text) { return "\\fI" + roff(text) + "\\fR"; }
std::string bold(const std::string& text) { return "\\fB" + roff(text) + "\\fR"; }

/// "FILE...", "[ITEM...]"
std::string positionalOf(const CLI::Option& option) {
    const std::string name = italic(option.get_name()) + (option.get_expected_max() > 1 ? "..." : "");
    return option.get_required() ? name : "[" + name + "]";
}

/// "-d, --device DEVICE"
std::string namesOf(const CLI::Option& option) {
    std::string all;
    for (const std::string& name : option.get_snames()) {
        all += (all.empty() ? "" : ", ") + bold("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        all += (all.empty() ? "" : ", ") + bold("--" + name);
    }
    const std::string value = valueNameOf(option);
    return value.empty() ? all : all + " " + italic(value);
}

std::string paragraphsOf(const CLI::App& app, bool positionals) {
    std::string all;
    for (const CLI::Option* const option : app.get_options()) {
        const bool isHelp = option == app.get_help_ptr();
        if (option->get_positional() != positionals || isHelp) { continue; }
        const std::string value = option->get_default_str();
        all += ".TP\n" + (positionals ? italic(option->get_name()) : namesOf(*option)) + "\n" +
               roff(filled(option->get_description() + (value.empty() ? "" : " (" + value + ")"))) + "\n";
    }
    return all;
}

std::string usageOf(const CLI::App& app, const std::string& path) {
    std::string all = bold(path);
    for (const CLI::Option* const option : app.get_options()) {
        if (option->get_positional()) { all += " " + positionalOf(*option); }
    }
    return all;
}

std::string commandsBelow(const CLI::App& app, const std::string& path) {
    std::string all;
    for (const CLI::App* const sub : shownSubcommandsOf(app)) {
        const std::string name = path.empty() ? sub->get_name() : path + " " + sub->get_name();
        if (!shownSubcommandsOf(*sub).empty()) {
            all += commandsBelow(*sub, name);
            continue;
        }
        all += ".SS " + usageOf(*sub, name) + "\n" + roff(filled(sub->get_description())) + "\n";
        if (!sub->get_footer().empty()) { all += ".PP\n" + roff(filled(sub->get_footer())) + "\n"; }
        all += paragraphsOf(*sub, true) + paragraphsOf(*sub, false);
    }
    return all;
}

std::string exitCodesText() {
    std::string all;
    for (const ExitCodeRow& row : exitCodes()) {
        all += ".TP\n" + bold(std::to_string(static_cast<int>(row.code))) + "\n" + roff(filled(row.meaning)) + "\n";
    }
    return all;
}

std::string pageOf(const CLI::App& root) {
    return ".TH KVAPPLMAN 1 " KVAPPLMAN_DATE " \"kvapplman " KVAPPLMAN_VERSION "\"\n"
           ".SH NAME\nkvapplman \\- real\\-time applications on targets, from a shell\n"
           ".SH SYNOPSIS\n.B kvapplman\n.RI [ options ]\n.I command\n.RI [ argument ...]\n"
           ".SH DESCRIPTION\n" +
           roff(filled(root.get_description())) + "\n.SH OPTIONS OF ALL COMMANDS\n" + paragraphsOf(root, false) +
           ".SH COMMANDS\n" + commandsBelow(root, "") + ".SH EXIT STATUS\n" + exitCodesText() +
           ".SH ENVIRONMENT\n"
           ".TP\n.B KVAPPLMAN_DEVICE\nthe devices that are meant when no option names one,\nwith spaces or commas "
           "between\n"
           ".TP\n.B NO_COLOR\nwhen it is not empty, nothing is coloured\n"
           ".SH FILES\n"
           ".TP\n.I ~/.config/kvapplman/config.toml\nnames of devices; "
           "on Windows\n.I %APPDATA%\\ekvapplman\\econfig.toml\n"
           ".SH EXAMPLES\n"
           ".EX\n"
           "kvapplman run \\-d 192.168.0.7 ./program \\-\\- argument\n"
           "kvapplman deploy \\-d left \\-d right \\-\\-each \\-\\-start ./program\n"
           "kvapplman apps \\-d left \\-\\-json\n"
           "kvapplman info get \\-d left program state\n"
           "kvapplman explain 0x1260000e\n"
           ".EE\n";
}

} // namespace

Action bindManual(CLI::App& app) {
    app.group(""); // not shown: it is for those who build the tool
    return [](Context& context) {
        std::fputs(pageOf(context.root).c_str(), stdout);
        return ExitCode::done;
    };
}

} // namespace tool
