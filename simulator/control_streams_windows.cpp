#include "simulator/control_streams.h"

#include <system_error>
#include <windows.h>

namespace simulated_target {

ControlStreams standardStreams() noexcept {
    return {reinterpret_cast<std::intptr_t>(GetStdHandle(STD_INPUT_HANDLE)),
            reinterpret_cast<std::intptr_t>(GetStdHandle(STD_OUTPUT_HANDLE))};
}

std::size_t readSome(ControlStreams streams, std::span<char> buffer) noexcept {
    DWORD count = 0;
    const auto in = reinterpret_cast<HANDLE>(streams.in);
    return ReadFile(in, buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr) != 0 ? count : 0;
}

bool writeAll(ControlStreams streams, std::string_view bytes) noexcept {
    while (!bytes.empty()) {
        DWORD count = 0;
        const auto out = reinterpret_cast<HANDLE>(streams.out);
        if (WriteFile(out, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) == 0) { return false; }
        bytes.remove_prefix(count);
    }
    return true;
}

std::intptr_t listenAt(const std::string& path) {
    throw std::system_error{std::make_error_code(std::errc::not_supported), "the control socket " + path};
}

void takeCallers(std::intptr_t, const std::function<void(ControlStreams)>&) noexcept {}

} // namespace simulated_target
