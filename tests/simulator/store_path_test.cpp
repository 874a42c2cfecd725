#include "simulator/store_path.h"

#include <sstream>

#include <gtest/gtest.h>

using namespace std::string_literals;

namespace simulated_target {
namespace {

TEST(StorePath, IsNoneForWhatWouldLeaveTheStoreOrIsNoNameOnSomeSystem) {
    std::istringstream table{
        R"(|.|..|...|./a|../a|a/..|a/../b|a/../../b|..\a|a\..\..\b|a\../b|/|/a|/etc/pass|\|\a|\\server\share|//a|a//b|a\\b|)"
        R"(a/|a\|a/.|a/./b|C:|C:a|C:\a|c:/a|a:stream|\\?\C:\a|\\.\NUL|a.|a |a /b|a./b|CON|nul|Aux.txt|a/prn/b|COM1|lpt9.x|)"
        R"(nul .txt|conin$|.kvtarget-stage-1|a/.kvtarget-stage-)"};
    std::vector<std::string> bad{
        "a\0b"s, "\0"s, "a/\0"s, "a\nb", "a\x1f", std::string(256, 'a'), std::string(2049, 'a')};
    for (std::string text; std::getline(table, text, '|');) {
        bad.push_back(text);
    }
    ASSERT_EQ(bad.size(), 53U);
    for (const std::string& text : bad) {
        EXPECT_FALSE(parseStorePath(text)) << testing::PrintToString(text);
    }
}

TEST(StorePath, HasANamePerDirectory) {
    const std::pair<std::string, StorePath> good[] = {
        {"a\\b/c", {"a", "b", "c"}},
        {"..a/a..b/.a/ a", {"..a", "a..b", ".a", " a"}},
        {"CONSOLE/COM10/Gr\u00f6\u00dfe", {"CONSOLE", "COM10", "Gr\u00f6\u00dfe"}},
        {std::string(255, 'a'), {std::string(255, 'a')}}};
    for (const auto& [text, path] : good) {
        EXPECT_EQ(parseStorePath(text), path) << text;
    }
}

} // namespace
} // namespace simulated_target
