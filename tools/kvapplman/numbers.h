// Numbers as users write them: decimal, or hexadecimal behind 0x.
#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tool {

/// The whole text as a number; none when it is anything else, or too large.
template <class Number>
std::optional<Number> numberFrom(std::string_view text) {
    constexpr int kDecimal = 10;
    constexpr int kHexadecimal = 16;
    const bool hexadecimal = text.substr(0, 2) == "0x" || text.substr(0, 2) == "0X";
    if (hexadecimal) { text.remove_prefix(2); }
    Number number = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, number, hexadecimal ? kHexadecimal : kDecimal);
    if (parsed.ec != std::errc{} || parsed.ptr != end || (hexadecimal && text.front() == '-')) { return {}; }
    return number;
}

inline std::optional<std::uint32_t> wordFrom(std::string_view text) { return numberFrom<std::uint32_t>(text); }

} // namespace tool
