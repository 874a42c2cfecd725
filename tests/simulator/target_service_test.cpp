// The two programs of a target, called without a connection: what they accept, and what they keep.
#include <map>
#include <optional>

#include "file_transfer/file_transfer_protocol.h"
#include "protocol/procedure_numbers.h"
#include "simulator/application.h"
#include "simulator/target_service.h"
#include "support/one_target.h"

namespace simulated_target {
namespace {

using namespace applman;
using namespace file_transfer;
namespace fs = std::filesystem;

constexpr std::uint32_t kMode = 1;
constexpr std::uint32_t kAccessId = 16;

using Files = std::map<std::string, std::string>;

/// Everything below a folder, as paths from there, with what files hold.
Files filesIn(const fs::path& folder) {
    Files files;
    for (const auto& entry : fs::recursive_directory_iterator{folder}) {
        const bool hasContent = entry.is_regular_file();
        files[entry.path().lexically_relative(folder).generic_string()] = hasContent ? contentOf(entry.path()) : "";
    }
    return files;
}

/// The code of a refusal, which has one message.
template <class Reply>
std::uint32_t codeOf(const Reply& reply) {
    const Pool pool;
    EXPECT_NE(reply.result, 0);
    EXPECT_EQ(pool->deSerialize(reply.errorList.data(), static_cast<std::uint32_t>(reply.errorList.size())), 0);
    return pool->getErrorCount() == 1 ? pool->getErrorCode(0) : 0;
}

class Target : public testing::Test {
protected:
    Target() { restart(); }

    /// A target anew, on the same store.
    void restart(std::chrono::hours commandDelay = {}) {
        Options options;
        options.store = root;
        options.commandDelay = commandDelay;
        service.reset();
        service.emplace(options);
    }

    template <class Result, class Request>
    Result ask(std::uint32_t procedure, const Request& request, std::uint32_t program = kApplManProgram,
               std::uint32_t version = kApplManVersion) {
        const std::vector<std::uint8_t> arguments = wire::bytesOf(request);
        const auto reply = service->handle({connection, program, version, procedure, arguments});
        EXPECT_EQ(reply.status, kvrpc::AcceptStatus::success);
        return wire::recordOf<Result>(reply.results);
    }

    TApplManRegisterResult enroll(std::uint32_t number, const TApplManGroupPart& group) {
        return ask<TApplManRegisterResult>(kRegisterAppl, TApplManRegisterRequest{kAccessId, number, group});
    }
    TApplManGroupPart openGroup(std::uint32_t size) {
        const auto opened = ask<TApplManGroupResult>(kOpenGroup, TApplManOpenGroupRequest{kAccessId});
        return {.words = {0, opened.targetGroupId1, opened.targetGroupId2, size, 0}};
    }
    std::uint32_t newProcess() { return static_cast<std::uint32_t>(enroll(1, openGroup(1)).applId); }

    TApplManResult command(std::uint32_t procedure, std::uint32_t applId) {
        if (procedure == kTerminateAppl || procedure >= kPauseAppl) {
            return ask<TApplManResult>(procedure, TApplManPairRequest{kAccessId, applId});
        }
        return ask<TApplManResult>(procedure, TApplManRequest{kMode, kAccessId, applId});
    }
    TApplManResult set(std::uint32_t applId, std::uint32_t number, TApplManValue value) {
        return ask<TApplManResult>(kSetParam,
                                   TApplManSetParamRequest{kMode, kAccessId, applId, number, std::move(value)});
    }
    template <class Arm>
    Arm get(std::uint32_t applId, std::uint32_t number) {
        const TApplManGetParamRequest request{kMode, kAccessId, applId, number};
        return std::get<Arm>(ask<TApplManValueResult>(kGetParam, request).value);
    }
    std::string binaryName(std::uint32_t applId) { return get<Text>(applId, 3).value_or("absent"); }
    /// Transfers a binary to where the target wants it.
    void putBinary(std::uint32_t applId) {
        EXPECT_EQ(put(get<Text>(applId, 4).value_or("absent"), binaryName(applId), "binary"), kDone);
    }

    template <class Request>
    std::int32_t transfer(std::uint32_t procedure, const Request& request) {
        return ask<Reply>(procedure, request, kProgram, kVersion).result;
    }
    std::int32_t open(const std::string& directory, const std::string& name, std::uint64_t size,
                      std::uint32_t number = 7) {
        return transfer(kOpen, OpenRequest{number, size, directory, name});
    }
    std::int32_t write(std::uint64_t offset, const std::string& bytes) {
        return transfer(kWrite, WriteRequest{7, offset, {bytes.begin(), bytes.end()}});
    }
    std::int32_t commit() { return transfer(kCommit, TransferRequest{7}); }
    std::int32_t put(const std::string& directory, const std::string& name, const std::string& content) {
        open(directory, name, content.size());
        write(0, content);
        return commit();
    }

    TemporaryFolder around{};
    const fs::path root = around.path() / "store";
    std::optional<TargetService> service{};
    std::uint64_t connection = 1;
};

TEST_F(Target, AcceptsACommandInItsStatesOnly) {
    using enum AppState;
    struct Step {
        AppState leadsTo;
        std::vector<std::uint32_t> refused, accepted;
    };
    const Step steps[] = {
        {registered, {kInitAppl, kStartAppl, kStopAppl, kApplyAppl, kTerminateAppl}, {}},
        {loaded, {kStartAppl, kPauseAppl, kStopAppl}, {kLoadAppl, kInitAppl, kLoadAppl, kInitAppl}},
        {ready, {kInitAppl, kApplyAppl, kStopAppl, kPauseAppl}, {kApplyAppl}},
        {running, {kLoadAppl, kLoadApplComplete, kStartAppl, kStepAppl}, {kStartAppl}},
        {paused, {kLoadAppl, kLoadApplComplete, kPauseAppl}, {kPauseAppl, kStepAppl}},
        {running, {kStepAppl}, {kStartAppl}},
        {stopped, {kInitAppl, kStopAppl, kPauseAppl, kStepAppl}, {kPauseAppl, kStopAppl}},
        {registered, {kStartAppl}, {kStartAppl, kTerminateAppl}},
        {ready, {kApplyAppl}, {kLoadApplComplete}},
    };
    putBinary(newProcess());
    restart();
    const std::uint32_t applId = newProcess();
    EXPECT_EQ(command(kLoadAppl, applId).result, 0);
    EXPECT_EQ(codeOf(command(kGetCommandState, applId)), 0x14a0080bU) << "that of an earlier run does not count";
    putBinary(applId);
    for (const Step& step : steps) {
        for (const std::uint32_t procedure : step.accepted) {
            EXPECT_EQ(command(procedure, applId).result, 0) << procedure;
            EXPECT_EQ(command(kGetCommandState, applId).result, 0) << procedure;
        }
        for (const std::uint32_t procedure : step.refused) {
            EXPECT_EQ(codeOf(command(procedure, applId)), 0x14a00801U) << procedure;
        }
        EXPECT_EQ(AppState{get<std::uint32_t>(applId, 11)}, step.leadsTo);
    }
    EXPECT_EQ(command(kUnloadAppl, applId).result, 0);
    EXPECT_EQ(codeOf(command(kStartAppl, applId)), 0x14a00803U);
}

TEST_F(Target, CarriesACommandOutAfterItsDelayAndNoOtherUntilThen) {
    restart(std::chrono::hours{1});
    const std::uint32_t applId = newProcess();
    EXPECT_EQ(command(kLoadAppl, applId).result, 0);
    EXPECT_EQ(codeOf(command(kUnloadAppl, applId)), 0x14a00802U);
    EXPECT_EQ(command(kGetCommandState, applId).result, 2);
}

TEST_F(Target, KeepsOnlySoManyParametersProcessesAndTransfers) {
    const std::uint32_t applId = newProcess();
    for (std::uint32_t number = 5000; number < 5256; ++number) {
        ASSERT_EQ(set(applId, number, std::uint32_t{1}).result, 0);
    }
    EXPECT_EQ(codeOf(set(applId, 5256, std::uint32_t{1})), 0x14a0080dU);
    EXPECT_EQ(set(applId, 5000, Text{"another"}).result, 0);

    const TApplManGroupPart group = openGroup(5000);
    std::uint32_t number = 1;
    while (number <= 5000 && enroll(number, group).result == 0) {
        ++number;
    }
    EXPECT_EQ(number, 4096U); // one was there
    EXPECT_EQ(codeOf(enroll(number, group)), 0x14a0080dU);
    EXPECT_EQ(codeOf(enroll(1, group)), 0x14a00808U) << "a number is taken once";
    EXPECT_EQ(codeOf(enroll(5001, group)), 0x14a00807U);

    for (std::uint32_t file = 0; file < 64; ++file) {
        ASSERT_EQ(open("d", std::to_string(file), 1, file), kDone);
    }
    EXPECT_EQ(open("d", "one more", 1, 64), kStoreFailed);
    EXPECT_EQ(transfer(kAbort, TransferRequest{3}), kDone);
    EXPECT_EQ(open("d", "one more", 1, 64), kDone);
}

TEST_F(Target, AFileOfAnotherSizeThanAnnouncedLeavesTheOldOne) {
    const std::pair<std::uint64_t, std::uint64_t> lies[] = {{3, 3}, // beyond the end
                                                            {9, 4}, // a gap
                                                            {9, 2}, // again
                                                            {9, 0xFFFFFFFFFFFFFFFF}};
    ASSERT_EQ(put("d", "file", "old"), kDone);
    for (const auto& [size, offset] : lies) {
        EXPECT_EQ(open("d", "file", size), kDone);
        EXPECT_EQ(write(0, "abc"), kDone);
        EXPECT_EQ(write(offset, "x"), kBadOffset) << size << " " << offset;
        EXPECT_EQ(commit(), kEarlierFailure) << size << " " << offset;
    }
    EXPECT_EQ(open("d", "file", 9), kDone);
    EXPECT_EQ(write(0, "abc"), kDone);
    EXPECT_EQ(commit(), kIncomplete);
    EXPECT_EQ(filesIn(root / "d"), (Files{{"file", "old"}}));
}

TEST_F(Target, WhatIsNotCommittedGoesWithItsConnectionAnAbortOrItsNumber) {
    ASSERT_EQ(open("d", "first", 3), kDone);
    connection = 2;
    ASSERT_EQ(open("d", "second", 1), kDone);
    service->connectionClosed(1);
    EXPECT_EQ(write(0, "x"), kDone);
    EXPECT_EQ(commit(), kDone);
    EXPECT_EQ(commit(), kNoSuchTransfer);
    ASSERT_EQ(open("d", "third", 3), kDone);
    EXPECT_EQ(transfer(kAbort, TransferRequest{7}), kDone);
    EXPECT_EQ(filesIn(root / "d"), (Files{{"second", "x"}}));
    ASSERT_EQ(open("d", "fourth", 3), kDone);
    EXPECT_EQ(put("d", "fifth", "x"), kDone);
    EXPECT_EQ(filesIn(root / "d"), (Files{{"second", "x"}, {"fifth", "x"}}));
}

TEST_F(Target, NoNameThatAHostGivesLeadsOutOfTheStore) {
    const std::uint32_t applId = newProcess();
    const std::pair<const char*, const char*> bad[] = {{"../outside", "file"}, {"/tmp", "file"}, {"d", "../file"}};
    for (const auto& [directory, name] : bad) {
        EXPECT_EQ(open(directory, name, 1), kBadName) << directory << " " << name;
        EXPECT_EQ(write(0, "x"), kEarlierFailure);
        EXPECT_EQ(commit(), kEarlierFailure);
        EXPECT_EQ(transfer(kMakeDirectory, MakeDirectoryRequest{directory, name}), kBadName);
        const TApplManAddFileRequest file{kMode, kAccessId, applId, 3, "C:\\source.txt", directory, name, 0};
        EXPECT_EQ(codeOf(ask<TApplManAddFileResult>(kAddFile, file)), 0x14a0080fU);
    }
    EXPECT_EQ(filesIn(around.path()), (Files{{"store", ""}}));

    const std::pair<const char*, const char*> binaries[] = {
        {"D:\\appl\\model.x86", "model.x86"}, {"../../passwd", "passwd"}, {"..", "application.bin"}, {"b:c", "b_c"}};
    for (const auto& [announced, name] : binaries) {
        EXPECT_EQ(set(applId, 5, Text{announced}).result, 0);
        EXPECT_EQ(binaryName(applId), name) << announced;
        putBinary(applId);
    }
}

TEST_F(Target, AStoreIsUsedByOneAtATime) {
    ASSERT_EQ(open("d", "file", 3), kDone);
    Options options;
    options.store = root;
    EXPECT_THROW(TargetService{options}, std::system_error);
    service->forgetEverything(); // as a restart does
    EXPECT_THROW(TargetService{options}, std::system_error);
    EXPECT_EQ(put("d", "file", "new"), kDone);
    service.reset();
    EXPECT_NO_THROW(TargetService{options});
}

TEST_F(Target, AnAdditionalFolderGoesWithWhatIsInIt) {
    const std::uint32_t applId = newProcess();
    const TApplManAddFileRequest folder{kMode, kAccessId, applId, 512, "C:\\source", "", "tree", 0};
    EXPECT_EQ(ask<TApplManAddFileResult>(kAddFile, folder).targetPath, "applications/1/files/tree");
    EXPECT_EQ(put("applications/1/files/tree/deep", "f", "content"), kDone);
    const TApplManRemoveFileRequest request{kMode, kAccessId, applId, 512, "tree"};
    EXPECT_EQ(ask<TApplManResult>(kRemoveFile, request).result, 0);
    EXPECT_EQ(codeOf(ask<TApplManResult>(kRemoveFile, request)), 0x14a00810U);
    EXPECT_EQ(filesIn(root / "applications/1/files"), Files{});
}

TEST_F(Target, NoLinkInTheStoreLeadsOutOfIt) {
#if defined(_WIN32)
    GTEST_SKIP() << "makes links as on POSIX";
#endif
    const fs::path outside = around.path() / "outside";
    fs::create_directories(outside);
    std::ofstream{outside / "file"} << "precious";
    fs::create_directory_symlink("../outside", root / "directory");
    fs::create_directories(root / "d");
    fs::create_symlink("../../outside/file", root / "d/file");
    fs::create_directory_symlink("../../outside", root / "d/.kvtarget-stage-1");

    EXPECT_EQ(open("directory", "new", 0), kStoreFailed);
    EXPECT_EQ(open("directory/deeper", "new", 0), kStoreFailed);
    EXPECT_EQ(transfer(kMakeDirectory, MakeDirectoryRequest{"directory", "new"}), kStoreFailed);
    EXPECT_EQ(put("d", "file", "new"), kDone); // takes the link's place
    EXPECT_FALSE(fs::is_symlink(root / "d/file"));
    std::ofstream{root / "d/.kvtarget-stage-2"} << "half";
    restart(); // sweeps
    EXPECT_EQ(filesIn(root / "d").count(".kvtarget-stage-2"), 0U);
    EXPECT_EQ(filesIn(outside), (Files{{"file", "precious"}}));
}

} // namespace
} // namespace simulated_target
