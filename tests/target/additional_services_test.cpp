// Pause and step, additional files, processor cores and flash memory of the simulated target.
#include "target/target_calls.h"

namespace simulated_target {
namespace {

using namespace applman;

using Words = std::vector<std::uint32_t>;

class AdditionalServices : public TargetCalls {
protected:
    std::uint32_t runningProcess() {
        const std::uint32_t applId = newProcess();
        putBinary(applId);
        run(kLoadApplComplete, applId);
        run(kStartAppl, applId);
        return applId;
    }

    void run(std::uint32_t procedure, std::uint32_t applId) {
        EXPECT_EQ(command(procedure, applId).result, 0);
        EXPECT_EQ(commandState(applId).result, 0);
    }

    TApplManResult pair(std::uint32_t procedure, std::uint32_t applId) {
        return ask<TApplManResult>(procedure, TApplManPairRequest{kAccessId, applId});
    }

    TApplManAddFileResult add(std::uint32_t applId, std::uint32_t type, const std::string& path,
                              const std::string& name) {
        return ask<TApplManAddFileResult>(
            kAddFile, TApplManAddFileRequest{kMode, kAccessId, applId, type, "C:\\data\\source.txt", path, name, 0});
    }

    TApplManResult remove(std::uint32_t applId, std::uint32_t type, const std::string& name) {
        return ask<TApplManResult>(kRemoveFile, TApplManRemoveFileRequest{kMode, kAccessId, applId, type, name});
    }

    Words cores(std::uint32_t kind) {
        return ask<TApplManCoreIdResult>(kGetCoreIds, TApplManPairRequest{kAccessId, kind}).coreIds;
    }

    TApplManResult flash(std::uint32_t procedure, std::int64_t id) {
        return ask<TApplManResult>(procedure, TApplManFlashRequest{kAccessId, {1, id, {}, {}}});
    }
};

TEST_F(AdditionalServices, OnlyARunningProcessIsPausedAndOnlyAPausedOneSteps) {
    const std::uint32_t applId = runningProcess();
    EXPECT_EQ(onlyCode(pair(kStepAppl, applId).errorList), 0x14a00801U);
    EXPECT_EQ(pair(kPauseAppl, applId).result, 0);
    EXPECT_EQ(valueOf<std::uint32_t>(applId, 11), 5U);
    EXPECT_EQ(pair(kStepAppl, applId).result, 0);
    EXPECT_EQ(valueOf<std::uint32_t>(applId, 11), 5U);
    EXPECT_EQ(onlyCode(pair(kPauseAppl, applId).errorList), 0x14a00801U);
    run(kStartAppl, applId);
    EXPECT_EQ(valueOf<std::uint32_t>(applId, 11), 3U);
}

TEST_F(AdditionalServices, AFileGoesWhereTheTargetSaysAndIsListedAndRemoved) {
    const std::uint32_t applId = newProcess();
    const auto file = add(applId, 3, "sub", "");
    EXPECT_EQ(file.result, 0);
    EXPECT_EQ(file.targetName, Text{"source.txt"}) << "the source's name when the host gives none";
    EXPECT_EQ(put(*file.targetPath, *file.targetName, "content"), file_transfer::kDone);
    const auto tree = add(applId, 512, "", "tree");
    EXPECT_EQ(tree.targetName, Text{""}) << "a directory has no file name";
    EXPECT_EQ(put(*tree.targetPath + "/deep", "f", "content"), file_transfer::kDone);

    const auto list = ask<TApplManFileListResult>(kGetFileList, TApplManRequest{kMode, kAccessId, applId});
    ASSERT_EQ(list.files.size(), 2U);
    EXPECT_EQ(list.files[0].entryText1, Text{"C:\\data\\source.txt"});
    EXPECT_EQ(list.files[0].entryText2, Text{"source.txt"});
    EXPECT_EQ(list.files[0].entryText3, file.targetPath);
    EXPECT_EQ(list.files[1].entryWord, 512U);

    EXPECT_EQ(onlyCode(remove(applId, 2, "source.txt").errorList), 0x14a00810U) << "another type";
    EXPECT_EQ(remove(applId, 3, "source.txt").result, 0);
    EXPECT_EQ(remove(applId, 512, "tree").result, 0);
    for (const std::string& name : treeOf(root())) {
        EXPECT_TRUE(name.ends_with("files") || name.ends_with("sub") || name.find("files") == std::string::npos)
            << name;
    }
    EXPECT_EQ(onlyCode(remove(applId, 3, "source.txt").errorList), 0x14a00810U);
}

TEST_F(AdditionalServices, FilesThatCannotBeAreRefused) {
    Options options = defaults();
    options.lackedFileTypes = {6};
    restart(options);
    const std::uint32_t applId = newProcess();
    EXPECT_EQ(onlyCode(add(applId, 6, "", "f").errorList), 0x14a01077U);
    EXPECT_EQ(onlyCode(add(applId, 4711, "", "f").errorList), 0x14a01077U);
    EXPECT_EQ(onlyCode(add(applId, 3, "..", "f").errorList), 0x14a0080fU);
    EXPECT_EQ(onlyCode(add(applId, 512, "", "..").errorList), 0x14a0080fU);
    EXPECT_EQ(onlyCode(add(applId + 1, 3, "", "f").errorList), 0x14a00803U);
    EXPECT_EQ(ask<TApplManFileListResult>(kGetFileList, TApplManRequest{kMode, kAccessId, applId + 1}).errorCode, 1);
}

TEST_F(AdditionalServices, CoresOfRunningProcessesAreNotFree) {
    const std::uint32_t applId = runningProcess();
    EXPECT_EQ(cores(1), (Words{1, 2, 3, 4}));
    EXPECT_EQ(cores(2), (Words{2, 3, 4}));
    EXPECT_EQ(set(applId, 17, Words{2, 9}).result, 0);
    EXPECT_EQ(cores(2), (Words{1, 3, 4}));
    EXPECT_EQ(ask<TApplManCoreIdResult>(kGetCoreIds, TApplManPairRequest{kAccessId, 3}).result, -1);
}

TEST_F(AdditionalServices, FlashApplicationsAreInspectedConfiguredLoadedAndCleared) {
    Options options = defaults();
    options.flashApplications = {{7, "seven"}, {9, "nine"}};
    restart(options);
    EXPECT_EQ(ask<TApplManFlashListResult>(kGetFlashApplications, TApplManPairRequest{kAccessId, 1}).flashApplIds,
              (Words{7, 9}));
    const auto read = [&](std::uint32_t id, std::uint32_t number) {
        return ask<TApplManValueResult>(kGetFlashParam, TApplManRequest{kAccessId, id, number});
    };
    const auto write = [&](std::uint32_t number, TApplManValue value) {
        return ask<TApplManResult>(kSetFlashParam,
                                   TApplManSetFlashParamRequest{kAccessId, 7, number, std::move(value)});
    };
    EXPECT_EQ(read(7, 5).value, TApplManValue{Text{"seven"}});
    EXPECT_EQ(write(64, std::vector<std::int64_t>{1, -2}).result, 0);
    EXPECT_EQ(read(7, 64).value, TApplManValue(std::vector<std::int64_t>{1, -2}));
    EXPECT_EQ(onlyCode(write(64, Text{"x"}).errorList), 0x14a00805U);
    EXPECT_EQ(onlyCode(write(5, Text{"x"}).errorList), 0x14a00804U);
    EXPECT_EQ(onlyCode(read(8, 5).errorList), 0x14a00812U);

    EXPECT_EQ(flash(kLoadFlashAppl, 7).result, 0);
    EXPECT_EQ(commandState(0).result, 0);
    const auto loaded = ask<TApplManValueResult>(kGetApplications, TApplManRequest{kMode, kAccessId, 2});
    ASSERT_EQ(std::get<Words>(loaded.value).size(), 1U);
    EXPECT_EQ(textOf(std::get<Words>(loaded.value)[0], 5), "seven");
    run(kStartAppl, std::get<Words>(loaded.value)[0]);

    EXPECT_EQ(flash(kClearFlashAppl, 7).result, 0);
    EXPECT_EQ(onlyCode(flash(kClearFlashAppl, 7).errorList), 0x14a00812U);
    EXPECT_EQ(onlyCode(flash(kLoadFlashAppl, (std::int64_t{1} << 32) + 9).errorList), 0x14a00812U);
}

} // namespace
} // namespace simulated_target
