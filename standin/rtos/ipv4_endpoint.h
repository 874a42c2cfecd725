// The text form of device addresses, "a.b.c.d:port".
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

struct Ipv4Endpoint {
    std::uint32_t address{}; // as it lies in memory in network order
    std::uint16_t port{};    // 1 to 65535, in host order
};

/// Four numbers from 0 to 255 and a port from 1 to 65535, in decimal digits without leading zeros and without anything
/// around them; none for any other text.
std::optional<Ipv4Endpoint> parseIpv4Endpoint(std::string_view text) noexcept;
