// The file-transfer program and the store behind it.
#include <limits>

#include "target/target_calls.h"

namespace simulated_target {
namespace {

using namespace file_transfer;
namespace fs = std::filesystem;

using FileTransfer = TargetCalls;

TEST_F(FileTransfer, AnAnnouncedSizeThatIsNotKeptLeavesTheOldFile) {
    struct Lie {
        std::uint64_t size, offset; // of a second write, after "abc" at 0
        std::int32_t written, committed;
    };
    constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
    const Lie lies[] = {
        {2, 3, kEarlierFailure, kEarlierFailure}, // "abc" is too much already
        {3, 3, kBadOffset, kEarlierFailure},      // beyond the end
        {9, 4, kBadOffset, kEarlierFailure},      // a gap
        {9, 2, kBadOffset, kEarlierFailure},      // again
        {9, kMost, kBadOffset, kEarlierFailure},  {9, 3, kDone, kIncomplete}, {kMost, 3, kDone, kIncomplete},
    };
    ASSERT_EQ(put("d", "file", "old"), kDone);
    for (const Lie& lie : lies) {
        EXPECT_EQ(open("d", "file", lie.size), kDone);
        EXPECT_EQ(write(0, "abc"), lie.size < 3 ? kBadOffset : kDone);
        EXPECT_EQ(write(lie.offset, "x"), lie.written) << lie.size << " " << lie.offset;
        EXPECT_EQ(commit(), lie.committed) << lie.size << " " << lie.offset;
        EXPECT_EQ(commit(), kNoSuchTransfer);
        EXPECT_EQ(contentOf(root() / "d/file"), "old");
        EXPECT_EQ(treeOf(root() / "d"), (std::set<std::string>{"file"}));
    }
}

TEST_F(FileTransfer, NoLinkInTheStoreLeadsOutOfIt) {
#if defined(_WIN32)
    GTEST_SKIP() << "makes links as on POSIX";
#endif
    service();
    fs::create_directories(aroundRoot() / "outside");
    std::ofstream{aroundRoot() / "outside/file"} << "precious";
    fs::create_directory_symlink("../outside", root() / "directory");
    fs::create_directories(root() / "d");
    fs::create_symlink("../../outside/file", root() / "d/file");
    fs::create_directory_symlink("../../outside", root() / "d/.kvtarget-stage-1");

    EXPECT_EQ(open("directory", "new", 0), kStoreFailed);
    EXPECT_EQ(open("directory/deeper", "new", 0), kStoreFailed);
    EXPECT_EQ(transfer(kMakeDirectory, MakeDirectoryRequest{"directory", "new"}), kStoreFailed);
    EXPECT_EQ(put("d", "file", "new"), kDone); // takes the link's place
    EXPECT_FALSE(fs::is_symlink(root() / "d/file"));
    EXPECT_EQ(contentOf(root() / "d/file"), "new");
    std::ofstream{root() / "d/.kvtarget-stage-2"} << "half";
    restart(); // sweeps
    EXPECT_FALSE(fs::exists(root() / "d/.kvtarget-stage-2"));
    EXPECT_EQ(treeOf(aroundRoot() / "outside"), (std::set<std::string>{"file"}));
    EXPECT_EQ(contentOf(aroundRoot() / "outside/file"), "precious");
}

TEST_F(FileTransfer, WhatIsNotCommittedGoesWithItsConnectionAnAbortOrItsNumber) {
    ASSERT_EQ(open("d", "first", 3, 1), kDone);
    ASSERT_EQ(open("d", "second", 1, 2), kDone);
    service().connectionClosed(1);
    EXPECT_EQ(write(0, "abc", 1), kNoSuchTransfer);
    EXPECT_EQ(write(0, "x", 2), kDone);
    EXPECT_EQ(commit(2), kDone);
    EXPECT_EQ(treeOf(root() / "d"), std::set<std::string>{"second"});

    ASSERT_EQ(open("d", "third", 3), kDone);
    EXPECT_EQ(transfer(kAbort, TransferRequest{7}), kDone);
    EXPECT_EQ(transfer(kAbort, TransferRequest{7}), kNoSuchTransfer);
    EXPECT_EQ(treeOf(root() / "d"), std::set<std::string>{"second"});

    ASSERT_EQ(open("d", "fourth", 3), kDone);
    EXPECT_EQ(put("d", "fifth", "x"), kDone);
    EXPECT_EQ(treeOf(root() / "d"), (std::set<std::string>{"second", "fifth"}));
}

TEST_F(FileTransfer, AConnectionHasNoMoreThanSixtyFourTransfersAtOnce) {
    const auto openAs = [&](std::uint32_t number) {
        return transfer(kOpen, OpenRequest{number, 1, "d", std::to_string(number)});
    };
    for (std::uint32_t number = 0; number < 64; ++number) {
        ASSERT_EQ(openAs(number), kDone);
    }
    EXPECT_EQ(openAs(64), kStoreFailed);
    EXPECT_EQ(transfer(kAbort, TransferRequest{3}), kDone);
    EXPECT_EQ(openAs(64), kDone);
}

} // namespace
} // namespace simulated_target
