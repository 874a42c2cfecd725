// Conversion between UTF-8 and UTF-16. What is malformed is replaced once for each maximal part of a sequence.
#include "platform/host_system.h"

namespace host_system {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kMalformed = 0xFFFFFFFF; // no code point

/// What a lead byte announces: how many bytes follow, and the range of the first of them (the others: 80 to BF).
struct Lead {
    char32_t bits;
    int following;
    std::uint8_t low = 0x80;
    std::uint8_t high = 0xBF;
};

std::optional<Lead> leadOf(std::uint8_t byte) {
    if (byte < 0x80) { return Lead{byte, 0}; }
    if (byte < 0xC2) { return {}; }
    if (byte < 0xE0) { return Lead{byte & 0x1FU, 1}; }
    if (byte == 0xE0) { return Lead{0x0, 2, 0xA0, 0xBF}; } // no overlong forms
    if (byte == 0xED) { return Lead{0xD, 2, 0x80, 0x9F}; } // no surrogates
    if (byte < 0xF0) { return Lead{byte & 0x0FU, 2}; }
    if (byte == 0xF0) { return Lead{0x0, 3, 0x90, 0xBF}; } // no overlong forms
    if (byte < 0xF4) { return Lead{byte & 0x07U, 3}; }
    if (byte == 0xF4) { return Lead{0x4, 3, 0x80, 0x8F}; } // nothing beyond U+10FFFF
    return {};
}

/// Takes one code point off `text`, or the maximal part of a malformed one.
char32_t takeCodePoint(std::string_view& text) {
    const std::optional<Lead> lead = leadOf(static_cast<std::uint8_t>(text.front()));
    text.remove_prefix(1);
    if (!lead) { return kMalformed; }
    char32_t point = lead->bits;
    std::uint8_t low = lead->low;
    std::uint8_t high = lead->high;
    for (int i = 0; i < lead->following; ++i) {
        const std::uint8_t byte = text.empty() ? std::uint8_t{0} : static_cast<std::uint8_t>(text.front());
        if (byte < low || byte > high) { return kMalformed; }
        point = point << 6 | (byte & 0x3FU);
        text.remove_prefix(1);
        low = 0x80;
        high = 0xBF;
    }
    return point;
}

bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

char32_t takeCodePoint(std::u16string_view& text) {
    const char32_t first = text.front();
    text.remove_prefix(1);
    if (!isHighSurrogate(first) && !isLowSurrogate(first)) { return first; }
    if (isLowSurrogate(first) || text.empty() || !isLowSurrogate(text.front())) { return kMalformed; }
    const char32_t second = text.front();
    text.remove_prefix(1);
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

void append(std::u16string& text, char32_t point) {
    if (point < 0x10000) {
        text.push_back(static_cast<char16_t>(point));
        return;
    }
    text.push_back(static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10)));
    text.push_back(static_cast<char16_t>(0xDC00 + (point & 0x3FF)));
}

void append(std::string& text, char32_t point) {
    const auto continuation = [&](int shift) { text.push_back(static_cast<char>(0x80 | (point >> shift & 0x3F))); };
    if (point < 0x80) {
        text.push_back(static_cast<char>(point));
    } else if (point < 0x800) {
        text.push_back(static_cast<char>(0xC0 | point >> 6));
        continuation(0);
    } else if (point < 0x10000) {
        text.push_back(static_cast<char>(0xE0 | point >> 12));
        continuation(6);
        continuation(0);
    } else {
        text.push_back(static_cast<char>(0xF0 | point >> 18));
        continuation(12);
        continuation(6);
        continuation(0);
    }
}

template <class Target, class Source>
Target converted(Source text, char32_t replacement) {
    Target result;
    result.reserve(text.size());
    while (!text.empty()) {
        const char32_t point = takeCodePoint(text);
        append(result, point == kMalformed ? replacement : point);
    }
    return result;
}

} // namespace

std::u16string pathFromUtf8(std::string_view path) { return converted<std::u16string>(path, kLeadsNowhere); }
std::u16string utf16FromUtf8(std::string_view text) { return converted<std::u16string>(text, kReplacement); }
std::string utf8FromUtf16(std::u16string_view text) { return converted<std::string>(text, kReplacement); }

} // namespace host_system
