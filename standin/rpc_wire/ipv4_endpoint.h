// The text forms of IPv4 addresses, "a.b.c.d", and of device addresses, "a.b.c.d:port": four numbers from 0 to 255 and a
// port from 1 to 65535, in decimal digits without leading zeros and without anything around them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace kvrpc {

struct Ipv4Endpoint {
    std::uint32_t address{}; // as it lies in memory in network order
    std::uint16_t port{};    // in host order
};

/// None for any other text. The address as it lies in memory in network order.
std::optional<std::uint32_t> parseIpv4Address(std::string_view text) noexcept;
std::optional<Ipv4Endpoint> parseIpv4Endpoint(std::string_view text) noexcept;

} // namespace kvrpc
