// Our library against a server that is not ours: what it sends is understood there, what it gets is understood here.
#include <limits>
#include <memory>

#include "foreign_peer/child_process.h"
#include "frame/rpc_client_cache.h"
#include "protocol/procedures.h"
#include "support/one_target.h"

namespace applman {
namespace {

constexpr std::uint32_t kAccessId = 16;
constexpr std::uint32_t kApplId = 3;

class CallsToForeignServer : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(createRpcClient(pool_, server_.address().c_str(), &client_), Status::ok) << server_.address();
    }

    template <class Request, class Result>
    std::int32_t call(const Procedure<Request, Result>& procedure, Request request, Reply<Result>& reply) {
        return procedure(*client_, pool_, std::move(request), reply);
    }

    ChildProcess server_{{FOREIGN_SERVER}};
    Pool pool_;
    std::unique_ptr<KV_RPC_PROG_APPLMAN_HOST2Client> client_{};
};

TEST_F(CallsToForeignServer, ValuesOfEveryTagArriveThereAndHere) {
    using Quads = std::vector<std::int64_t>;
    const TApplManValue values[] = {
        std::uint32_t{0xFEDCBA98},
        -1234.0625,
        Text{"Gr\xC3\xB6\xC3\x9F"},
        std::vector<std::uint32_t>{0, 1, 0xFFFFFFFF},
        std::int64_t{-0x0123456789ABCDEF},
        std::vector<Text>{"", "abc", "abcdefgh"},
        std::vector<std::uint8_t>{0x00, 0x7F, 0x80, 0xFF, 0x01},
        Quads{std::numeric_limits<std::int64_t>::min(), 0, std::numeric_limits<std::int64_t>::max()},
    };
    for (std::uint32_t tag = 0; tag < std::size(values); ++tag) { // the server holds the same
        SCOPED_TRACE(tag);
        Reply<TApplManResult> taken{*client_};
        EXPECT_EQ(call(APPLMAN_SET_PARAM, {kMode, kAccessId, kApplId, 100 + tag, values[tag]}, taken), 0);
        Reply<TApplManValueResult> got{*client_};
        EXPECT_EQ(call(APPLMAN_GET_PARAM, {kMode, kAccessId, kApplId, 200 + tag}, got), 0);
        EXPECT_EQ(got->result, static_cast<std::int32_t>(tag));
        EXPECT_EQ(got->value, values[tag]);
    }
}

TEST_F(CallsToForeignServer, AGroupIsOpenedAndAProcessRegistered) {
    Reply<TApplManGroupResult> opened{*client_};
    ASSERT_EQ(call(APPLMAN_OPEN_GROUP, {kAccessId}, opened), 0);
    EXPECT_EQ(opened->first, 7U);
    EXPECT_EQ(opened->result, -5);
    EXPECT_EQ(opened->targetGroupId1, 0x11223344U);
    EXPECT_EQ(opened->targetGroupId2, 0x55667788U);

    const TApplManGroupPart group{{1, 0x11223344, 0x55667788, 3, 5}, {11, 12, 13, 14, 15, 16, 17}, {21, 22}};
    Reply<TApplManRegisterResult> registered{*client_};
    ASSERT_EQ(call(APPLMAN_REGISTER_APPL, {kAccessId, 2, group}, registered), 0);
    EXPECT_EQ(registered->result, -2);
    EXPECT_EQ(registered->applId, static_cast<std::int32_t>(kApplId));
    EXPECT_EQ(registered->firstText, "first");
    EXPECT_EQ(registered->secondText, "second");
}

TEST_F(CallsToForeignServer, AFileIsAnnouncedWithAndWithoutItsRecord) {
    const TApplManAddFileRecord file{kApplId,    5,      "C:\\source.bin",         "store", "name.bin",
                                     0x00ABCDEF, "more", {1, 2, 3, 4, 5, 6, 7, 8}, "end"};
    Reply<TApplManAddFileResult> absent{*client_};
    ASSERT_EQ(call(APPLMAN_ADD_FILE_2, {kAccessId, std::nullopt}, absent), 0);
    EXPECT_EQ(absent->result, 9);

    Reply<TApplManAddFileResult> added{*client_};
    ASSERT_EQ(call(APPLMAN_ADD_FILE_2, {kAccessId, file}, added), 0);
    EXPECT_EQ(added->result, -1);
    EXPECT_EQ(added->targetPath, "store/files");
    EXPECT_EQ(added->targetName, "name.bin");
}

TEST_F(CallsToForeignServer, AFlashApplicationIsCommandedByA64BitId) {
    const TApplManFlashCommand command{
        1, -0x0102030405060708, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}, {'a', 'z'}};
    Reply<TApplManResult> reply{*client_};
    EXPECT_EQ(call(APPLMAN_LOAD_FLASH_APPL, {kAccessId, command}, reply), 0);
}

TEST_F(CallsToForeignServer, WhatTheServerRefusesIsToldApartAndTheConnectionStaysUsable) {
    Reply<TApplManResult> reply{*client_};
    EXPECT_EQ(call(APPLMAN_STEP_APPL, {kAccessId, kApplId}, reply), KvCRpcClient::kProcedureNotOffered);
    EXPECT_EQ(KvPlatform_entryCount(*pool_), 0U);

    const std::int32_t status = call(APPLMAN_GET_COMMAND_STATE, {kMode, kAccessId, kApplId + 1}, reply);
    EXPECT_NE(status, 0);
    EXPECT_NE(status, KvCRpcClient::kProcedureNotOffered);
    EXPECT_EQ(KvPlatform_entryCount(*pool_), 1U);

    EXPECT_EQ(call(APPLMAN_GET_COMMAND_STATE, {kMode, kAccessId, kApplId}, reply), 0);
    EXPECT_EQ(reply->result, 2);
}

} // namespace
} // namespace applman
