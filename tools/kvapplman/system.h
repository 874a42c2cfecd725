// What the tool asks of the operating system. Texts are UTF-8.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// Empty when it is not set.
std::string environmentVariable(const char* name);

/// Where a user keeps the configuration of programs; empty when that is not known.
std::filesystem::path userConfigurationFolder();

enum class Stream : std::uint8_t { output, error };

bool isTerminal(Stream stream);

/// Columns of the terminal behind a stream.
std::size_t terminalWidth(Stream stream);

/// Lines of the terminal behind a stream.
std::size_t terminalHeight(Stream stream);

/// Lets terminals show UTF-8 and colours.
void prepareTerminals();

/// The IPv4 addresses of a host as texts, the preferred one first; empty when it has none or is not known.
std::vector<std::string> addressesOf(const std::string& host);

inline std::filesystem::path pathOf(std::string_view utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

} // namespace tool
