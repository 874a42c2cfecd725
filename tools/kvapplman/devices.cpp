#include "devices.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string_view>

#include <CLI/CLI.hpp>

#include "failure.h"
#include "numbers.h"
#include "system.h"

namespace tool {
namespace {

constexpr const char* kEmptySlot = "-";

[[noreturn]] void failUsage(const std::string& text) { throw Failed(ExitCode::usage, text); }

struct Place {
    std::string host;
    std::uint16_t port;
};

Place placeOf(const std::string& text) {
    const std::size_t colon = text.rfind(':');
    const std::string number = colon == std::string::npos ? std::to_string(kDefaultPort) : text.substr(colon + 1);
    const auto port = numberFrom<std::uint16_t>(number);
    if (port.value_or(0) == 0) {
        failUsage("\"" + text + "\" is no device: behind the colon belongs a port from 1 to 65535.");
    }
    const std::string host = text.substr(0, colon);
    if (host.empty()) { failUsage("\"" + text + "\" is no device: the host is missing."); }
    return {host, *port};
}

Device located(const std::string& name, const Configuration& configuration) {
    const auto known = configuration.devices.find(name);
    const bool isKnown = known != configuration.devices.end();
    const Place place = placeOf(isKnown ? known->second.address : name);
    const std::vector<std::string> addresses = addressesOf(place.host);
    if (addresses.empty()) {
        throw Failed(ExitCode::unreachable, "The host \"" + place.host +
                                                "\" is not known, nor has the configuration a " +
                                                "device of this name. Check the name, or give an IPv4 address.");
    }
    return {name, addresses.front() + ":" + std::to_string(place.port), isKnown ? known->second.serialNumber : 0};
}

std::vector<std::string> wordsOf(std::string text) {
    std::ranges::replace(text, ',', ' ');
    std::istringstream stream{text};
    return {std::istream_iterator<std::string>{stream}, {}};
}

std::vector<std::string> namesOf(const CommonOptions& options, const Configuration& configuration) {
    if (!options.devices.empty()) { return options.devices; }
    const std::vector<std::string> fromEnvironment = wordsOf(environmentVariable("KVAPPLMAN_DEVICE"));
    return fromEnvironment.empty() ? configuration.usual : fromEnvironment;
}

std::uint32_t serialNumberOf(const std::string& text) {
    const auto number = wordFrom(text);
    if (!number) { failUsage("\"" + text + "\" is no serial number"); }
    return *number;
}

// What the configuration file may say: device = "NAME" or a list; in [devices] NAME = "HOST[:PORT]"; in [devices.NAME]
// address = "HOST[:PORT]" and serial = NUMBER.
void take(const CLI::ConfigItem& item, Configuration& configuration) {
    const std::vector<std::string>& table = item.parents;
    if (item.name == "++" || item.name == "--") { return; } // where CLI11 begins and ends a table
    if (table.empty() && item.name == "device") {
        configuration.usual = item.inputs;
        return;
    }
    const bool ofDevices = !table.empty() && table.front() == "devices" && item.inputs.size() == 1;
    if (ofDevices && table.size() == 1) {
        configuration.devices[item.name].address = item.inputs.front();
    } else if (ofDevices && table.size() == 2 && item.name == "address") {
        configuration.devices[table.back()].address = item.inputs.front();
    } else if (ofDevices && table.size() == 2 && item.name == "serial") {
        configuration.devices[table.back()].serialNumber = serialNumberOf(item.inputs.front());
    } else {
        failUsage("nothing is known of \"" + item.fullname() + "\"");
    }
}

Configuration parseConfiguration(std::istream& file) {
    Configuration configuration;
    for (const CLI::ConfigItem& item : CLI::ConfigTOML{}.from_config(file)) {
        take(item, configuration);
    }
    for (const auto& [name, entry] : configuration.devices) {
        if (entry.address.empty()) { failUsage("the device \"" + name + "\" has no address"); }
    }
    return configuration;
}

} // namespace

Configuration readConfiguration(const CommonOptions& options) {
    const bool named = !options.configuration.empty();
    std::filesystem::path path = pathOf(options.configuration);
    if (!named) {
        const std::filesystem::path folder = userConfigurationFolder();
        if (folder.empty()) { return {}; }
        path = folder / "kvapplman" / "config.toml";
    }
    std::ifstream file{path};
    if (!file && !named) { return {}; }
    const std::string shown = kvapplman::toUtf8(path);
    if (!file) { throw Failed(ExitCode::hostFile, "The configuration file \"" + shown + "\" cannot be read."); }
    try {
        return parseConfiguration(file);
    } catch (const std::exception& fault) {
        failUsage("The configuration file \"" + shown + "\" makes no sense: " + fault.what() + ".");
    }
}

std::vector<Device> slotsOf(const CommonOptions& options, const Configuration& configuration) {
    std::vector<Device> slots;
    for (const std::string& name : namesOf(options, configuration)) {
        slots.push_back(name == kEmptySlot ? Device{name} : located(name, configuration));
    }
    if (!std::ranges::any_of(slots, [](const Device& slot) { return !slot.address.empty(); })) {
        failUsage("No device is named. Give --device NAME|HOST[:PORT], set KVAPPLMAN_DEVICE, or name one in the "
                  "configuration.");
    }
    return slots;
}

std::vector<Device> devicesOf(const CommonOptions& options, const Configuration& configuration) {
    std::vector<Device> devices = slotsOf(options, configuration);
    for (const Device& device : devices) {
        if (device.address.empty()) { failUsage("\"-\" is an empty slot, which has no meaning for this command."); }
        const auto isSame = [&](const Device& other) { return other.address == device.address; };
        if (std::ranges::count_if(devices, isSame) > 1) {
            failUsage("The device " + device.address + " is named twice.");
        }
    }
    return devices;
}

} // namespace tool
