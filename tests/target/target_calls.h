// Calls of a target's procedures without a connection, and a store of its own for each test.
#pragma once

#include <fstream>
#include <iterator>
#include <optional>

#include "file_transfer/file_transfer_protocol.h"
#include "protocol/procedure_numbers.h"
#include "support/one_target.h"
#include "target/target_service.h"

namespace simulated_target {

using namespace applman;

constexpr std::uint32_t kMode = 1;
constexpr std::uint32_t kAccessId = 16;

inline std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream{file, std::ios::binary};
    return {std::istreambuf_iterator<char>{stream}, {}};
}

/// Everything that lies below a folder, as paths from there.
inline std::set<std::string> treeOf(const std::filesystem::path& folder) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator{folder}) {
        names.insert(entry.path().lexically_relative(folder).generic_string());
    }
    return names;
}

/// The code of the only message of an error list; 0 when there is not exactly one.
inline std::uint32_t onlyCode(const std::vector<std::uint8_t>& errorList) {
    Pool pool;
    EXPECT_EQ(pool->deSerialize(errorList.data(), static_cast<std::uint32_t>(errorList.size())), 0);
    return pool->getErrorCount() == 1 ? pool->getErrorCode(0) : 0;
}

class TargetCalls : public testing::Test {
protected:
    static Options defaults() {
        Options options;
        options.commandDelay = std::chrono::milliseconds{0};
        return options;
    }

    /// A target anew, on the same store.
    TargetService& restart(Options options = defaults()) {
        options.store = root();
        service_.reset();
        return service_.emplace(options);
    }

    TargetService& service() { return service_ ? *service_ : restart(); }
    std::filesystem::path root() const { return folder_.path() / "store"; }
    const std::filesystem::path& aroundRoot() const { return folder_.path(); }

    kvrpc::RpcReply call(std::uint32_t program, std::uint32_t version, std::uint32_t procedure,
                         const std::vector<std::uint8_t>& arguments, std::uint64_t connection = 1) {
        return service().handle({connection, program, version, procedure, arguments});
    }

    template <class Result, class Request>
    Result ask(std::uint32_t procedure, const Request& request) {
        const auto reply = call(kApplManProgram, kApplManVersion, procedure, wire::bytesOf(request));
        EXPECT_EQ(reply.status, kvrpc::AcceptStatus::success);
        return wire::recordOf<Result>(reply.results);
    }

    template <class Request>
    std::int32_t transfer(std::uint32_t procedure, const Request& request, std::uint64_t connection = 1) {
        const auto reply =
            call(file_transfer::kProgram, file_transfer::kVersion, procedure, wire::bytesOf(request), connection);
        EXPECT_EQ(reply.status, kvrpc::AcceptStatus::success);
        return wire::recordOf<file_transfer::Reply>(reply.results).result;
    }

    std::int32_t open(const std::string& directory, const std::string& name, std::uint64_t size,
                      std::uint64_t connection = 1) {
        return transfer(file_transfer::kOpen, file_transfer::OpenRequest{7, size, directory, name}, connection);
    }
    std::int32_t write(std::uint64_t offset, const std::string& bytes, std::uint64_t connection = 1) {
        return transfer(file_transfer::kWrite, file_transfer::WriteRequest{7, offset, {bytes.begin(), bytes.end()}},
                        connection);
    }
    std::int32_t commit(std::uint64_t connection = 1) {
        return transfer(file_transfer::kCommit, file_transfer::TransferRequest{7}, connection);
    }
    std::int32_t put(const std::string& directory, const std::string& name, const std::string& content,
                     std::uint64_t connection = 1) {
        open(directory, name, content.size(), connection);
        write(0, content, connection);
        return commit(connection);
    }

    TApplManRegisterResult registerProcess(std::uint32_t number, const TApplManGroupPart& group) {
        return ask<TApplManRegisterResult>(kRegisterAppl, TApplManRegisterRequest{kAccessId, number, group});
    }
    TApplManGroupPart openGroup(std::uint32_t size) {
        const auto opened = ask<TApplManGroupResult>(kOpenGroup, TApplManOpenGroupRequest{kAccessId});
        EXPECT_EQ(opened.result, 0);
        return {.words = {0, opened.targetGroupId1, opened.targetGroupId2, size, 0}};
    }
    std::uint32_t newProcess() { return static_cast<std::uint32_t>(registerProcess(1, openGroup(1)).applId); }

    TApplManResult command(std::uint32_t procedure, std::uint32_t applId) {
        if (procedure == kTerminateAppl || procedure >= kPauseAppl) {
            return ask<TApplManResult>(procedure, TApplManPairRequest{kAccessId, applId});
        }
        return ask<TApplManResult>(procedure, TApplManRequest{kMode, kAccessId, applId});
    }
    TApplManResult commandState(std::uint32_t applId) { return command(kGetCommandState, applId); }

    TApplManResult set(std::uint32_t applId, std::uint32_t number, TApplManValue value) {
        return ask<TApplManResult>(kSetParam,
                                   TApplManSetParamRequest{kMode, kAccessId, applId, number, std::move(value)});
    }
    TApplManValueResult get(std::uint32_t applId, std::uint32_t number) {
        return ask<TApplManValueResult>(kGetParam, TApplManGetParamRequest{kMode, kAccessId, applId, number});
    }
    template <class Arm>
    Arm valueOf(std::uint32_t applId, std::uint32_t number) {
        const auto reply = get(applId, number);
        EXPECT_EQ(reply.result, 0) << "parameter " << number;
        return std::get<Arm>(reply.value);
    }
    std::string textOf(std::uint32_t applId, std::uint32_t number) {
        return valueOf<Text>(applId, number).value_or("absent");
    }

    /// Transfers a binary to where the target wants it.
    void putBinary(std::uint32_t applId) {
        EXPECT_EQ(put(textOf(applId, 4), textOf(applId, 3), "binary"), file_transfer::kDone);
    }

private:
    TemporaryFolder folder_;
    std::optional<TargetService> service_{};
};

} // namespace simulated_target
