// Texts that the programs print.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

inline std::string joined(const std::vector<std::uint32_t>& numbers) {
    std::string text;
    for (const std::uint32_t number : numbers)
        text += (text.empty() ? "" : ", ") + std::to_string(number);
    return text;
}
