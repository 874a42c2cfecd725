// Additional files: what is registered and where it goes, what the target cannot do, listing and removing.
#include <set>
#include <sstream>

#include "api/api_test.h"
#include "transfer/host_path.h"
#include "transfer/text.h"

using namespace applman;

namespace {

constexpr std::uint32_t kUnsupportedType = 0x14a01077;
constexpr std::uint32_t kDirectory = 512;
constexpr std::uint32_t kFile = 7;
constexpr std::uint32_t kNewType = 6; // a target that does not know it gets 2

std::string self(const std::string& what) { return "KvApplMan_loadFileUtf8 " + what; }

struct Progress {
    std::set<std::string> steps;
    double fraction = 0;
};

void record(const KvTApplManProgress* progress, void* kept) {
    std::ostringstream step;
    step << progress->phase << "/" << progress->phaseCount << " " << progress->phaseName << " " << progress->fileName;
    static_cast<Progress*>(kept)->steps.insert(step.str());
    static_cast<Progress*>(kept)->fraction = progress->fraction;
}

class LoadFile : public ApiTest {
protected:
    LoadFile() {
        folder.file("tree/b.txt", "bb");
        folder.file("tree/deep/c.txt", "cccccc");
    }

    /// A path as messages show it.
    static std::string shown(const std::string& path) {
        return wideToMessageText(normalizeHostPath(utf8ToWide(path.c_str()).c_str()).c_str());
    }

    Outcome load(const std::string& source, std::uint32_t type, std::uint32_t flags = 0, const char* info = nullptr,
                 Progress* progress = nullptr) {
        return outcome(KvApplMan_loadFileUtf8(pool, t.device, t.access, 0xabc, source.c_str(), "given path",
                                              "given name", type, flags, progress == nullptr ? nullptr : record,
                                              progress, info));
    }

    /// How the target answers the next registration.
    void answer(const char* path, const char* name, std::int32_t result = 0,
                std::initializer_list<std::uint32_t> codes = {}, std::uint32_t procedure = kAddFile2) {
        t.target.script(procedure, wire::reply(TApplManAddFileResult{result, path, wire::errorList(codes), name}));
    }

    TApplManAddFileRecord registered(std::size_t index) const {
        return request<TApplManAddFileRequest2>(index).file.value();
    }

    std::string stored(const std::string& name) const { return contentOf(t.store() / name); }

    TemporaryFolder folder;
    std::string file = folder.file("a.txt", "content");
    std::string tree = (folder.path() / "tree").string();
};

class FileInfo : public ApiTest {
protected:
    Outcome list(std::uint32_t capacity) {
        TApplManAddFileInfo used{};
        used.entryWord = 55;
        infos.assign(3, used);
        count = capacity;
        return outcome(
            KvApplMan_getFileInfo(pool, t.device, t.access, 0xabc, &count, capacity == 0 ? nullptr : infos.data()));
    }
    void answer(std::int32_t errorCode, const std::vector<TApplManFileEntry>& files) {
        t.target.script(kGetFileList, wire::reply(TApplManFileListResult{-1, errorCode, files, {}}));
    }

    std::vector<TApplManAddFileInfo> infos;
    std::uint32_t count = 0;
};

} // namespace

TEST_F(LoadFile, AFileIsRegisteredAsGivenAndSentWhereTheTargetWantsIt) {
    answer("files/here", "named.txt", 0, {0x14a00900});
    const std::string roundabout = tree + "/../a.txt";
    Progress progress;
    EXPECT_EQ(load(roundabout, kFile, 0x00fedcba, "info", &progress), (Outcome{0, {"target 0x14a00900"}}));
    EXPECT_EQ(progress.fraction, 1.0);
    EXPECT_EQ(stored("files/here/named.txt"), "content");
    const TApplManAddFileRecord sent{0xabc, kFile, roundabout, "given path", "given name", 0xfedcba, "info", {}, ""};
    EXPECT_EQ(t.target.requests()[0].arguments, wire::bytesOf(TApplManAddFileRequest2{t.accessId, sent}));
}

TEST_F(LoadFile, ATargetThatDoesNotOfferTheRequestIsAskedByTheOlderOne) {
    t.target.script(kAddFile2, wire::notOffered());
    answer("files", "old.txt", 0, {}, kAddFile);
    EXPECT_EQ(load(file, kFile, 3), (Outcome{0, {}}));
    EXPECT_EQ(stored("files/old.txt"), "content");
    const TApplManAddFileRequest sent{1, t.accessId, 0xabc, kFile, file, "given path", "given name", 3};
    EXPECT_EQ(t.target.requests()[1].arguments, wire::bytesOf(sent));
}

TEST_F(LoadFile, SourceAndPlaceMustFitTheFileType) {
    const std::string file7 = "0x12500030(" + shown(file) + ",7,abc,";
    const std::string directory = "0x12500021(" + shown(tree) + ",abc,";
    EXPECT_EQ(load(file, kDirectory), (Outcome{-830, {self("0x12500032(directory," + shown(file) + ",abc,512)")}}));
    answer("", "n");
    EXPECT_EQ(load(file, kFile), (Outcome{-832, {self(file7 + ",n)")}}));
    answer("p", "");
    EXPECT_EQ(load(file, kFile), (Outcome{-832, {self(file7 + "p,)")}}));
    answer("", "n");
    EXPECT_EQ(load(tree, kDirectory), (Outcome{-832, {self(directory + ",n)")}}));
    answer("", "");
    EXPECT_EQ(load(tree, kDirectory), (Outcome{0, {}})) << "an empty place asks for no transfer of a directory";
    EXPECT_TRUE(std::filesystem::is_empty(t.store()));
}

TEST_F(LoadFile, ATreeIsSentWithProgress) {
    Progress progress;
    answer("files/tree", "");
    ASSERT_EQ(load(tree, kDirectory, 0, nullptr, &progress), (Outcome{0, {}}));
    EXPECT_EQ(stored("files/tree/b.txt") + stored("files/tree/deep/c.txt"), "bbcccccc");
    EXPECT_EQ(progress.steps, (std::set<std::string>{"1/1 \"Load\" b.txt", "1/1 \"Load\" c.txt"}));
    EXPECT_EQ(progress.fraction, 1.0);
}

TEST_F(LoadFile, ATypeThatTheTargetDoesNotKnowIsTriedAsTheOneBefore) {
    answer("", "", 3, {0x14a00900, kUnsupportedType});
    answer("files", "n", 0, {0x14a00901});
    EXPECT_EQ(load(file, kNewType, 0x02000005, "info"), (Outcome{0, {"target 0x14a00901"}}))
        << "load options are left out, and what the first attempt said is dropped";
    EXPECT_EQ((Words{registered(1).fileType, registered(1).fileFlags}), (Words{2, 5}));
    EXPECT_EQ(registered(1).additionalText, "info");
    answer("files", "n", 0, {kUnsupportedType});
    EXPECT_EQ(load(file, kNewType, 0x02000001),
              (Outcome{-195, {"target 0x14a01077", "copyBinaryToTarget 0x12500031(2)"}}))
        << "a failed transfer is not tried as another type";
    answer("", "n", 0, {kUnsupportedType}); // whatever the reason of the status
    answer("", "", 3, {kUnsupportedType});
    EXPECT_EQ(load(file, kNewType),
              (Outcome{-832, {"target 0x14a01077", self("0x12500041(" + shown(file) + ",2,3,abc)")}}));
    EXPECT_EQ(procedures().size(), 5U) << "there is no third attempt";
}

TEST_F(LoadFile, ATargetThatKnowsNoDirectoriesIsReportedInOneMessage) {
    answer("", "", -1, {0x14a00900, kUnsupportedType});
    EXPECT_EQ(load(tree, kDirectory), (Outcome{-832, {self("0x12500022(" + shown(tree) + ",abc)")}}));
    EXPECT_EQ(procedures().size(), 1U);
}

TEST_F(LoadFile, OnlyTheAnswerToThisCallLeadsToAnotherAttempt) {
    KvPlatform_addEntry(pool, kUnsupportedType);
    answer("", "", -1, {0x14a00900});
    EXPECT_EQ(load(file, kNewType).first, -832) << "an older entry of the pool does not count";
    answer("", "", 3, {kUnsupportedType});
    EXPECT_EQ(load(file, kFile).first, -832) << "other types have no substitute";
    EXPECT_EQ(procedures().size(), 2U);
}

TEST_F(FileInfo, TextsAreCutAndFieldsEndInZeros) {
    answer(0, {{std::string(2000, 'a'), std::string(300, 'b'), std::string(1023, 'c'), 9}, {"x", "", "z", 8}});
    EXPECT_EQ(list(3), (Outcome{0, {}})) << "the first word of the reply is not looked at";
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(infos[0].entryText1, std::string(1022, 'a'));
    EXPECT_EQ(infos[0].entryText2, std::string(254, 'b'));
    EXPECT_EQ(infos[0].entryText3, std::string(1022, 'c'));
    EXPECT_EQ(std::string(infos[1].entryText1) + "," + infos[1].entryText2 + "," + infos[1].entryText3, "x,,z");
    EXPECT_EQ((Words{infos[0].entryWord, infos[1].entryWord, infos[2].entryWord}), (Words{9, 8, 0}));
    EXPECT_EQ(sentWords(0), (Words{1, t.accessId, 0xabc}));
}

TEST_F(FileInfo, AListThatDoesNotFitTellsItsLengthAndARefusedOneDoesNot) {
    const std::string own = "KvApplMan_getFileInfo ";
    answer(0, {{"x", "", "", 1}, {}, {}});
    EXPECT_EQ(list(2), (Outcome{-833, {own + "0x12500027(abc,2,3)"}}));
    EXPECT_EQ(count, 3U);
    EXPECT_STREQ(infos[0].entryText1, "") << "nothing is copied";
    answer(0, {});
    EXPECT_EQ(list(0), (Outcome{0, {}}));
    answer(-5, {{}});
    EXPECT_EQ(list(3), (Outcome{-833, {own + "0x1250002c(-5,abc)"}}));
    EXPECT_EQ(count, 0U);
}

TEST_F(LoadFile, RemovingIsRefusedByAnyValueButZero) {
    const auto remove = [&] { return outcome(KvApplMan_removeFile(pool, t.device, t.access, 0xabc, "n", 7)); };
    t.target.script(kRemoveFile, wire::result(0));
    EXPECT_EQ(remove(), (Outcome{0, {}}));
    EXPECT_EQ(t.target.requests()[0].arguments, wire::bytesOf(TApplManRemoveFileRequest{1, t.accessId, 0xabc, 7, "n"}));
    t.target.script(kRemoveFile, wire::result(2));
    EXPECT_EQ(remove(), (Outcome{-831, {"KvApplMan_removeFile 0x12500037(n,7,2,abc)"}}));
}
