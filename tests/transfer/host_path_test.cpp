#include "transfer/host_path.h"

#include <limits>

#include <gtest/gtest.h>

#include "transfer/temporary_tree.h"
#if !defined(_WIN32)
#include "support/time_zone.h"
#endif

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
    const std::u16string prefixed = u"\\\\?\\C:\\" + std::u16string(300, u'a');
    EXPECT_EQ(normalizeHostPath(prefixed.c_str()), prefixed);
}

TEST(HostPath, IsResolvedFromTheWorkingDirectory) {
    const std::u16string base = workingDirectory();
    const std::pair<const char16_t*, std::u16string> paths[] = {
        {u"x.bin", base + u"\\x.bin"},
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

TEST(HostPath, TellsFilesFromDirectoriesAndFromNothing) {
    TemporaryTree tree;
    tree.file("f", 5);
    EXPECT_TRUE(isPathOfKind(tree.path("f"), true));
    EXPECT_FALSE(isPathOfKind(tree.path("f"), false));
    EXPECT_FALSE(isPathOfKind(tree.path(), true));
    EXPECT_TRUE(isPathOfKind(tree.path(), false));
    EXPECT_FALSE(isPathOfKind(tree.path("missing"), true));
    EXPECT_FALSE(isPathOfKind(u"", false));
}

TEST(HostPath, SizesAreThoseOfFiles) {
    TemporaryTree tree;
    tree.file("f", 5);
    tree.file("sub/g", 70);
    tree.file("sub/deeper/h", 900);
    EXPECT_EQ(getFileSize(tree.path("f")), 5U);
    EXPECT_EQ(getFileSize(tree.path("sub")), 0U);
    EXPECT_EQ(getFileSize(tree.path("missing")), 0U);
    EXPECT_EQ(getDirectorySize(tree.path()), 975U);
    EXPECT_EQ(getDirectorySize(tree.path("f")), 0U);
    EXPECT_EQ(getDirectorySize(u""), 0U);
}

TEST(HostPath, FilesBeyondThePlainPathLimitAreReached) {
    TemporaryTree tree;
    const std::string segment(200, 'd');
    const std::u16string wide(200, u'd');
    std::filesystem::current_path(tree.root);
    tree.file(segment + "/f", 7);
    std::filesystem::create_directory(tree.root / segment / segment);
    const std::u16string path = normalizeHostPath((wide + u'\\' + wide).c_str());
    EXPECT_TRUE(path.starts_with(u"\\\\?\\"));
    EXPECT_TRUE(isPathOfKind(path, false));
    EXPECT_EQ(getDirectorySize(tree.path()), 7U);
    std::filesystem::current_path(tree.root.parent_path());
}

struct Split {
    std::string path, directory, name;
};

TEST(HostPath, IsSplitAtTheLastBackslash) {
    const std::string accented = "\xC3\xA4"; // two bytes
    std::string accents;
    for (int i = 0; i < 130; ++i) {
        accents += accented;
    }
    const std::string limit(258, 'n');
    const Split splits[] = {
        {"D:\\appl\\model.x86", "D:\\appl", "model.x86"},
        {"D:\\model.x86", "D:\\", "model.x86"},
        {"sub\\name.x86", "sub", "name.x86"},
        {"name.x86", "", "name.x86"},
        {"dir\\", "dir", ""},
        {"\\name", "", "name"},
        {"a/b", "", "a/b"},
        {"", "", ""},
        {limit + '\\' + limit, limit, limit},
        {limit + "x\\" + limit + "x", limit, limit},
        {'x' + accents + "\\x" + accents, 'x' + accents.substr(0, 256), 'x' + accents.substr(0, 256)},
    };
    for (const Split& split : splits) {
        EXPECT_EQ(extractDirectory(split.path), split.directory) << split.path;
        EXPECT_EQ(extractFileName(split.path), split.name) << split.path;
    }
}

TEST(HostPath, TheModificationTimeOfAMissingFileIsZero) {
    TemporaryTree tree;
    tree.file("f", 1);
    const auto now = std::filesystem::file_time_type::clock::now();
    std::filesystem::last_write_time(tree.root / "f", now - std::chrono::hours{1});
    const std::int64_t anHourAgo = std::time(nullptr) - 3600;
    EXPECT_NEAR(static_cast<double>(getFileModificationTime((tree.root / "f").string())),
                static_cast<double>(anHourAgo), 10.0);
    EXPECT_EQ(getFileModificationTime((tree.root / "missing").string()), 0);
}

#if !defined(_WIN32)
TEST(HostPath, ATimeIsWrittenAsLocalTime) {
    const TimeZone hosts{"STD-1"};
    const std::pair<std::int64_t, const char*> times[] = {
        {0, "1970-01-01 01:00:00"},
        {-7200, "1969-12-31 23:00:00"},
        {253'402'297'200, "10000-01-01 00:00:00"},
        {std::numeric_limits<std::int64_t>::max(), "1970-01-01 01:00:00"}, // has no calendar time
    };
    for (const auto& [time, text] : times) {
        EXPECT_EQ(formatLocalTime(time), text);
    }
}
#endif

} // namespace
} // namespace applman
