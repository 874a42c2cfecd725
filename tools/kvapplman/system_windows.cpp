#include <array>
#include <memory>

#include <io.h>
#include <winsock2.h>
#include <ws2tcpip.h>

#include "system.h"

namespace tool {
namespace {

HANDLE consoleOf(Stream stream) {
    return GetStdHandle(stream == Stream::output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

bool networkReady() {
    static const bool ready = [] {
        WSADATA data{};
        return WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }();
    return ready;
}

} // namespace

std::string environmentVariable(const char* name) {
    const wchar_t* const value = _wgetenv(std::filesystem::path(name).c_str());
    if (value == nullptr) { return {}; }
    const std::u8string text = std::filesystem::path(value).u8string();
    return {text.begin(), text.end()};
}

std::filesystem::path userConfigurationFolder() { return pathOf(environmentVariable("APPDATA")); }

bool isTerminal(Stream stream) { return _isatty(_fileno(stream == Stream::output ? stdout : stderr)) != 0; }

std::size_t terminalWidth(Stream stream) {
    constexpr std::size_t kUsual = 80;
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (GetConsoleScreenBufferInfo(consoleOf(stream), &info) == 0) { return kUsual; }
    return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}

std::size_t terminalHeight(Stream stream) {
    constexpr std::size_t kUsual = 24;
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (GetConsoleScreenBufferInfo(consoleOf(stream), &info) == 0) { return kUsual; }
    return static_cast<std::size_t>(info.srWindow.Bottom - info.srWindow.Top + 1);
}

void prepareTerminals() {
    SetConsoleOutputCP(CP_UTF8);
    for (const Stream stream : {Stream::output, Stream::error}) {
        DWORD mode = 0;
        if (GetConsoleMode(consoleOf(stream), &mode) == 0) { continue; }
        SetConsoleMode(consoleOf(stream), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    }
}

std::vector<std::string> addressesOf(const std::string& host) {
    if (!networkReady()) { return {}; }
    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), nullptr, &wanted, &found) != 0) { return {}; }
    const std::unique_ptr<addrinfo, void (*)(addrinfo*)> owned{found, [](addrinfo* list) { freeaddrinfo(list); }};
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
