#include "simulator/control.h"

#include <charconv>
#include <stdexcept>
#include <vector>

namespace simulated_target {
namespace {

/// A command cannot be carried out, as what() says.
using BadCommand = std::invalid_argument;

std::uint32_t numberOf(std::string_view text) {
    std::uint32_t number = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
    if (parsed.ec != std::errc{} || parsed.ptr != text.data() + text.size()) {
        throw BadCommand{'"' + std::string{text} + "\" is not a number from 0 to 4294967295"};
    }
    return number;
}

/// Without blanks around it.
std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) { return {}; }
    return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

} // namespace

void RequestHistory::add(const RequestReport& report) {
    const std::lock_guard lock{mutex_};
    requests_.push_back(report);
    if (requests_.size() > kMost) { requests_.pop_front(); }
}

Json RequestHistory::toJson() const {
    const std::lock_guard lock{mutex_};
    Json all = Json::array();
    for (const RequestReport& report : requests_) {
        all.push_back(simulated_target::toJson(report));
    }
    return all;
}

std::string Control::answer(std::string_view line) const {
    Json reply{{"schema", kJsonSchema}, {"ok", true}};
    try {
        reply.update(carryOut(trimmed(line)));
    } catch (const BadCommand& bad) {
        reply["ok"] = false;
        reply["error"] = bad.what();
    }
    return lineOf(reply);
}

enum class Argument : std::uint8_t { none, optional, required };

struct Control::Row {
    std::string_view name;
    Argument argument;
    Json (Control::*carryOut)(std::string_view argument) const;
};

/// Throws BadCommand.
Json Control::carryOut(std::string_view line) const {
    static constexpr Row kRows[] = {
        {"fault", Argument::required, &Control::addFault}, {"clear", Argument::none, &Control::clearFaults},
        {"reboot", Argument::optional, &Control::reboot},  {"drop", Argument::none, &Control::dropConnections},
        {"crash", Argument::required, &Control::crash},    {"state", Argument::none, &Control::state},
        {"requests", Argument::none, &Control::requests},  {"quit", Argument::none, &Control::quit},
    };
    const std::string_view name = line.substr(0, line.find_first_of(" \t"));
    const std::string_view argument = trimmed(line.substr(name.size()));
    std::string names;
    for (const Row& row : kRows) {
        names += (names.empty() ? "" : ", ") + std::string{row.name};
        if (row.name != name) { continue; }
        if (argument.empty() && row.argument == Argument::required) {
            throw BadCommand{std::string{name} + " wants an argument"};
        }
        if (!argument.empty() && row.argument == Argument::none) {
            throw BadCommand{std::string{name} + " takes no argument"};
        }
        return (this->*row.carryOut)(argument);
    }
    throw BadCommand{"there is no command \"" + std::string{name} + "\", there are " + names};
}

Json Control::addFault(std::string_view rule) const {
    target_.addFault(parseFault(rule));
    return Json::object();
}

Json Control::clearFaults(std::string_view) const {
    target_.clearFaults();
    return Json::object();
}

Json Control::reboot(std::string_view milliseconds) const {
    target_.reboot(std::chrono::milliseconds{milliseconds.empty() ? 0 : numberOf(milliseconds)});
    return Json::object();
}

Json Control::dropConnections(std::string_view) const {
    target_.dropConnections();
    return Json::object();
}

Json Control::crash(std::string_view applId) const {
    if (!target_.crash(numberOf(applId))) { throw BadCommand{"no process " + std::string{applId} + " runs"}; }
    return Json::object();
}

Json Control::state(std::string_view) const { return Json::parse(target_.state()); }

Json Control::requests(std::string_view) const { return {{"requests", history_.toJson()}}; }

Json Control::quit(std::string_view) const {
    quit_();
    return Json::object();
}

} // namespace simulated_target
