// What only POSIX trees hold: links of any kind, pipes, names and depths that other systems do not have.
#include "transfer/file_transfer.h"

#include <cerrno>
#include <functional>

#include <dirent.h>
#include <pthread.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "support/pool.h"
#include "transfer/file_transfer_double.h"
#include "transfer/host_path.h"
#include "transfer/temporary_tree.h"
#include "transfer/text.h"

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

using Texts = std::vector<std::string>;

class TreeOnPosix : public testing::Test {
protected:
    TreeOnPosix() { channel = {}; }
    ~TreeOnPosix() override { EXPECT_EQ(channel.clients, 0); }

    Status sendTree() {
        return copyDirToTarget(pool, channel.device(), nullptr, tree.path().c_str(), "/dir", 0, nullptr);
    }
    std::string message(const std::string& name = "") { return wideToMessageText(tree.path(name).c_str()); }
    void link(const std::string& target, const std::string& name) const {
        std::filesystem::create_symlink(target, tree.root / name);
    }

    TemporaryTree tree;
    Pool pool;
};

TEST_F(TreeOnPosix, LinksAreFollowed) {
    TemporaryTree elsewhere;
    elsewhere.file("f", 70);
    link((elsewhere.root / "f").string(), "file");
    EXPECT_EQ(getDirectorySize(tree.path()), 70U);
    EXPECT_EQ(sendTree(), Status::ok);
    EXPECT_EQ(channel.calls, (Texts{"create", "put /dir/file", "delete"}));

    std::filesystem::remove(tree.root / "file");
    link(elsewhere.root.string(), "directory");
    channel = {};
    EXPECT_EQ(getDirectorySize(tree.path()), 70U);
    EXPECT_EQ(sendTree(), Status::ok);
    EXPECT_EQ(channel.calls, (Texts{"create", "make /dir|directory", "put /dir/directory/f", "delete"}));
}

TEST_F(TreeOnPosix, ALinkBackToADirectoryOnTheWayCannotBeEnumerated) {
    std::filesystem::create_directories(tree.root / "a/b");
    link("../..", "a/b/back");
    EXPECT_EQ(getDirectorySize(tree.path()), 0U);
    EXPECT_EQ(sendTree(), Status::transfer);
    EXPECT_EQ(channel.calls, (Texts{"create", "make /dir|a", "make /dir/a|b", "make /dir/a/b|back", "delete"}));
    EXPECT_EQ(messagesOf(pool), Texts{"12500058 copyDirToTarget " + message("a/b/back")});
}

TEST_F(TreeOnPosix, OneDirectoryMayBeReachedOnTwoWays) {
    std::filesystem::create_directories(tree.root / "a");
    link("a", "b");
    EXPECT_EQ(sendTree(), Status::ok);
}

TEST_F(TreeOnPosix, WhatIsNoFileFailsAsATransfer) {
    ASSERT_EQ(::mkfifo((tree.root / "pipe").c_str(), 0600), 0);
    link("nowhere", "dangling");
    EXPECT_EQ(getDirectorySize(tree.path()), 0U);
    for (int i = 0; i < 2; ++i) { // in whatever order the directory delivers them
        pool->reset();
        EXPECT_EQ(sendTree(), Status::transfer);
        const Texts messages = messagesOf(pool);
        ASSERT_EQ(messages.size(), 1U);
        EXPECT_TRUE(messages[0].starts_with("1250000d copyBinaryToTarget transfer ")) << messages[0];
        EXPECT_TRUE(std::filesystem::remove(tree.root / messages[0].substr(messages[0].rfind(' ') + 1)));
    }
    EXPECT_EQ(sendTree(), Status::ok);
}

TEST_F(TreeOnPosix, AHostNameThatHoldsABackslashCannotBeReached) {
    tree.file("a\\b", 9);
    tree.file("a/b", 9); // which is not what is meant
    EXPECT_EQ(sendTree(), Status::transfer);
    EXPECT_FALSE(isPathOfKind(tree.path("a\\c"), true));
}

TEST_F(TreeOnPosix, ADirectoryThatCannotBeReadToItsEndFailsAfterWhatWasRead) {
    tree.file("f", 1);
    readableEntries = 3;
    EXPECT_EQ(sendTree(), Status::transfer);
    readableEntries = -1;
    EXPECT_EQ(channel.calls, (Texts{"create", "put /dir/f", "delete"}));
    EXPECT_EQ(messagesOf(pool), Texts{"1250005a copyDirToTarget " + message() + ' ' + std::to_string(EIO)});
}

/// Every directory is put into a new one above it, so that no path gets long.
void deepen(const std::filesystem::path& root, int levels) {
    for (int i = 0; i < levels; ++i) {
        std::filesystem::create_directory(root / "above");
        std::filesystem::rename(root / "d", root / "above/d");
        std::filesystem::rename(root / "above", root / "d");
    }
}

void flatten(const std::filesystem::path& root, int levels) {
    for (int i = 0; i < levels; ++i) {
        std::filesystem::rename(root / "d/d", root / "below");
        std::filesystem::remove(root / "d");
        std::filesystem::rename(root / "below", root / "d");
    }
}

/// Runs `work` on a thread whose stack would not hold a frame for each of thousands of levels.
void onASmallStack(const std::function<void()>& work) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 256 * 1024);
    pthread_t thread{};
    const auto run = [](void* argument) -> void* {
        (*static_cast<const std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&work)), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

TEST_F(TreeOnPosix, AThousandsOfLevelsDeepTreeIsSent) {
    constexpr int kLevels = 2500; // its path is longer than the system takes at once
    tree.file("d/f", 3);
    deepen(tree.root, kLevels);
    std::uint64_t size = 0;
    Status status = Status::transfer;
    onASmallStack([&] {
        size = getDirectorySize(tree.path());
        status = sendTree();
    });
    flatten(tree.root, kLevels);
    EXPECT_EQ(size, 3U);
    EXPECT_EQ(status, Status::ok);
    ASSERT_EQ(channel.calls.size(), 1U + (kLevels + 1) + 1 + 1);
    EXPECT_EQ(channel.calls[kLevels + 2].size(), std::string{"put /dir"}.size() + 2 * (kLevels + 1) + 2);
    EXPECT_EQ(messagesOf(pool), Texts{});
}

} // namespace
} // namespace applman
