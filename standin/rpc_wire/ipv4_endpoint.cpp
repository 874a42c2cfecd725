#include "rpc_wire/ipv4_endpoint.h"

#include <array>
#include <bit>
#include <charconv>

namespace kvrpc {
namespace {

/// Takes a number up to `maximum` off the front of `text`.
std::optional<std::uint32_t> takeNumber(std::string_view& text, std::uint32_t maximum) noexcept {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const auto digits = static_cast<std::size_t>(end - text.data());
    const bool leadingZero = digits > 1 && text.front() == '0';
    if (error != std::errc{} || leadingZero || number > maximum) { return {}; }
    text.remove_prefix(digits);
    return number;
}

bool takeLetter(std::string_view& text, char letter) noexcept {
    if (!text.starts_with(letter)) { return false; }
    text.remove_prefix(1);
    return true;
}

std::optional<std::uint32_t> takeAddress(std::string_view& text) noexcept {
    std::array<std::uint8_t, 4> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i > 0 && !takeLetter(text, '.')) { return {}; }
        const auto number = takeNumber(text, 255);
        if (!number) { return {}; }
        bytes[i] = static_cast<std::uint8_t>(*number);
    }
    return std::bit_cast<std::uint32_t>(bytes);
}

} // namespace

std::optional<std::uint32_t> parseIpv4Address(std::string_view text) noexcept {
    const auto address = takeAddress(text);
    return text.empty() ? address : std::nullopt;
}

std::optional<Ipv4Endpoint> parseIpv4Endpoint(std::string_view text) noexcept {
    const auto address = takeAddress(text);
    if (!address || !takeLetter(text, ':')) { return {}; }
    const auto port = takeNumber(text, 65535);
    if (!port || *port == 0 || !text.empty()) { return {}; }
    return Ipv4Endpoint{*address, static_cast<std::uint16_t>(*port)};
}

} // namespace kvrpc
