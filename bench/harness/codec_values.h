// What is encoded and decoded.
#pragma once

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

namespace bench {

inline constexpr std::size_t kTextLength = 20; // characters

inline std::vector<std::uint32_t> manyWords() {
    std::vector<std::uint32_t> words(1'000'000);
    std::iota(words.begin(), words.end(), 0x01020304U);
    return words;
}

inline std::vector<std::string> manyTexts() {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < 100'000; ++i) {
        std::string number = std::to_string(i);
        texts.push_back(std::string(kTextLength - number.size(), 'x') + number);
    }
    return texts;
}

inline std::vector<std::uint8_t> manyBytes() {
    std::vector<std::uint8_t> bytes(std::size_t{16} << 20);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    return bytes;
}

} // namespace bench
