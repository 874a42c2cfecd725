#include <array>
#include <cstdlib>
#include <memory>

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "system.h"

namespace tool {
namespace {

int descriptorOf(Stream stream) { return stream == Stream::output ? STDOUT_FILENO : STDERR_FILENO; }

} // namespace

std::string environmentVariable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

std::filesystem::path userConfigurationFolder() {
    if (const std::string folder = environmentVariable("XDG_CONFIG_HOME"); !folder.empty()) { return folder; }
    const std::string home = environmentVariable("HOME");
    return home.empty() ? std::filesystem::path{} : std::filesystem::path{home} / ".config";
}

bool isTerminal(Stream stream) { return isatty(descriptorOf(stream)) == 1; }

std::size_t terminalWidth(Stream stream) {
    constexpr std::size_t kUsual = 80;
    winsize size{};
    const bool known = ioctl(descriptorOf(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : kUsual;
}

std::size_t terminalHeight(Stream stream) {
    constexpr std::size_t kUsual = 24;
    winsize size{};
    const bool known = ioctl(descriptorOf(stream), TIOCGWINSZ, &size) == 0 && size.ws_row > 0;
    return known ? size.ws_row : kUsual;
}

void prepareTerminals() {}

std::vector<std::string> addressesOf(const std::string& host) {
    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), nullptr, &wanted, &found) != 0) { return {}; }
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owned{found, freeaddrinfo};
    std::vector<std::string> all;
    for (const addrinfo* entry = found; entry != nullptr; entry = entry->ai_next) {
        std::array<char, INET_ADDRSTRLEN> text{};
        const auto* const address = reinterpret_cast<const sockaddr_in*>(entry->ai_addr);
        inet_ntop(AF_INET, &address->sin_addr, text.data(), text.size());
        all.emplace_back(text.data());
    }
    return all;
}

} // namespace tool
