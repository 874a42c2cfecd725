#include "simulator/kvtarget_options.h"

#include <charconv>
#include <cstdint>
#include <limits>
#include <string_view>

#include "rpc_wire/ipv4_endpoint.h"

namespace simulated_target {
namespace {

template <class Number>
Number parseNumber(const std::string& option, std::string_view text) {
    Number number{};
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
    if (parsed.ec != std::errc{} || parsed.ptr != text.data() + text.size()) {
        throw BadCommandLine{option + ": \"" + std::string{text} + "\" is not a number from 0 to " +
                             std::to_string(std::numeric_limits<Number>::max())};
    }
    return number;
}

void setListen(Options& options, const std::string& option, const std::string& value) {
    const std::size_t colon = value.find(':');
    options.host = value.substr(0, colon);
    if (!kvrpc::parseIpv4Address(options.host)) {
        throw BadCommandLine{option + ": \"" + options.host + "\" is not an IPv4 address"};
    }
    if (colon != std::string::npos) { options.port = parseNumber<std::uint16_t>(option, value.substr(colon + 1)); }
}

void setStore(Options& options, const std::string& option, const std::string& value) {
    if (value.empty()) { throw BadCommandLine{option + ": the folder has no name"}; }
    options.store = value;
}

template <std::uint32_t Options::*kMember>
void setWord(Options& options, const std::string& option, const std::string& value) {
    options.*kMember = parseNumber<std::uint32_t>(option, value);
}

template <std::set<std::uint32_t> Options::*kMember>
void addWord(Options& options, const std::string& option, const std::string& value) {
    (options.*kMember).insert(parseNumber<std::uint32_t>(option, value));
}

void setDelay(Options& options, const std::string& option, const std::string& value) {
    options.commandDelay = std::chrono::milliseconds{parseNumber<std::uint32_t>(option, value)};
}

/// "ID" or "ID:NAME".
void addFlashApplication(Options& options, const std::string& option, const std::string& value) {
    const std::size_t colon = value.find(':');
    const auto id = parseNumber<std::uint32_t>(option, value.substr(0, colon));
    options.flashApplications[id] = colon == std::string::npos ? "flash" + std::to_string(id) : value.substr(colon + 1);
}

template <class Read>
auto faultsFrom(const std::string& option, Read read) {
    try {
        return read();
    } catch (const BadFault& fault) { throw BadCommandLine{option + ": " + fault.what()}; }
}

void addFault(Options& options, const std::string& option, const std::string& value) {
    options.faults.push_back(faultsFrom(option, [&] { return parseFault(value); }));
}

void addFaultFile(Options& options, const std::string& option, const std::string& value) {
    const auto rules = faultsFrom(option, [&] { return readFaultFile(value); });
    options.faults.insert(options.faults.end(), rules.begin(), rules.end());
}

struct OptionRow {
    const char* name;
    void (*set)(Options& options, const std::string& option, const std::string& value);
};

constexpr OptionRow kOptions[] = {
    {"--listen", setListen},
    {"--store", setStore},
    {"--serial", setWord<&Options::cnSerialNumber>},
    {"--init-calls", setWord<&Options::initialisationCalls>},
    {"--timeout", setWord<&Options::commandTimeout>},
    {"--delay", setDelay},
    {"--lack-procedure", addWord<&Options::lackedProcedures>},
    {"--lack-parameter", addWord<&Options::lackedParameters>},
    {"--lack-file-type", addWord<&Options::lackedFileTypes>},
    {"--flash", addFlashApplication},
    {"--cores", setWord<&Options::coreCount>},
    {"--fault", addFault},
    {"--fault-file", addFaultFile},
};

const OptionRow& findOption(const std::string& name) {
    for (const OptionRow& row : kOptions) {
        if (name == row.name) { return row; }
    }
    throw BadCommandLine{"unknown option \"" + name + "\""};
}

} // namespace

const char* const kUsage = R"(Usage: kvtarget [OPTION VALUE]...

A simulated target: keeps applications and files for host programs that are developed without hardware.
Prints "kvtarget listening on ADDRESS:PORT" when it is ready; ends on SIGTERM and SIGINT.

  --listen ADDRESS[:PORT]  where it listens, an IPv4 address; port 0 is any (127.0.0.1:0)
  --store FOLDER           where files go; made if need be (kvtarget-store)
  --serial NUMBER          CN serial number (1)
  --init-calls NUMBER      initialisation calls that a process wants; 0 is complete load (1)
  --timeout SECONDS        time that it asks hosts to grant a command (10)
  --delay MILLISECONDS     time that it takes for a command (20)
  --lack-procedure NUMBER  a procedure that it does not offer; may be repeated
  --lack-parameter NUMBER  a target parameter that it does not know; may be repeated
  --lack-file-type NUMBER  a type of additional files that it does not know; may be repeated
  --flash ID[:NAME]        an application in its flash memory; may be repeated
  --cores NUMBER           number of its processor cores (4)
  --fault CALL:FAULT       what goes wrong on purpose (docs/faults.md), "6@2:hang" for one; may be repeated
  --fault-file FILE        such faults, one a line
  --help                   shows this
)";

std::optional<Options> parseCommandLine(const std::vector<std::string>& arguments) {
    Options options;
    options.store = "kvtarget-store";
    options.recordRequests = false;
    for (std::size_t i = 0; i < arguments.size(); i += 2) {
        const std::string& name = arguments[i];
        if (name == "--help") { return {}; }
        const OptionRow& option = findOption(name);
        if (i + 1 == arguments.size()) { throw BadCommandLine{name + ": its value is missing"}; }
        option.set(options, name, arguments[i + 1]);
    }
    return options;
}

} // namespace simulated_target
