#include "simulator/event_log.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "protocol/procedure_numbers.h"
#include "simulator/procedure_names.h"

#if defined(_WIN32)
#include <io.h>
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace simulated_target {
namespace {

#if defined(_WIN32)

constexpr const char* kAppend = "a";

/// Switches colour on, where the console knows it.
bool isColourTerminal(std::FILE* file) {
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)));
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0 && SetConsoleMode(handle, mode | 0x0004 /* virtual terminal */) != 0;
}

#else

constexpr const char* kAppend = "ae"; // not handed on to programs

bool isColourTerminal(std::FILE* file) { return isatty(fileno(file)) == 1; }

#endif

bool wantsColour(std::FILE* file) {
    const char* const refused = std::getenv("NO_COLOR");
    return (refused == nullptr || *refused == '\0') && isColourTerminal(file);
}

std::FILE* openFile(const std::string& name) {
    if (name.empty()) { return nullptr; }
    std::FILE* const file = std::fopen(name.c_str(), kAppend);
    if (file == nullptr) { throw std::system_error{errno, std::generic_category(), "the log " + name}; }
    return file;
}

constexpr std::int32_t kBusy = 2; // what is answered for a command that is not carried out yet

struct Palette {
    const char *dim, *good, *bad, *fault, *end;
};
constexpr Palette kColours{"\033[2m", "\033[32m", "\033[33m", "\033[31m", "\033[0m"};
constexpr Palette kPlain{"", "", "", "", ""};

/// In columns, as far as the names allow it.
std::string padded(std::string text, std::size_t width) {
    if (text.size() < width) { text.resize(width, ' '); }
    return text;
}

std::string milliseconds(std::chrono::microseconds duration) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%8.1f ms", static_cast<double>(duration.count()) / 1000.0);
    return text.data();
}

std::string outcome(const RequestReport& report) {
    if (report.status != kvrpc::AcceptStatus::success) { return statusName(report.status); }
    if (report.result.value_or(0) == 0) { return "ok"; }
    const std::int32_t result = *report.result;
    const bool ofCommand = report.program == applman::kApplManProgram && report.procedure == applman::kGetCommandState;
    if (ofCommand) { return result == kBusy ? "busy" : "failed"; }
    return result == -1 ? "refused" : "result " + std::to_string(result);
}

std::string concerned(const RequestReport& report) {
    if (!report.application) { return {}; }
    return *report.application == 0 ? "manager" : "process " + std::to_string(*report.application);
}

std::string textOf(const RequestReport& report, const Palette& colour) {
    constexpr std::size_t kPeer = 21, kProcedure = 22, kApplication = 13;
    const std::string parameter = report.parameter ? ' ' + std::to_string(*report.parameter) : "";
    const std::string result = outcome(report);
    std::string text = colour.dim + padded(report.peer, kPeer) + colour.end + "  " +
                       padded(procedureName(report.program, report.procedure) + parameter, kProcedure) + "  " +
                       padded(concerned(report), kApplication) + milliseconds(report.duration) + "  " +
                       (result == "ok" ? colour.good : colour.bad) + result + colour.end;
    for (const std::string& fault : report.faults) {
        text += std::string{"  "} + colour.fault + '[' + fault + ']' + colour.end;
    }
    for (const ReportedMessage& message : report.messages) {
        text += "  " + codeText(message.code) + ' ' + message.text;
    }
    return text;
}

} // namespace

std::string ruleText(const RuleCount& count) {
    const auto counted = [](std::uint64_t number, const char* what) {
        return std::to_string(number) + ' ' + what + (number == 1 ? "" : "s");
    };
    return count.rule + " fired " + counted(count.fired, "time") + " in " + counted(count.calls, "call");
}

EventLog::EventLog(const std::string& file, LogFormat format)
    : opened_(openFile(file)), file_(opened_ ? opened_.get() : stderr), format_(format), colour_(wantsColour(file_)) {}

void EventLog::listening(const std::string& address, const std::string& store) {
    write("listening", Clock::now(), {{"address", address}, {"store", store}},
          "listening on " + address + " with the store " + store);
}

void EventLog::request(const RequestReport& report) noexcept {
    try {
        write("request", report.time, toJson(report), textOf(report, colour_ ? kColours : kPlain));
    } catch (const std::exception&) {} // no memory for the line
}

void EventLog::program(std::uint32_t applId, ProgramNews news, std::string_view line) noexcept {
    try {
        write(news == ProgramNews::output ? "output" : "program", Clock::now(),
              {{"application", applId}, {"text", line}}, newsText(applId, news, line));
    } catch (const std::exception&) {} // likewise
}

void EventLog::end(const std::vector<RuleCount>& rules) {
    for (const RuleCount& rule : rules) {
        write("rule", Clock::now(), toJson(rule), ruleText(rule));
    }
    write("end", Clock::now(), Json::object(), "end");
}

void EventLog::write(const char* event, Clock::time_point time, const Json& fields, const std::string& text) {
    std::string line;
    if (format_ == LogFormat::json) {
        Json whole{{"schema", kJsonSchema}, {"event", event}, {"time", timeText(time)}};
        whole.update(fields);
        line = lineOf(whole);
    } else {
        constexpr std::size_t kDate = 11; // characters, with the T behind it
        const Palette& colour = colour_ ? kColours : kPlain;
        line = colour.dim + timeText(time).substr(kDate) + colour.end + "  " + text;
    }
    line += '\n';
    const std::lock_guard lock{mutex_};
    std::fwrite(line.data(), 1, line.size(), file_);
    std::fflush(file_);
}

} // namespace simulated_target
