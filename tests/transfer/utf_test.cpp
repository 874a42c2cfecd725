#include <gtest/gtest.h>

#include "transfer/text.h"

namespace applman {
namespace {

struct Text {
    const char* utf8;
    const char16_t* utf16;
};

TEST(Text, IsConvertedBothWays) {
    const Text texts[] = {
        {"", u""},
        {"\x7F\xC2\x80\xDF\xBF", u"\u007F\u0080\u07FF"},
        {"\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", u"\u0800\uD7FF\uE000\uFFFF"},
        {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\U00010000\U0010FFFF"},
    };
    for (const Text& text : texts) {
        EXPECT_EQ(utf8ToWide(text.utf8), text.utf16) << text.utf8;
        EXPECT_EQ(wideToUtf8(text.utf16), text.utf8);
        EXPECT_EQ(wideToMessageText(text.utf16), text.utf8);
    }
}

TEST(Text, ReplacesEachMaximalPartOfWhatIsMalformed) {
    const Text texts[] = {
        {"a\x80z", u"a\uFFFDz"},                                         // nothing to continue
        {"\xC0\xAF", u"\uFFFD\uFFFD"},                                   // overlong, as all leads of it are
        {"\xE0\x80\xAF", u"\uFFFD\uFFFD\uFFFD"},                         // overlong
        {"\xF0\x8F\xBF\xBF", u"\uFFFD\uFFFD\uFFFD\uFFFD"},               // overlong
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},                         // a surrogate
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},               // beyond U+10FFFF
        {"\xF5\xFF", u"\uFFFD\uFFFD"},                                   // never leads
        {"\xE1\x80\xE2\xF0\x91\x92\xF1z", u"\uFFFD\uFFFD\uFFFD\uFFFDz"}, // broken off one after the other
        {"\xE2\x82", u"\uFFFD"},                                         // ends early
    };
    for (const Text& text : texts) {
        EXPECT_EQ(utf8ToWide(text.utf8), text.utf16);
    }
    const char16_t surrogates[] = {0xDC00, 0xD800, u'a', 0xD800, 0};
    EXPECT_EQ(wideToUtf8(surrogates), "\xEF\xBF\xBD\xEF\xBF\xBD\x61\xEF\xBF\xBD");
}

} // namespace
} // namespace applman
