#include "transfer/file_transfer_double.h"

#include <sstream>

namespace applman {
namespace {

/// "fraction phase/phases phase-name file" of every report.
void keep(const KvTApplManProgress* p, void* reports) {
    std::ostringstream text;
    text << p->fraction << ' ' << p->phase << '/' << p->phaseCount << ' ' << p->phaseName << ' ' << p->fileName;
    static_cast<Texts*>(reports)->push_back(text.str());
}

class FileTransfer : public FileTransferTest {
protected:
    FileTransfer() { tracker = {.callback = keep, .userData = &reports, .totalUnits = 1000}; }

    Status sendFile() {
        return copyBinaryToTarget(pool, channel.device(), nullptr, tree.path("f"), "/dir", "name", 0, &tracker);
    }

    Texts reports;
};

TEST_F(FileTransfer, EveryFailureOfASingleFileKeepsItsStatus) {
    tree.file("f", 500);
    struct Failure {
        Texts refused, messages;
        Status status;
        std::uint64_t counted;
    };
    const std::string notSent = "copyBinaryToTarget 0x1250000d(transfer," + shown("f") + ",/dir,name)";
    const std::string notDeleted = "deleteFTHandle 0x1250000c";
    const Failure failures[] = {
        {{"create"}, {"createFTHandle 0x1250000b"}, Status::ftCreate, 0},
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
        EXPECT_EQ(sendFile(), failure.status);
        EXPECT_EQ(messages(pool), failure.messages);
        EXPECT_EQ(tracker.doneUnits, failure.counted);
        EXPECT_EQ(channel.clients, 0);
    }
}

TEST_F(FileTransfer, ATreeNeedsTwoPathsAndATargetThatMakesItsDirectories) {
    tree.file("sub/f", 1);
    channel.results["make /dir|sub"] = -7;
    EXPECT_EQ(sendTree(), Status::transfer);
    EXPECT_EQ(channel.calls, (Texts{"create", "make /dir|sub", "delete"}));
    EXPECT_EQ(sendTree(""), Status::transfer);
    EXPECT_EQ(copyDirToTarget(pool, channel.device(), nullptr, u"", "/dir", 0, nullptr), Status::transfer);
    EXPECT_EQ(copyDirToTarget(pool, channel.device(), nullptr, nullptr, nullptr, 0, nullptr), Status::transfer);
    EXPECT_EQ(messages(pool),
              (Texts{"copyDirToTarget 0x12500059(/dir,sub,-7)", "copyDirToTarget 0x12500026(" + shown() + ",)",
                     "copyDirToTarget 0x12500026(,/dir)", "copyDirToTarget 0x12500026(<NULL>,<NULL>)"}));
    EXPECT_EQ(channel.calls.size(), 3U);
}

TEST_F(FileTransfer, ProgressNeverExceedsTheWholeAndKeepsWhatAnUpdateLeavesOut) {
    tracker.totalUnits = 8;
    updateProgress(&tracker, "D:\\a\\model.x86", 2, kPhaseInit, 2, 3);
    onTransferProgress(4, &tracker);
    updateProgress(&tracker, nullptr, 1, nullptr, 0, 0);
    onTransferProgress(100, &tracker);
    onTransferProgress(~std::uint64_t{0}, &tracker);
    tracker.totalUnits = 0;
    onTransferProgress(1, &tracker);
    EXPECT_EQ(reports, (Texts{"0.25 2/3 \"Init\" model.x86", "0.75 2/3 \"Init\" model.x86", "0.375 2/3 \"Init\" ",
                              "1 2/3 \"Init\" ", "1 2/3 \"Init\" ", "0 2/3 \"Init\" "}));
}

} // namespace
} // namespace applman
