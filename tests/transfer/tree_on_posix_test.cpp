// What only POSIX trees hold: links of any kind, pipes, names and depths that other systems do not have.
#include "transfer/file_transfer_double.h"

#include <cerrno>

#include <dirent.h>
#include <sys/stat.h>

namespace {

int readableEntries = -1; // before directories fail with EIO; negative = all

} // namespace

extern "C" dirent* __real_readdir(DIR* directory);
extern "C" dirent* __wrap_readdir(DIR* directory);
dirent* __wrap_readdir(DIR* directory) {
    if (readableEntries == 0) {
        errno = EIO;
        return nullptr;
    }
    if (readableEntries > 0) { --readableEntries; }
    return __real_readdir(directory);
}

namespace applman {
namespace {

using TreeOnPosix = FileTransferTest;
using std::filesystem::create_symlink;

TEST_F(TreeOnPosix, LinksAreFollowed) {
    TemporaryTree elsewhere;
    elsewhere.file("f", 70);
    create_symlink(elsewhere.root / "f", tree.root / "file");
    EXPECT_EQ(sendTree(), Status::ok);
    EXPECT_EQ(channel.calls, (Texts{"create", "put /dir/file", "delete"}));

    channel = {};
    std::filesystem::remove(tree.root / "file");
    create_symlink(elsewhere.root, tree.root / "directory");
    EXPECT_EQ(getDirectorySize(tree.path()), 70U);
    EXPECT_EQ(sendTree(), Status::ok);
    EXPECT_EQ(channel.calls, (Texts{"create", "make /dir|directory", "put /dir/directory/f", "delete"}));

    create_symlink("directory", tree.root / "again");
    EXPECT_EQ(sendTree(), Status::ok) << "one directory may be reached on two ways";
}

TEST_F(TreeOnPosix, ALinkBackToADirectoryOnTheWayCannotBeEnumerated) {
    std::filesystem::create_directories(tree.root / "a/b");
    create_symlink("../..", tree.root / "a/b/back");
    EXPECT_EQ(getDirectorySize(tree.path()), 0U);
    EXPECT_EQ(sendTree(), Status::transfer);
    EXPECT_EQ(channel.calls, (Texts{"create", "make /dir|a", "make /dir/a|b", "make /dir/a/b|back", "delete"}));
    EXPECT_EQ(messages(pool), Texts{"copyDirToTarget 0x12500058(" + shown("a/b/back") + ")"});
}

TEST_F(TreeOnPosix, WhatIsNoFileFailsAsATransfer) {
    const auto expectFailure = [&](const std::string& name) {
        pool->reset();
        EXPECT_EQ(getDirectorySize(tree.path()), 0U);
        EXPECT_EQ(sendTree(), Status::transfer);
        EXPECT_EQ(messages(pool),
                  Texts{"copyBinaryToTarget 0x1250000d(transfer," + shown(name) + ",/dir," + name + ")"});
        std::filesystem::remove(tree.root / name);
    };
    ASSERT_EQ(::mkfifo((tree.root / "pipe").c_str(), 0600), 0);
    expectFailure("pipe");
    create_symlink("nowhere", tree.root / "dangling");
    expectFailure("dangling");
}

TEST_F(TreeOnPosix, WhatAHostPathCannotHoldFailsAlsoBesideTheNameThatItIsShownAs) {
    const std::string shownAs = "a\xEF\xBF\xBD"
                                "b";
    for (const std::string name : {"a\xFF"
                                   "b",
                                   "a\\b"}) {
        tree.file(shownAs, 1);
        tree.file(name, 1);
        pool->reset();
        EXPECT_EQ(sendTree(), Status::transfer);
        EXPECT_EQ(messages(pool),
                  Texts{"copyBinaryToTarget 0x1250000d(transfer," + shown(shownAs) + ",/dir," + shownAs + ")"});
        EXPECT_FALSE(isPathOfKind(normalizeHostPath(hostPathOf((tree.root / name).c_str()).c_str()), true));
        std::filesystem::remove(tree.root / name);
        std::filesystem::remove(tree.root / shownAs);
        tree.file(shownAs + "/f", 1);
        tree.file(name + "/f", 1);
        EXPECT_EQ(getDirectorySize(tree.path()), 1U);
        EXPECT_EQ(sendTree(), Status::transfer);
        EXPECT_EQ(messages(pool).back(), "copyDirToTarget 0x12500058(" + shown(shownAs) + ")");
        std::filesystem::current_path(tree.root / name);
        EXPECT_FALSE(isPathOfKind(normalizeHostPath(u"f"), true)) << "nor does a path from there lead anywhere";
        std::filesystem::current_path(tree.root.parent_path());
        std::filesystem::remove_all(tree.root / name);
        std::filesystem::remove_all(tree.root / shownAs);
    }
}

TEST_F(TreeOnPosix, OnlyBackslashesMarkANetworkPath) {
    EXPECT_EQ(normalizeHostPath(u"//a/../a/x"), u"\\a\\x");
    EXPECT_EQ(normalizeHostPath(u"//?/x"), u"\\?\\x");
}

TEST_F(TreeOnPosix, ADirectoryThatCannotBeReadToItsEndFailsAfterWhatWasRead) {
    tree.file("f", 1);
    readableEntries = 3;
    EXPECT_EQ(sendTree(), Status::transfer);
    readableEntries = -1;
    EXPECT_EQ(channel.calls, (Texts{"create", "put /dir/f", "delete"}));
    EXPECT_EQ(messages(pool), Texts{"copyDirToTarget 0x1250005a(" + shown() + ',' + std::to_string(EIO) + ')'});
}

TEST_F(TreeOnPosix, AFileBeyondTheLimitOfPlainPathsIsReached) {
    const std::string name(200, 'n');
    tree.file(name + '/' + name, 7);
    const std::u16string path = tree.path(name + '/' + name);
    EXPECT_TRUE(path.starts_with(u"\\\\?\\"));
    EXPECT_EQ(getFileSize(path), 7U);
}

TEST_F(TreeOnPosix, AThousandsOfLevelsDeepTreeIsSent) {
    constexpr int kLevels = 2500; // its path is longer than the system takes at once
    std::filesystem::current_path(tree.root);
    for (int i = 0; i < kLevels; ++i) {
        std::filesystem::create_directory("d");
        std::filesystem::current_path("d");
    }
    std::ofstream{"f"} << "abc";
    EXPECT_EQ(getDirectorySize(tree.path()), 3U);
    EXPECT_EQ(sendTree(), Status::ok);
    std::filesystem::remove("f");
    for (int i = 0; i < kLevels; ++i) {
        std::filesystem::current_path("..");
        std::filesystem::remove("d");
    }
    std::filesystem::current_path(tree.root.parent_path());
    ASSERT_EQ(channel.calls.size(), 1U + kLevels + 1 + 1);
    EXPECT_EQ(channel.calls[kLevels + 1].size(), std::string{"put /dir"}.size() + 2 * kLevels + 2);
    EXPECT_EQ(messages(pool), Texts{});
}

} // namespace
} // namespace applman
