#include "transfer/file_transfer.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "support/pool.h"
#include "transfer/file_transfer_double.h"
#include "transfer/temporary_tree.h"
#include "transfer/text.h"

namespace applman {
namespace {

using Texts = std::vector<std::string>;

/// "file fraction" of every report.
void keep(const KvTApplManProgress* progress, void* reports) {
    static_cast<Texts*>(reports)->push_back(std::string{progress->fileName} + ' ' +
                                            std::to_string(progress->fraction).substr(0, 4));
}

class FileTransfer : public testing::Test {
protected:
    FileTransfer() { channel = {}; }
    ~FileTransfer() override { EXPECT_EQ(channel.clients, 0); } // whatever was made is deleted

    Status sendFile(const std::string& name, std::uint8_t loadOptions = 0) {
        return copyBinaryToTarget(pool, channel.device(), nullptr, tree.path(name), "/dir", "name", loadOptions,
                                  &tracker);
    }
    Status sendTree(const char* target = "/dir") {
        return copyDirToTarget(pool, channel.device(), nullptr, tree.path().c_str(), target, 0, &tracker);
    }
    std::string message(const std::string& name) { return wideToMessageText(tree.path(name).c_str()); }

    TemporaryTree tree;
    Pool pool;
    Texts reports;
    TApplManProgressTracker tracker{.callback = keep, .userData = &reports, .totalUnits = 1000};
};

TEST_F(FileTransfer, AFileIsSentAndCountedOnce) {
    tree.file("f", 500);
    EXPECT_EQ(sendFile("f"), Status::ok);
    EXPECT_EQ(channel.calls, (Texts{"create", "put /dir/name", "delete"}));
    EXPECT_EQ(reports, (Texts{"f 0.00", "f 0.25", "f 0.50", "f 0.50"}));
    EXPECT_EQ(tracker.doneUnits, 500U);
}

TEST_F(FileTransfer, LoadOptionsAreRefusedAfterTheFileWasNamed) {
    tree.file("f", 500);
    EXPECT_EQ(sendFile("f", 18), Status::transfer);
    EXPECT_EQ(channel.calls, Texts{});
    EXPECT_EQ(reports, Texts{"f 0.00"});
    EXPECT_EQ(messagesOf(pool), Texts{"12500031 copyBinaryToTarget 18"});

    EXPECT_EQ(copyDirToTarget(pool, channel.device(), nullptr, tree.path().c_str(), "/dir", 18, &tracker),
              Status::transfer);
    EXPECT_EQ(messagesOf(pool).at(1), "12500031 copyDirToTarget 18");
    EXPECT_EQ(reports.size(), 1U);
}

struct Failure {
    Texts refused, messages;
    Status status;
    std::uint64_t counted;
};

TEST_F(FileTransfer, EveryFailureOfASingleFileKeepsItsStatus) {
    tree.file("f", 500);
    const std::string notSent = "1250000d copyBinaryToTarget transfer " + message("f") + " /dir name";
    const std::string notDeleted = "1250000c deleteFTHandle";
    const Failure failures[] = {
        {{"create"}, {"1250000b createFTHandle"}, Status::ftCreate, 0},
        {{"put /dir/name"}, {notSent}, Status::transfer, 500},
        {{"delete"}, {notDeleted}, Status::ftDelete, 500},
        {{"put /dir/name", "delete"}, {notSent, notDeleted}, Status::transfer, 500},
    };
    for (const Failure& failure : failures) {
        channel = {};
        pool->reset();
        tracker.doneUnits = 0;
        for (const std::string& call : failure.refused) {
            channel.results[call] = -7;
        }
        EXPECT_EQ(sendFile("f"), failure.status);
        EXPECT_EQ(messagesOf(pool), failure.messages);
        EXPECT_EQ(tracker.doneUnits, failure.counted);
        EXPECT_EQ(channel.clients, 0);
    }
}

TEST_F(FileTransfer, ThereIsNoClientWithoutADevice) {
    void* client = this;
    EXPECT_EQ(createFTHandle(pool, nullptr, &client), Status::ftCreate);
    EXPECT_EQ(createFTHandle(pool, channel.device(), nullptr), Status::ftCreate);
    EXPECT_EQ(deleteFTHandle(pool, nullptr), Status::ok);
    EXPECT_EQ(channel.calls, Texts{});
    EXPECT_EQ(messagesOf(pool), (Texts{"1250000b createFTHandle", "1250000b createFTHandle"}));
}

TEST_F(FileTransfer, TheCallersClientStaysTheCallers) {
    tree.file("sub/f", 5);
    void* const client = channel.hostsClient();
    EXPECT_EQ(copyBinaryToTarget(pool, nullptr, client, tree.path("sub/f"), "/dir", "name", 0, nullptr), Status::ok);
    EXPECT_EQ(copyDirToTarget(pool, nullptr, client, tree.path().c_str(), "/dir", 0, nullptr), Status::ok);
    EXPECT_EQ(channel.calls, (Texts{"put /dir/name", "make /dir|sub", "put /dir/sub/f"}));
}

TEST_F(FileTransfer, ATreeIsSentWithEachDirectoryBeforeItsContents) {
    tree.file("a/f", 100);
    tree.file("a/b/g", 200);
    tree.file("a/b/c/h", 300);
    std::filesystem::create_directory(tree.root / "a/empty");
    EXPECT_EQ(sendTree("/dir/x"), Status::ok);
    EXPECT_EQ(channel.calls.front(), "create");
    EXPECT_EQ(channel.calls.back(), "delete");
    const auto position = [](const std::string& call) {
        return std::find(channel.calls.begin(), channel.calls.end(), call) - channel.calls.begin();
    };
    EXPECT_LT(position("make /dir/x|a"), position("put /dir/x/a/f"));
    EXPECT_LT(position("make /dir/x|a"), position("make /dir/x/a|b"));
    EXPECT_LT(position("make /dir/x/a|b"), position("put /dir/x/a/b/g"));
    EXPECT_LT(position("make /dir/x/a/b|c"), position("put /dir/x/a/b/c/h"));
    EXPECT_LT(position("put /dir/x/a/b/c/h"), position("delete"));
    EXPECT_LT(position("make /dir/x/a|empty"), position("delete"));
    EXPECT_EQ(channel.calls.size(), 9U);
    EXPECT_EQ(tracker.doneUnits, 600U);
    EXPECT_EQ(messagesOf(pool), Texts{});
}

TEST_F(FileTransfer, ADirectoryThatCannotBeMadeEndsTheWholeWalk) {
    tree.file("a/b/f", 1);
    tree.file("a/b/c/g", 1);
    channel.results["make /dir/a|b"] = 7;
    EXPECT_EQ(sendTree(), Status::transfer);
    EXPECT_EQ(channel.calls, (Texts{"create", "make /dir|a", "make /dir/a|b", "delete"}));
    EXPECT_EQ(messagesOf(pool), Texts{"12500059 copyDirToTarget /dir/a b 7"});
}

TEST_F(FileTransfer, AFileThatCannotBeSentEndsTheWholeWalk) {
    tree.file("a/f", 1);
    channel.results["put /dir/a/f"] = -1;
    channel.results["delete"] = -1;
    EXPECT_EQ(sendTree(), Status::transfer);
    EXPECT_EQ(messagesOf(pool), (Texts{"1250000d copyBinaryToTarget transfer " + message("a/f") + " /dir/a f",
                                       "1250000c deleteFTHandle"}));
}

TEST_F(FileTransfer, ATreeNeedsBothPathsAndADirectory) {
    const std::u16string missing = tree.path("missing");
    EXPECT_EQ(copyDirToTarget(pool, channel.device(), nullptr, nullptr, "", 0, nullptr), Status::transfer);
    EXPECT_EQ(copyDirToTarget(pool, channel.device(), nullptr, u"", nullptr, 1, nullptr), Status::transfer);
    EXPECT_EQ(channel.calls, Texts{});
    EXPECT_EQ(copyDirToTarget(pool, channel.device(), nullptr, missing.c_str(), "/dir", 0, nullptr), Status::transfer);
    EXPECT_EQ(channel.calls, (Texts{"create", "delete"}));
    EXPECT_EQ(messagesOf(pool), (Texts{"12500026 copyDirToTarget <NULL> ", "12500026 copyDirToTarget  <NULL>",
                                       "12500058 copyDirToTarget " + message("missing")}));
}

TEST_F(FileTransfer, GoesOnWhenTheCallbackThrows) {
    tree.file("a/f", 500);
    tracker.callback = [](const KvTApplManProgress* progress, void* kept) {
        keep(progress, kept);
        throw 1;
    };
    EXPECT_EQ(sendTree(), Status::ok);
    EXPECT_EQ(channel.calls, (Texts{"create", "make /dir|a", "put /dir/a/f", "delete"}));
    EXPECT_EQ(reports.size(), 1U);
}

} // namespace
} // namespace applman
