#include "simulator/kvtarget_options.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>

#include "protocol/procedure_numbers.h"
#include "rpc_wire/ipv4_endpoint.h"
#include "simulator/additional_files.h"
#include "simulator/control_channel.h"
#include "simulator/procedure_names.h"

namespace simulated_target {
namespace {

using Texts = std::vector<std::string>;

constexpr std::uint32_t kMostOfWord = 0xFFFFFFFF;
constexpr std::uint32_t kMostInitCalls = 1000;
constexpr std::uint32_t kMostSeconds = 24 * 60 * 60;
constexpr std::uint32_t kMostMilliseconds = 60 * 60 * 1000;
constexpr std::uint32_t kMostCores = 1024;
constexpr std::uint32_t kMostPort = 65535;
constexpr std::uint32_t kMostProcesses = 4096;
constexpr std::uint32_t kMostKibibytes = 1024 * 1024;

/// A value makes no sense, as what() says.
using BadValue = std::invalid_argument;

std::string inQuotes(std::string_view text) { return '"' + std::string{text} + '"'; }

std::uint32_t numberOf(std::string_view text, std::uint32_t lowest, std::uint32_t highest) {
    std::uint32_t number = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = parsed.ec == std::errc{} && parsed.ptr == text.data() + text.size();
    if (!isNumber || number < lowest || number > highest) {
        throw BadValue{inQuotes(text) + " is not a number from " + std::to_string(lowest) + " to " +
                       std::to_string(highest)};
    }
    return number;
}

void setListen(CommandLine& line, const std::string& value) {
    const std::size_t colon = value.find(':');
    line.target.host = value.substr(0, colon);
    if (!kvrpc::parseIpv4Address(line.target.host)) {
        throw BadValue{inQuotes(line.target.host) + " is not an IPv4 address"};
    }
    if (colon != std::string::npos) {
        line.target.port = static_cast<std::uint16_t>(numberOf(value.substr(colon + 1), 0, kMostPort));
    }
}

void setStore(CommandLine& line, const std::string& value) {
    if (value.empty()) { throw BadValue{"the folder has no name"}; }
    line.target.store = value;
}

template <std::uint32_t Options::*kMember, std::uint32_t kLowest, std::uint32_t kHighest>
void setNumber(CommandLine& line, const std::string& value) {
    line.target.*kMember = numberOf(value, kLowest, kHighest);
}

void setDelay(CommandLine& line, const std::string& value) {
    line.target.commandDelay = std::chrono::milliseconds{numberOf(value, 0, kMostMilliseconds)};
}

void lackProcedure(CommandLine& line, const std::string& value) {
    const NamedProcedure* const procedure = findProcedure(value);
    if (procedure == nullptr || procedure->program != applman::kApplManProgram) {
        throw BadValue{inQuotes(value) + " is no procedure of the application manager"};
    }
    line.target.lackedProcedures.insert(procedure->number);
}

void lackParameter(CommandLine& line, const std::string& value) {
    line.target.lackedParameters.insert(numberOf(value, 0, kMostOfWord));
}

void lackFileType(CommandLine& line, const std::string& value) {
    const std::uint32_t type = numberOf(value, 0, kMostOfWord);
    if (!isFileType(type)) { throw BadValue{inQuotes(value) + " is no type of files"}; }
    line.target.lackedFileTypes.insert(type);
}

/// "ID" or "ID:NAME".
void addFlashApplication(CommandLine& line, const std::string& value) {
    const std::size_t colon = value.find(':');
    const std::uint32_t id = numberOf(value.substr(0, colon), 0, kMostOfWord);
    std::string name = colon == std::string::npos ? "flash" + std::to_string(id) : value.substr(colon + 1);
    const bool isNew = line.target.flashApplications.try_emplace(id, std::move(name)).second;
    if (!isNew) { throw BadValue{"there are two applications " + std::to_string(id)}; }
}

void addFault(CommandLine& line, const std::string& value) { line.target.faults.push_back(parseFault(value)); }

void addFaultFile(CommandLine& line, const std::string& value) {
    const auto rules = readFaultFile(value);
    line.target.faults.insert(line.target.faults.end(), rules.begin(), rules.end());
}

void setLog(CommandLine& line, const std::string& value) {
    line.log = true;
    line.logFile = value;
}

void setLogFormat(CommandLine& line, const std::string& value) {
    if (value != "text" && value != "json") { throw BadValue{inQuotes(value) + " is neither text nor json"}; }
    line.logFormat = value == "json" ? LogFormat::json : LogFormat::text;
}

void setControl(CommandLine& line, const std::string& value) {
    if (!value.empty() && !kHasControlSockets) {
        throw BadValue{"there are no control sockets on this system; without a path, commands come on standard input"};
    }
    line.control = true;
    line.controlPath = value;
}

template <std::chrono::milliseconds RunOptions::*kMember, std::uint32_t kLowest>
void setTime(CommandLine& line, const std::string& value) {
    line.running.*kMember = std::chrono::milliseconds{numberOf(value, kLowest, kMostMilliseconds)};
}

template <std::uint32_t RunOptions::*kMember, std::uint32_t kHighest>
void setBound(CommandLine& line, const std::string& value) {
    line.running.*kMember = numberOf(value, 1, kHighest);
}

template <bool RunOptions::*kMember>
void setFlag(CommandLine& line, const std::string&) {
    line.running.*kMember = true;
}

void requireFaults(CommandLine& line, const std::string&) { line.requireFaults = true; }

enum class Given : std::uint8_t { once, often };
enum class Value : std::uint8_t { none, optional, required };

struct OptionRow {
    const char* group;
    const char* name;
    const char* valueName;
    Value value;
    Given given;
    void (*take)(CommandLine& line, const std::string& value); // throws BadValue
    const char* help;
};

constexpr const char* kPlace = "Where it is";
constexpr const char* kNature = "What it is like";
constexpr const char* kLacks = "What it lacks";
constexpr const char* kFaults = "What goes wrong on purpose (docs/faults.md)";
constexpr const char* kPrograms = "Whether it runs what is loaded (docs/target.md)";
constexpr const char* kSight = "Watching and steering it (docs/target.md)";
constexpr const char* kGeneral = "General";

using enum Given;
using enum Value;
constexpr auto kSerial = setNumber<&Options::cnSerialNumber, 0, kMostOfWord>;
constexpr auto kInitCalls = setNumber<&Options::initialisationCalls, 0, kMostInitCalls>;
constexpr auto kTimeout = setNumber<&Options::commandTimeout, 0, kMostSeconds>;
constexpr auto kCoreCount = setNumber<&Options::coreCount, 1, kMostCores>;
constexpr auto kRun = setFlag<&RunOptions::run>;
constexpr auto kRunAsRoot = setFlag<&RunOptions::asRoot>;
constexpr auto kStep = setTime<&RunOptions::step, 1>;
constexpr auto kGrace = setTime<&RunOptions::grace, 0>;
constexpr auto kMostPrograms = setBound<&RunOptions::mostPrograms, kMostProcesses>;
constexpr auto kLogSize = setBound<&RunOptions::logSize, kMostKibibytes>;

constexpr OptionRow kRows[] = {
    {kPlace, "--listen", "ADDRESS[:PORT]", required, once, setListen,
     "IPv4 address to listen on; port 0 is any (127.0.0.1:0)"},
    {kPlace, "--store", "FOLDER", required, once, setStore, "where files go; made if need be (kvtarget-store-ADDRESS)"},
    {kNature, "--serial", "NUMBER", required, once, kSerial, "CN serial number (1)"},
    {kNature, "--init-calls", "NUMBER", required, once, kInitCalls,
     "initialisation calls of a process; 0 is complete load (1)"},
    {kNature, "--timeout", "SECONDS", required, once, kTimeout, "time that it asks hosts to grant a command (10)"},
    {kNature, "--delay", "MILLISECONDS", required, once, setDelay, "time that it takes for a command (20)"},
    {kNature, "--cores", "NUMBER", required, once, kCoreCount, "number of its processor cores (4)"},
    {kNature, "--flash", "ID[:NAME]", required, often, addFlashApplication,
     "an application in its flash memory; repeatable"},
    {kLacks, "--lack-procedure", "NAME", required, often, lackProcedure,
     "a procedure that it does not offer; repeatable"},
    {kLacks, "--lack-parameter", "NUMBER", required, often, lackParameter,
     "a parameter that it does not know; repeatable"},
    {kLacks, "--lack-file-type", "NUMBER", required, often, lackFileType,
     "a type of files that it does not know; repeatable"},
    {kFaults, "--fault", "RULE", required, often, addFault,
     "CALL[@WHICH]:FAULT[=VALUE], as in the example; repeatable"},
    {kFaults, "--fault-file", "FILE", required, often, addFaultFile, "a file of such rules, one a line; repeatable"},
    {kFaults, "--require-faults", "", none, once, requireFaults, "end with 3 when one of them has never fired"},
    {kPrograms, "--run", "", none, once, kRun, "run the programs that hosts load, on Linux"},
    {kPrograms, "--run-as-root", "", none, once, kRunAsRoot, "run them even as root"},
    {kPrograms, "--step", "MILLISECONDS", required, once, kStep, "for which a step lets a program run, at least (10)"},
    {kPrograms, "--grace", "MILLISECONDS", required, once, kGrace,
     "to end when it was asked to; then it is killed (2000)"},
    {kPrograms, "--most-programs", "NUMBER", required, once, kMostPrograms, "programs that run at once (32)"},
    {kPrograms, "--log-size", "KIB", required, once, kLogSize, "what is kept of a program's output (1024)"},
    {kSight, "--log", "[FILE]", optional, once, setLog, "a line per request, on standard error without a file"},
    {kSight, "--log-format", "text|json", required, once, setLogFormat, "what such a line is (text)"},
    {kSight, "--control", "[PATH]", optional, once, setControl, "commands from standard input, or from a Unix socket"},
};

/// Lines of one name count together, wherever they stand; CLI11 would drop those behind another name.
class MergedConfig : public CLI::ConfigTOML {
public:
    std::vector<CLI::ConfigItem> from_config(std::istream& input) const override {
        std::vector<CLI::ConfigItem> merged;
        for (CLI::ConfigItem& item : CLI::ConfigTOML::from_config(input)) {
            const auto same = [&](const CLI::ConfigItem& known) { return known.fullname() == item.fullname(); };
            const auto known = std::ranges::find_if(merged, same);
            if (known == merged.end()) {
                merged.push_back(std::move(item));
            } else {
                known->inputs.insert(known->inputs.end(), item.inputs.begin(), item.inputs.end());
            }
        }
        return merged;
    }
};

void add(CLI::App& app, const OptionRow& row, CommandLine& line) {
    const auto take = [&row, &line](const Texts& values) {
        if (row.given == once && values.size() > 1) { throw CLI::ValidationError{row.name, "given more than once"}; }
        try {
            for (const std::string& value : values) {
                row.take(line, value);
            }
        } catch (const BadValue& bad) { throw CLI::ValidationError{row.name, bad.what()}; }
    };
    CLI::Option* const option = app.add_option_function<Texts>(row.name, take, row.help);
    option->type_name(row.valueName)->group(row.group);
    option->expected(row.value == required ? 1 : 0, row.value == none ? 0 : 1)->allow_extra_args(false);
    option->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

/// What only the whole of it shows.
void examine(const CLI::App& app, const CommandLine& line) {
    if (!line.running.run) { return; }
    if (app.count("--cores") > 0) { throw BadCommandLine{"--cores: programs have the cores of this machine"}; }
    if (line.running.grace >= std::chrono::seconds{line.target.commandTimeout}) {
        throw BadCommandLine{"--grace: a host waits no longer for a stop than --timeout says"};
    }
    if (const auto reason = whyNotRun(line.running)) { throw BadCommandLine{"--run: " + *reason}; }
}

} // namespace

CommandLine parseCommandLine(std::vector<std::string> arguments) {
    CommandLine line;
    line.target.recordRequests = false;

    CLI::App app{"A simulated target: host programs are developed against it without hardware.\n"
                 "It prints \"kvtarget listening on ADDRESS:PORT\" when it is ready and ends on SIGTERM and SIGINT.\n",
                 "kvtarget"};
    app.allow_windows_style_options(false);
    app.allow_config_extras(CLI::config_extras_mode::error);
    app.config_formatter(std::make_shared<MergedConfig>());
    app.get_formatter()->column_width(32);
    app.footer("Example: the second start is never answered, and each hundredth call ends with its connection.\n"
               "  kvtarget --listen 127.0.0.2 --store /tmp/store --fault start@2:hang --fault any@%100:reset");
    for (const OptionRow& row : kRows) {
        add(app, row, line);
    }
    app.set_config("--config", "", "options from a file, NAME = VALUE per line; the command line replaces them")
        ->type_name("FILE")
        ->group(kGeneral);
    app.set_help_flag("-h,--help", "show this")->group(kGeneral);
    app.set_version_flag("--version", "kvtarget " KVTARGET_VERSION, "show the version")->group(kGeneral);

    std::ranges::reverse(arguments); // as CLI11 wants them
    try {
        app.parse(std::move(arguments));
    } catch (const CLI::CallForHelp&) { line.toShow = app.help(); } catch (const CLI::CallForVersion& version) {
        line.toShow = std::string{version.what()} + '\n';
    } catch (const CLI::ParseError& fault) { throw BadCommandLine{fault.what()}; }
    if (line.toShow.empty()) { examine(app, line); }

    if (line.target.store.empty()) {
        const std::string port = line.target.port == 0 ? "" : "-" + std::to_string(line.target.port);
        line.target.store = "kvtarget-store-" + line.target.host + port;
    }
    return line;
}

} // namespace simulated_target
