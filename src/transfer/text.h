// Text conversions between UTF-8 at the boundary and UTF-16 inside. A null text is the empty text.
#pragma once

#include <string>

namespace applman {

std::u16string utf8ToWide(const char* text);
std::string wideToUtf8(const char16_t* text);

/// For paths and names that are quoted in messages; messages are UTF-8.
std::string wideToMessageText(const char16_t* text);

} // namespace applman
