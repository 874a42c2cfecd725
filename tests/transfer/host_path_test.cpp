#include "transfer/host_path.h"

#include "transfer/temporary_tree.h"

namespace applman {
namespace {

std::u16string workingDirectory() { return normalizeHostPath(u"."); }

TEST(HostPath, GetsTheLongPathPrefixFrom260CharactersOn) {
    const std::u16string base = workingDirectory() + u'\\';
    const std::u16string network = u"\\\\server\\share\\";
    for (const std::size_t length : {259U, 260U}) {
        const std::u16string prefix = length < 260 ? u"" : u"\\\\?\\";
        const std::u16string networkPrefix = length < 260 ? u"\\\\" : u"\\\\?\\UNC\\";
        const std::u16string local = base + std::u16string(length - base.size(), u'a');
        const std::u16string remote = network + std::u16string(length - network.size(), u'a');
        EXPECT_EQ(normalizeHostPath(local.c_str()), prefix + local);
        EXPECT_EQ(normalizeHostPath(remote.c_str()), networkPrefix + remote.substr(2));
    }
}

TEST(HostPath, IsResolvedFromTheWorkingDirectory) {
    const std::u16string base = workingDirectory();
    const std::pair<const char16_t*, std::u16string> paths[] = {
        {u"a/b\\c", base + u"\\a\\b\\c"},
        {u".\\a\\.\\b\\..\\c", base + u"\\a\\c"},
        {u"a\\", base + u"\\a\\"},
        {u"a\\\\b", base + u"\\a\\b"},
        {u"\\\\server\\share\\..\\..\\x", u"\\\\server\\share\\x"},
        {nullptr, u""},
        {u"", u""},
    };
    for (const auto& [given, expected] : paths) {
        EXPECT_EQ(normalizeHostPath(given), expected);
    }
}

TEST(HostPath, OnlyFilesHaveSizesAndOnlyDirectoriesHaveThoseOfTheirFiles) {
    TemporaryTree tree;
    tree.file("f", 5);
    tree.file("sub/deeper/h", 900);
    EXPECT_TRUE(isPathOfKind(tree.path("f"), true) && !isPathOfKind(tree.path("f"), false));
    EXPECT_TRUE(isPathOfKind(tree.path(), false) && !isPathOfKind(tree.path(), true));
    EXPECT_FALSE(isPathOfKind(tree.path("missing"), true) || isPathOfKind(u"", false));
    EXPECT_EQ(getFileSize(tree.path("f")), 5U);
    EXPECT_EQ(getFileSize(tree.path("sub")), 0U);
    EXPECT_EQ(getDirectorySize(tree.path()), 905U);
    EXPECT_EQ(getDirectorySize(tree.path("f")), 0U);
}

TEST(HostPath, IsSplitAtTheLastBackslash) {
    struct Split {
        std::string path, directory, name;
    };
    std::string accents;
    for (int i = 0; i < 130; ++i) {
        accents += "\xC3\xA4"; // two bytes
    }
    const std::string cut = 'x' + accents.substr(0, 256);
    const std::string limit(258, 'n');
    const Split splits[] = {
        {"D:\\appl\\model.x86", "D:\\appl", "model.x86"},
        {"D:\\model.x86", "D:\\", "model.x86"},
        {"dir\\", "dir", ""},
        {"\\name", "", "name"},
        {"a/b", "", "a/b"},
        {limit + '\\' + limit, limit, limit},
        {limit + "x\\" + limit + "x", limit, limit},
        {'x' + accents + "\\x" + accents, cut, cut},
    };
    for (const Split& split : splits) {
        EXPECT_EQ(extractDirectory(split.path), split.directory) << split.path;
        EXPECT_EQ(extractFileName(split.path), split.name) << split.path;
    }
}

} // namespace
} // namespace applman
