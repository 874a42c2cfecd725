#include "simulator/store_path.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace simulated_target {
namespace {

constexpr std::size_t kLongestName = 255;
constexpr std::size_t kLongestPath = 2048; // leaves room for the root in what systems take as a path
constexpr std::string_view kSeparators = "/\\";

/// Names of devices on some systems, there also in front of an extension.
constexpr std::array<std::string_view, 6> kDevices{"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
constexpr std::array<std::string_view, 2> kNumberedDevices{"COM", "LPT"};

bool sameLetters(std::string_view text, std::string_view capitals) noexcept {
    return std::equal(text.begin(), text.end(), capitals.begin(), capitals.end(), [](char letter, char capital) {
        return std::toupper(static_cast<unsigned char>(letter)) == capital;
    });
}

bool namesDevice(std::string_view name) noexcept {
    std::string_view stem = name.substr(0, name.find('.'));
    while (stem.ends_with(' ')) {
        stem.remove_suffix(1);
    }
    const auto isStem = [&](std::string_view device) { return sameLetters(stem, device); };
    if (std::any_of(kDevices.begin(), kDevices.end(), isStem)) { return true; }
    if (stem.size() != 4 || stem[3] < '0' || stem[3] > '9') { return false; }
    stem.remove_suffix(1);
    return std::any_of(kNumberedDevices.begin(), kNumberedDevices.end(), isStem);
}

bool isForbidden(char character) noexcept {
    return static_cast<unsigned char>(character) < 0x20 || character == ':' ||
           kSeparators.find(character) != std::string_view::npos;
}

} // namespace

bool isStoreName(std::string_view text) noexcept {
    if (text.empty() || text.size() > kLongestName) { return false; }
    if (text.ends_with('.') || text.ends_with(' ')) { return false; } // "." and ".." among them
    if (text.starts_with(kStagePrefix) || namesDevice(text)) { return false; }
    return std::none_of(text.begin(), text.end(), isForbidden);
}

std::optional<StorePath> parseStorePath(std::string_view text) {
    if (text.size() > kLongestPath) { return {}; }
    StorePath path;
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = text.find_first_of(kSeparators);
        const std::string_view name = text.substr(0, end);
        if (!isStoreName(name)) { return {}; }
        path.emplace_back(name);
        if (end != std::string_view::npos) { text.remove_prefix(end + 1); }
    }
    return path;
}

} // namespace simulated_target
