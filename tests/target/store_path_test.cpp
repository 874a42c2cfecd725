#include "target/store_path.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

namespace simulated_target {
namespace {

TEST(StorePath, IsNoneForWhatWouldLeaveTheStoreOrIsNoNameOnSomeSystem) {
    const std::string bad[] = {
        "",
        ".",
        "..",
        "...",
        "./a",
        "../a",
        "a/..",
        "a/../b",
        "a/../../b",
        "..\\a",
        "a\\..\\..\\b",
        "a\\../b",
        "/",
        "/a",
        "/etc/pass",
        "\\",
        "\\a",
        "\\\\server\\share",
        "//a",
        "a//b",
        "a\\\\b",
        "a/",
        "a\\",
        "a/.",
        "a/./b",
        "C:",
        "C:a",
        "C:\\a",
        "c:/a",
        "a:stream",
        "\\\\?\\C:\\a",
        "\\\\.\\NUL",
        "a\0b"s,
        "\0"s,
        "a/\0"s,
        "a\nb",
        "a\x1f",
        "a.",
        "a ",
        "a /b",
        "a./b",
        "CON",
        "nul",
        "Aux.txt",
        "a/prn/b",
        "COM1",
        "lpt9.x",
        "nul .txt",
        "conin$",
        ".kvtarget-stage-1",
        "a/.kvtarget-stage-",
        std::string(256, 'a'),
        std::string(2049, 'a'),
    };
    for (const std::string& text : bad) {
        EXPECT_FALSE(parseStorePath(text)) << testing::PrintToString(text);
    }
}

TEST(StorePath, HasANamePerDirectory) {
    const std::pair<std::string, StorePath> good[] = {
        {"a", {"a"}},
        {"a/b", {"a", "b"}},
        {"a\\b/c", {"a", "b", "c"}},
        {"..a/a..b/.a", {"..a", "a..b", ".a"}},
        {"CONSOLE/COM10/com/nullify", {"CONSOLE", "COM10", "com", "nullify"}},
        {"Gr\xC3\xB6\xC3\x9F"
         "e/ a",
         {"Gr\xC3\xB6\xC3\x9F"
          "e",
          " a"}},
        {std::string(255, 'a'), {std::string(255, 'a')}},
    };
    for (const auto& [text, path] : good) {
        EXPECT_EQ(parseStorePath(text), path) << text;
    }
}

TEST(StoreName, IsASingleName) {
    EXPECT_TRUE(isStoreName("model.x86"));
    for (const char* const text : {"a/b", "a\\b", "/", "..", "", "C:"}) {
        EXPECT_FALSE(isStoreName(text)) << text;
    }
}

} // namespace
} // namespace simulated_target
