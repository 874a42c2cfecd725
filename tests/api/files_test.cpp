// Additional files: what is registered and where it goes, what the target cannot do, listing and removing.
#include <fstream>
#include <set>
#include <sstream>

#include "api/KvApplicationManagerAP.h"
#include "protocol/procedure_numbers.h"
#include "support/failing_memory.h"
#include "support/one_target.h"
#include "transfer/host_path.h"
#include "transfer/text.h"

using namespace applman;

namespace {

constexpr std::uint32_t kUnsupportedType = 0x14a01077;
constexpr std::uint32_t kDirectory = 512;
constexpr std::uint32_t kFile = 7;
constexpr std::uint32_t kNewType = 6; // a target that does not know it gets 2

const char* const kBadHandles = "checkDeviceAndAccessRestrictionHandle 1024";

std::string self(const std::string& what) { return "KvApplMan_loadFileUtf8 " + what; }

struct Reports {
    std::set<std::string> steps{};
    double last = -1;
};

void record(const KvTApplManProgress* progress, void* into) {
    auto& reports = *static_cast<Reports*>(into);
    reports.steps.insert(std::to_string(progress->phase) + "/" + std::to_string(progress->phaseCount) + " " +
                         progress->phaseName + " " + progress->fileName);
    reports.last = progress->fraction;
}

class LoadFile : public OneTarget {
protected:
    LoadFile() {
        std::filesystem::create_directories(folder.path() / "tree/deep/er");
        std::ofstream{file} << "content";
        std::ofstream{tree + "/b.txt"} << "bb";
        std::ofstream{tree + "/deep/er/c.txt"} << "cccccc";
    }

    /// A path as messages show it.
    static std::string shown(const std::string& path) {
        return wideToMessageText(normalizeHostPath(utf8ToWide(path.c_str()).c_str()).c_str());
    }

    std::int32_t load(const std::string& source, std::uint32_t type, std::uint32_t flags = 0,
                      const char* info = nullptr, Reports* reports = nullptr) {
        return KvApplMan_loadFileUtf8(pool, t.device, t.access, 0xabc, source.c_str(), "given path", "given name", type,
                                      flags, reports == nullptr ? nullptr : record, reports, info);
    }

    /// How the target answers the next registration.
    void answer(const char* path, const char* name, std::int32_t result = 0,
                std::initializer_list<std::uint32_t> codes = {}, std::uint32_t procedure = kAddFile2) {
        t.target.script(procedure, wire::reply(TApplManAddFileResult{result, path, wire::errorList(codes), name}));
    }

    TApplManAddFileRecord registered(std::size_t index) const {
        return request<TApplManAddFileRequest2>(index).file.value();
    }

    std::string stored(const std::string& name) const {
        std::ostringstream content;
        content << std::ifstream{t.store() / name}.rdbuf();
        return content.str();
    }

    TemporaryFolder folder;
    std::string file = (folder.path() / "a.txt").string();
    std::string tree = (folder.path() / "tree").string();
};

class FileInfo : public OneTarget {
protected:
    std::int32_t list(std::uint32_t capacity) {
        TApplManAddFileInfo used{};
        used.entryWord = 55;
        infos.assign(3, used);
        count = capacity;
        return KvApplMan_getFileInfo(pool, t.device, t.access, 0xabc, &count, capacity == 0 ? nullptr : infos.data());
    }
    void answer(std::int32_t errorCode, const std::vector<TApplManFileEntry>& files) {
        t.target.script(kGetFileList, wire::reply(TApplManFileListResult{-1, errorCode, files, {}}));
    }
    std::vector<std::uint32_t> words() const { return {infos[0].entryWord, infos[1].entryWord, infos[2].entryWord}; }

    std::vector<TApplManAddFileInfo> infos;
    std::uint32_t count = 0;
};

} // namespace

TEST_F(LoadFile, ArgumentsAndTheSourceComeBeforeTheHandles) {
    const auto call = [&](std::uint32_t applId, const char* source, const char* path, const char* name,
                          std::uint32_t type) {
        return KvApplMan_loadFileUtf8(pool, nullptr, nullptr, applId, source, path, name, type, 0, nullptr, nullptr,
                                      nullptr);
    };
    EXPECT_EQ(call(0, "", "", "", kFile), -100);
    EXPECT_EQ(call(1, nullptr, "", "", kFile), -100);
    EXPECT_EQ(call(1, "", nullptr, "", kFile), -100);
    EXPECT_EQ(call(1, "", "", nullptr, kFile), -100);
    EXPECT_EQ(messages(pool), Messages(4, self("1024")));
    pool->reset();
    EXPECT_EQ(call(0xabc, file.c_str(), "", "", kDirectory), -830);
    EXPECT_EQ(call(0xabc, tree.c_str(), "", "", kFile), -830);
    EXPECT_EQ(call(0xabc, "", "", "", kFile), -830);
    EXPECT_EQ(call(0xabc, file.c_str(), "", "", kFile), -100);
    EXPECT_EQ(messages(pool), (Messages{self("0x12500032(directory," + shown(file) + ",abc,512)"),
                                        self("0x12500032(application specific file," + shown(tree) + ",abc,7)"),
                                        self("0x12500032(application specific file,,abc,7)"), kBadHandles}));
}

TEST_F(LoadFile, AFileIsRegisteredAsGivenAndSentWhereTheTargetWantsIt) {
    answer("files/here", "named.txt", 0, {0x14a00900});
    const std::string roundabout = tree + "/../a.txt";
    EXPECT_EQ(load(roundabout, kFile, 0x00fedcba, "info"), 0);
    EXPECT_EQ(stored("files/here/named.txt"), "content");
    EXPECT_EQ(messages(pool), Messages{"target 0x14a00900"});
    const TApplManAddFileRecord sent = registered(0);
    EXPECT_EQ((std::array{request<TApplManAddFileRequest2>(0).accessId, sent.applId, sent.fileType, sent.fileFlags}),
              (std::array{t.accessId, 0xabcU, kFile, 0xfedcbaU}));
    EXPECT_EQ((std::array{sent.sourcePath, sent.targetPath, sent.targetName, sent.additionalText, sent.finalText}),
              (std::array<std::string, 5>{roundabout, "given path", "given name", "info", ""}));
    EXPECT_EQ(sent.reserved, (std::array<std::uint32_t, 8>{}));
}

TEST_F(LoadFile, ATargetThatDoesNotOfferTheRequestIsAskedByTheOlderOne) {
    t.target.script(kAddFile2, wire::notOffered());
    answer("files", "old.txt", 0, {}, kAddFile);
    EXPECT_EQ(load(file, kFile, 3), 0);
    EXPECT_EQ(stored("files/old.txt"), "content");
    const auto sent = request<TApplManAddFileRequest>(1);
    EXPECT_EQ((std::array{sent.mode, sent.accessId, sent.applId, sent.fileType, sent.fileFlags}),
              (std::array{1U, t.accessId, 0xabcU, kFile, 3U}));
    EXPECT_EQ((std::array{sent.sourcePath, sent.targetPath, sent.targetName}),
              (std::array<std::string, 3>{file, "given path", "given name"}));
    t.target.scriptAlways(kAddFile, wire::notOffered());
    for (const auto& reply : {wire::notOffered(), wire::failedCall()}) {
        t.target.script(kAddFile2, reply);
        EXPECT_EQ(load(file, kFile), -185);
    }
    EXPECT_EQ(messages(pool), Messages(2, self("0x1250000a(KvApplMan_loadFileUtf8)")));
    EXPECT_EQ(procedures(), (std::vector<std::uint32_t>{kAddFile2, kAddFile, kAddFile2, kAddFile, kAddFile2}));
}

TEST_F(LoadFile, ThePlaceMustFitTheKindOfSource) {
    struct Row {
        std::uint32_t type;
        const char* path;
        const char* name;
        std::string message;
    };
    const std::string file7 = "0x12500030(" + shown(file) + ",7,abc,";
    const std::string directory = "0x12500021(" + shown(tree) + ",abc,";
    for (const Row& row :
         {Row{kFile, "", "n", file7 + ",n)"}, Row{kFile, "p", "", file7 + "p,)"},
          Row{kDirectory, "p", "n", directory + "p,n)"}, Row{kDirectory, "", "n", directory + ",n)"}}) {
        pool->reset();
        answer(row.path, row.name);
        EXPECT_EQ(load(row.type == kFile ? file : tree, row.type), -832);
        EXPECT_EQ(messages(pool), Messages{self(row.message)});
    }
    answer("", "");
    EXPECT_EQ(load(tree, kDirectory), 0) << "an empty place asks for no transfer of a directory";
    EXPECT_TRUE(std::filesystem::is_empty(t.store()));
}

TEST_F(LoadFile, ATreeIsSentWithProgress) {
    Reports reports;
    answer("files/tree", "");
    ASSERT_EQ(load(tree, kDirectory, 0, nullptr, &reports), 0);
    EXPECT_EQ(stored("files/tree/b.txt"), "bb");
    EXPECT_EQ(stored("files/tree/deep/er/c.txt"), "cccccc");
    EXPECT_EQ(reports.steps, (std::set<std::string>{"1/1 \"Load\" b.txt", "1/1 \"Load\" c.txt"}));
    EXPECT_DOUBLE_EQ(reports.last, 1.0);
    EXPECT_EQ(registered(0).additionalText, "");
}

TEST_F(LoadFile, LoadOptionsAreRefusedOnceTheFileIsRegistered) {
    answer("files", "n", 0, {kUnsupportedType});
    EXPECT_EQ(load(file, kNewType, 0x02000001), -195) << "a failed transfer is not tried as another type";
    answer("files", "");
    EXPECT_EQ(load(tree, kDirectory, 0x02000001), -195);
    EXPECT_EQ(registered(0).fileFlags, 1U);
    EXPECT_EQ(messages(pool),
              (Messages{"target 0x14a01077", "copyBinaryToTarget 0x12500031(2)", "copyDirToTarget 0x12500031(2)"}));
}

TEST_F(LoadFile, ATypeThatTheTargetDoesNotKnowIsTriedAsTheOneBefore) {
    KvPlatform_addEntry(pool, 4711);
    answer("", "", 3, {0x14a00900, kUnsupportedType});
    answer("files", "n", 0, {0x14a00901});
    EXPECT_EQ(load(file, kNewType, 0x02000005, "info"), 0) << "load options are left out";
    EXPECT_EQ(pool.codes(), (std::vector<std::uint32_t>{4711, 0x14a00901})) << "what the first attempt said is dropped";
    EXPECT_EQ((std::array{registered(1).fileType, registered(1).fileFlags}), (std::array{2U, 5U}));
    EXPECT_EQ(registered(1).additionalText, "info");
    EXPECT_EQ(stored("files/n"), "content");
    pool->reset();
    answer("", "n", 0, {kUnsupportedType}); // whatever the reason of the status
    answer("", "", 3, {kUnsupportedType});
    EXPECT_EQ(load(file, kNewType), -832);
    EXPECT_EQ(messages(pool), (Messages{"target 0x14a01077", self("0x12500041(" + shown(file) + ",2,3,abc)")}));
    EXPECT_EQ(procedures().size(), 4U) << "there is no third attempt";
}

TEST_F(LoadFile, ATargetThatKnowsNoDirectoriesIsReportedInOneMessage) {
    KvPlatform_addEntry(pool, 4711);
    answer("", "", -1, {0x14a00900, kUnsupportedType});
    EXPECT_EQ(load(tree, kDirectory), -832);
    answer("p", "n", 0, {kUnsupportedType});
    EXPECT_EQ(load(tree, kDirectory), -832);
    EXPECT_EQ(pool.codes(), (std::vector<std::uint32_t>{4711, 0x12500022, 0x12500022}));
    EXPECT_EQ(messages(pool).back(), self("0x12500022(" + shown(tree) + ",abc)"));
    EXPECT_EQ(procedures().size(), 2U);
}

TEST_F(LoadFile, OnlyTheAnswerToThisCallLeadsToAnotherAttempt) {
    KvPlatform_addEntry(pool, kUnsupportedType);
    answer("", "", -1, {0x14a00900});
    EXPECT_EQ(load(file, kNewType), -832) << "an older entry of the pool does not count";
    answer("", "", 3, {kUnsupportedType});
    EXPECT_EQ(load(file, kFile), -832) << "other types have no substitute";
    EXPECT_EQ(pool.codes(),
              (std::vector<std::uint32_t>{kUnsupportedType, 0x14a00900, 0x12500041, kUnsupportedType, 0x12500041}));
    EXPECT_EQ(procedures().size(), 2U);
}

TEST_F(LoadFile, WhatTheTargetSaidIsNotLostWhenMemoryRunsOut) {
    for (int i = 0; i < 20; ++i) {
        KvPlatform_addEntry(pool, 4711); // so that the pool itself needs no more memory
    }
    bool failed = true;
    for (std::size_t allowed = 0; failed; allowed += 3) {
        const std::string place = "place" + std::to_string(allowed);
        t.target.forgetScripts();
        answer(place.c_str(), "", 0, {0x14a00900});
        pool->reset();
        {
            const FailingMemory memory{allowed};
            const std::int32_t status = KvApplMan_loadFileUtf8(pool, t.device, t.access, 1, tree.c_str(), "", "",
                                                               kDirectory, 0, nullptr, nullptr, nullptr);
            failed = memory.hasFailed();
            EXPECT_EQ(status != 0, failed) << allowed;
        }
        if (std::filesystem::exists(t.store() / place)) { EXPECT_EQ(pool.codes().at(0), 0x14a00900U) << allowed; }
    }
}

TEST_F(FileInfo, TextsAreCutAndFieldsEndInZeros) {
    answer(0, {{std::string(2000, 'a'), std::string(300, 'b'), std::string(1023, 'c'), 9}, {"x", "", "z", 8}});
    EXPECT_EQ(list(3), 0) << "the first word of the reply is not looked at";
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(std::string(infos[0].entryText1), std::string(1022, 'a'));
    EXPECT_EQ(std::string(infos[0].entryText2), std::string(254, 'b'));
    EXPECT_EQ(std::string(infos[0].entryText3), std::string(1022, 'c'));
    EXPECT_EQ(std::string(infos[1].entryText1) + "," + infos[1].entryText2 + "," + infos[1].entryText3, "x,,z");
    EXPECT_EQ(words(), (std::vector<std::uint32_t>{9, 8, 0}));
    const auto asked = request<TApplManRequest>(0);
    EXPECT_EQ((std::array{asked.first, asked.second, asked.third}), (std::array{1U, t.accessId, 0xabcU}));
    EXPECT_EQ(messages(pool), Messages{});
}

TEST_F(FileInfo, ArgumentsAreJudgedAndTheListIsClearedBeforeTheHandles) {
    EXPECT_EQ(KvApplMan_getFileInfo(pool, nullptr, nullptr, 0, &count, nullptr), -100);
    EXPECT_EQ(KvApplMan_getFileInfo(pool, nullptr, nullptr, 1, nullptr, nullptr), -100);
    count = 2;
    EXPECT_EQ(KvApplMan_getFileInfo(pool, nullptr, nullptr, 1, &count, nullptr), -100);
    EXPECT_EQ(count, 2U);
    t.access = nullptr;
    EXPECT_EQ(list(2), -100);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(words(), (std::vector<std::uint32_t>{0, 0, 55}));
    const std::string own = "KvApplMan_getFileInfo 1024";
    EXPECT_EQ(messages(pool), (Messages{own, own, own, kBadHandles}));
}

TEST_F(FileInfo, AListThatDoesNotFitTellsItsLengthAndARefusedOneDoesNot) {
    const std::string own = "KvApplMan_getFileInfo ";
    for (const std::uint32_t capacity : {0U, 2U}) {
        answer(0, {{"x", "", "", 1}, {}, {}});
        EXPECT_EQ(list(capacity), -833);
        EXPECT_EQ(count, 3U);
        EXPECT_STREQ(infos[0].entryText1, "") << "nothing is copied";
    }
    answer(0, {});
    EXPECT_EQ(list(0), 0);
    answer(-5, {{}});
    EXPECT_EQ(list(3), -833);
    EXPECT_EQ(count, 0U);
    t.target.script(kGetFileList, wire::notOffered());
    EXPECT_EQ(list(3), -185);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(messages(pool), (Messages{own + "0x12500027(abc,0,3)", own + "0x12500027(abc,2,3)",
                                        own + "0x1250002c(-5,abc)", own + "0x1250000a(KvApplMan_getFileInfo)"}));
}

TEST_F(LoadFile, RemovingIsRefusedByAnyValueButZero) {
    const auto remove = [&](void* access, std::uint32_t applId, const char* name) {
        return KvApplMan_removeFile(pool, t.device, access, applId, name, 7);
    };
    EXPECT_EQ(remove(nullptr, 0, "n"), -100);
    EXPECT_EQ(remove(nullptr, 1, nullptr), -100);
    EXPECT_EQ(remove(nullptr, 1, "n"), -100);
    for (const auto& [reply, status] :
         {std::pair{wire::result(0), 0}, {wire::result(2, {0x14a00900}), -831}, {wire::failedCall(), -185}}) {
        t.target.script(kRemoveFile, reply);
        EXPECT_EQ(remove(t.access, 0xabc, "n"), status);
    }
    const auto asked = request<TApplManRemoveFileRequest>(0);
    EXPECT_EQ((std::array{asked.mode, asked.accessId, asked.applId, asked.fileType}),
              (std::array{1U, t.accessId, 0xabcU, 7U}));
    EXPECT_EQ(asked.fileName, "n");
    const std::string own = "KvApplMan_removeFile ";
    EXPECT_EQ(messages(pool), (Messages{own + "1024", own + "1024", kBadHandles, "target 0x14a00900",
                                        own + "0x12500037(n,7,2,abc)", own + "0x1250000a(KvApplMan_removeFile)"}));
}
