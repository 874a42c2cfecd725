// Devices by name: how they are called on the command line and in the configuration, and where they are.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "options.h"

namespace tool {

/// The port of a device for which none is given: the lower half of the number of the application manager's RPC program.
constexpr std::uint16_t kDefaultPort = 0x4b56;

struct Device {
    std::string name{};             ///< as the user calls it
    std::string address{};          ///< "a.b.c.d:port"; empty = an empty slot
    std::uint32_t serialNumber = 0; ///< of its CN; 0 = unknown
};

/// What the configuration file says.
struct Configuration {
    struct Entry {
        std::string address{}; ///< HOST[:PORT]
        std::uint32_t serialNumber = 0;
    };
    std::map<std::string, Entry> devices{};
    std::vector<std::string> usual{}; ///< the devices that are meant when the user names none
};

/// Reads the file that the options name, else the user's own. Throws Failed (hostFile, or usage when it makes no sense).
Configuration readConfiguration(const CommonOptions& options);

/// The devices of --device, else of KVAPPLMAN_DEVICE, else the usual ones. Throws Failed (usage, or unreachable when a
/// host name is not known).
std::vector<Device> devicesOf(const CommonOptions& options, const Configuration& configuration);

/// The same for commands that know slots: "-" is an empty one.
std::vector<Device> slotsOf(const CommonOptions& options, const Configuration& configuration);

} // namespace tool
