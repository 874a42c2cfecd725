// The texts of the messages that our targets report. The library shows them to hosts, and a target that reports one
// proves its arguments against them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace target_messages {

struct Row {
    std::uint32_t code;
    const char* text; // its places are those of the arguments in order; a number behind 0x has hexadecimal digits
};

inline constexpr Row kRows[] = {
    {0x14a00801, "Command refused. The command '%1' is not allowed in the present state of the application. Affected "
                 "application: 0x%2. State on target system: %3."},
    {0x14a00802,
     "Command refused. The command '%1' cannot begin while another command of the application is under way. "
     "Affected application: 0x%2."},
    {0x14a00803, "The target system does not know the application. Maybe it was unloaded, or the target system was "
                 "restarted since its registration. Affected application: 0x%1."},
    {0x14a00804, "The target system cannot answer for the parameter. Parameter: %1. Affected application: 0x%2."},
    {0x14a00805, "Invalid parameter value. The value has another type than the parameter. Parameter: %1. Type of the "
                 "parameter: %2. Type of the value: %3."},
    {0x14a00806, "The parameter is read-only. Parameter: %1."},
    {0x14a00807,
     "Registration refused. Make sure that the application number is in the range from 1 to the size of the "
     "application group. Application number: %1. Size of the application group: %2."},
    {0x14a00808, "Registration refused. The application group has an application of this number already. Application "
                 "number: %1. Application that has it: 0x%2."},
    {0x14a00809,
     "Registration refused. The target system has given this identity to no application group. Maybe it was "
     "restarted since. Identity: %1, %2."},
    {0x14a0080a, "Registration refused. The target system knows the application group with another size. Given size: "
                 "%1. Known size: %2."},
    {0x14a0080b, "Load application failed. The application binary was not found on the target system. Target path: "
                 "'%1/%2'."},
    {0x14a0080c, "Apply refused. Not all initialization calls were made. Affected application: 0x%1. Initialization "
                 "calls: %2 of %3."},
    {0x14a0080d, "The limit of the target system is reached. Maximum: %1."},
    {0x14a0080e, "There is no such application state. State: %1."},
    {0x14a0080f, "The target system cannot store a file of this name. Target path: '%1/%2'."},
    {0x14a00810, "Remove file failed. No such file is registered. File name: '%1'. File type: %2."},
    {0x14a00811, "Remove file failed. The target system cannot remove the file. Target path: '%1/%2'."},
    {0x14a00812, "There is no such application in the flash memory. Flash application: %1."},
    {0x14a00813, "There is no such kind of processor cores. Kind: %1."},
    {0x14a00814, "The program of application 0x%1 has ended by itself: %2."},
    {0x14a00815, "Start application failed. The program of application 0x%1 cannot be executed: %2."},
    {0x14a00816, "Load application failed. The file '%1/%2' is no program that the target system could run: %3."},
    {0x14a00817, "Programs on the target system cannot run on core %1. Number of cores: %2."},
    {0x14a01077, "The target system does not support files of this type. File type: %1."},
};

/// Null for a code that is none of these.
constexpr const char* textOf(std::uint32_t code) noexcept {
    for (const Row& row : kRows) {
        if (row.code == code) { return row.text; }
    }
    return nullptr;
}

/// How many arguments a text takes. None when its places are not %1, %2, … in this order.
constexpr std::optional<std::size_t> argumentsOf(std::string_view text) noexcept {
    std::size_t count = 0;
    for (std::size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1)) {
        ++count;
        if (at + 1 == text.size() || text[at + 1] != static_cast<char>('0' + count)) { return {}; }
    }
    return count;
}
static_assert(std::ranges::all_of(kRows, [](const Row& row) { return argumentsOf(row.text).has_value(); }));

} // namespace target_messages
