#include "transfer/text.h"

#include "platform/host_system.h"

namespace applman {

std::u16string utf8ToWide(const char* text) { return text == nullptr ? u"" : host_system::utf16FromUtf8(text); }

std::string wideToUtf8(const char16_t* text) { return text == nullptr ? "" : host_system::utf8FromUtf16(text); }

std::string wideToMessageText(const char16_t* text) { return wideToUtf8(text); }

} // namespace applman
