// explain: what a message or a status means
#include <algorithm>
#include <cctype>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "command.h"
#include "explanations.h"
#include "numbers.h"
#include "system.h"

namespace tool {
namespace {

using Found = std::vector<const Explanation*>;

bool isStatus(const Explanation& entry) { return std::string_view{entry.kind} == "status"; }

std::string numberOf(const Explanation& entry) {
    return isStatus(entry) ? std::to_string(static_cast<std::int32_t>(entry.code)) : hexadecimal(entry.code);
}

std::string upperCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char letter) {
        return letter == '-' ? '_' : static_cast<char>(std::toupper(letter));
    });
    return text;
}

/// The code of a message or a status, negative numbers too.
bool hasNumber(const Explanation& entry, const std::string& text) {
    const auto number = numberFrom<std::int64_t>(text);
    if (!number) { return false; }
    return *number == entry.code || *number == static_cast<std::int32_t>(entry.code);
}

/// The whole name, or its end behind a "_".
bool hasName(const Explanation& entry, const std::string& upper) {
    const std::string_view name = entry.name;
    return name == upper || (!upper.empty() && name.ends_with("_" + upper));
}

/// How many letters must be added, removed or changed to make one text of another.
std::size_t distanceOf(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j < row.size(); ++j) {
        row[j] = j;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t changed = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

std::string_view withoutPrefix(std::string_view name) {
    for (const std::string_view prefix :
         {"KV_APPLMAN_STATUS_", "KV_APPLMAN_MSG_", "KV_PLATFORM_MSG_", "KV_APPLMAN_TARGET_MSG_", "TARGET_"}) {
        if (name.starts_with(prefix)) { return name.substr(prefix.size()); }
    }
    return name;
}

std::string listOf(const Found& entries) {
    std::string lines;
    for (const Explanation* const entry : entries) {
        lines += "\n  " + numberOf(*entry) + "  " + entry->name;
    }
    return lines;
}

Found similarTo(const std::string& text) {
    constexpr std::size_t kMost = 5;
    const std::string upper = upperCase(text);
    const std::size_t near = std::max<std::size_t>(2, upper.size() / 4);
    Found found;
    for (const Explanation& entry : explanations()) {
        const std::string_view name = withoutPrefix(entry.name);
        const bool isNear = distanceOf(name, withoutPrefix(upper)) <= near;
        const bool holds = upper.size() > 2 && name.find(upper) != std::string_view::npos;
        const bool nearNumber = upper.starts_with("0X") && distanceOf(upperCase(numberOf(entry)), upper) <= 1;
        if (found.size() < kMost && (isNear || holds || nearNumber)) { found.push_back(&entry); }
    }
    return found;
}

const Explanation& lookUp(const std::string& text) {
    const std::string upper = upperCase(text);
    Found found;
    for (const Explanation& entry : explanations()) {
        if (entry.name == upper) { return entry; }
        if (hasNumber(entry, text) || hasName(entry, upper)) { found.push_back(&entry); }
    }
    if (found.size() == 1) { return *found.front(); }
    if (found.empty()) { found = similarTo(text); }
    const std::string unknown = "\"" + text + "\" is no code, status or name that is known here.";
    if (found.empty()) { throw Failed(ExitCode::usage, unknown); }
    throw Failed(ExitCode::usage,
                 (found.size() == 1 ? unknown + " Do you mean this?" : "\"" + text + "\" could be one of these:") +
                     listOf(found));
}

/// A heading and a text below it, at most as wide as the terminal.
std::string section(const char* heading, std::string_view text, std::size_t width) {
    if (text.empty()) { return {}; }
    std::string all = std::string{heading} + "\n";
    std::string line = " ";
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        if (line.size() + 1 + end > width && line != " ") {
            all += line + "\n";
            line = " ";
        }
        line += " " + std::string{text.substr(0, end)};
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return all + line + "\n";
}

std::string textOf(const Explanation& entry) {
    constexpr std::size_t kWidest = 100;
    const std::size_t width = std::min(terminalWidth(Stream::output), kWidest);
    return numberOf(entry) + "  " + entry.name + "\n" + section("Text:", entry.text, width) +
           section("Arguments:", entry.arguments, width) + section("Meaning:", entry.meaning, width) +
           section("Causes:", entry.causes, width) + section("What to do:", entry.action, width) +
           section("Given by:", entry.functions, width);
}

Json jsonOf(const Explanation& entry) {
    const Json number = isStatus(entry) ? Json(static_cast<std::int32_t>(entry.code)) : Json(hexadecimal(entry.code));
    return {{"name", entry.name},           {"kind", entry.kind},       {"code", number},
            {"text", entry.text},           {"meaning", entry.meaning}, {"causes", entry.causes},
            {"arguments", entry.arguments}, {"action", entry.action},   {"functions", entry.functions}};
}

} // namespace

Action bindExplain(CLI::App& app) {
    const auto text = std::make_shared<std::string>();
    app.add_option("WHAT", *text, "code of a message (0x1250000a), a status (-185), or a name, which may be shortened")
        ->type_name("")
        ->required();
    return [text](Context& context) {
        const Explanation& entry = lookUp(*text);
        context.output.print(textOf(entry));
        context.output.result(jsonOf(entry));
        return ExitCode::done;
    };
}

} // namespace tool
