// Our library against a server that is not ours: what it sends is understood there, what it gets is understood here.
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "KvPlatformHost.h"
#include "foreign_peer/child_process.h"
#include "frame/rpc_client_cache.h"
#include "protocol/procedures.h"

namespace applman {
namespace {

constexpr std::uint32_t kAccessId = 16;
constexpr std::uint32_t kApplId = 3;

class CallsToForeignServer : public testing::Test {
protected:
    void SetUp() override {
        KV_RPC_PROG_APPLMAN_HOST2Client* client = nullptr;
        ASSERT_EQ(createRpcClient(*pool_, server_.address().c_str(), &client), Status::ok) << server_.firstLine();
        client_.reset(client);
    }

    template <class Request, class Result>
    std::int32_t call(const Procedure<Request, Result>& procedure, Request request, Reply<Result>& reply) {
        return procedure(*client_, *pool_, std::move(request), reply);
    }

    void expectTheServersMessage() {
        ASSERT_EQ(KvPlatform_entryCount(*pool_), 1U);
        EXPECT_EQ(KvPlatform_entryCode(*pool_, 0), 0x14a00804U);
        EXPECT_EQ(KvPlatform_entryLine(*pool_, 0), 42U);
        EXPECT_STREQ(KvPlatform_entryOperation(*pool_, 0), "foreignServer");
        EXPECT_STREQ(KvPlatform_entrySignature(*pool_, 0), "%s%u%d%x");
        const char* const arguments[] = {"why", "4000000000", "-7", "abc"};
        ASSERT_EQ(KvPlatform_entryArgumentCount(*pool_, 0), std::size(arguments));
        for (std::uint32_t i = 0; i < std::size(arguments); ++i) {
            EXPECT_STREQ(KvPlatform_entryArgument(*pool_, 0, i), arguments[i]);
        }
    }

    ChildProcess server_{{FOREIGN_SERVER}};
    std::unique_ptr<KvCErrorListPool, void (*)(KvCErrorListPool*)> pool_{KvPlatform_createPool(),
                                                                         KvPlatform_deletePool};
    std::unique_ptr<KV_RPC_PROG_APPLMAN_HOST2Client> client_{};
};

/// The values that the server holds; the index is the tag.
std::vector<TApplManValue> values() {
    using Quads = std::vector<std::int64_t>;
    return {
        std::uint32_t{0xFEDCBA98},
        -1234.0625,
        Text{"Gr\xC3\xB6\xC3\x9F"
             "e"},
        std::vector<std::uint32_t>{0, 1, 0xFFFFFFFF},
        std::int64_t{-0x0123456789ABCDEF},
        std::vector<Text>{"", "abc", "abcdefgh"},
        std::vector<std::uint8_t>{0x00, 0x7F, 0x80, 0xFF, 0x01},
        Quads{std::numeric_limits<std::int64_t>::min(), 0, std::numeric_limits<std::int64_t>::max()},
    };
}

TEST_F(CallsToForeignServer, ValuesOfEveryTagArriveThere) {
    for (std::uint32_t tag = 0; const TApplManValue& value : values()) {
        Reply<TApplManResult> reply{*client_};
        EXPECT_EQ(call(APPLMAN_SET_PARAM, {kMode, kAccessId, kApplId, 100 + tag, value}, reply), 0) << "tag " << tag;
        ++tag;
    }
}

TEST_F(CallsToForeignServer, ValuesOfEveryTagArriveHere) {
    for (std::uint32_t tag = 0; const TApplManValue& value : values()) {
        Reply<TApplManValueResult> reply{*client_};
        EXPECT_EQ(call(APPLMAN_GET_PARAM, {kMode, kAccessId, kApplId, 200 + tag}, reply), 0) << "tag " << tag;
        EXPECT_EQ(reply->result, static_cast<std::int32_t>(tag));
        EXPECT_EQ(reply->value, value) << "tag " << tag;
        ++tag;
    }
}

TEST_F(CallsToForeignServer, AGroupIsOpenedAndTheServersMessagesArriveHere) {
    Reply<TApplManGroupResult> reply{*client_};
    ASSERT_EQ(call(APPLMAN_OPEN_GROUP, {kAccessId}, reply), 0);
    EXPECT_EQ(reply->first, 7U);
    EXPECT_EQ(reply->result, -5);
    EXPECT_EQ(reply->targetGroupId1, 0x11223344U);
    EXPECT_EQ(reply->targetGroupId2, 0x55667788U);
    expectTheServersMessage();
}

TEST_F(CallsToForeignServer, AProcessIsRegistered) {
    const TApplManGroupPart group{{1, 0x11223344, 0x55667788, 3, 5}, {11, 12, 13, 14, 15, 16, 17}, {21, 22}};
    Reply<TApplManRegisterResult> reply{*client_};
    ASSERT_EQ(call(APPLMAN_REGISTER_APPL, {kAccessId, 2, group}, reply), 0);
    EXPECT_EQ(reply->result, -2);
    EXPECT_EQ(reply->applId, static_cast<std::int32_t>(kApplId));
    EXPECT_EQ(reply->firstText, "first");
    EXPECT_EQ(reply->secondText, "second");
}

TEST_F(CallsToForeignServer, TheCommandStateIsRead) {
    Reply<TApplManResult> reply{*client_};
    ASSERT_EQ(call(APPLMAN_GET_COMMAND_STATE, {kMode, kAccessId, kApplId}, reply), 0);
    EXPECT_EQ(reply->result, 2);
    EXPECT_EQ(KvPlatform_entryCount(*pool_), 0U);
}

TEST_F(CallsToForeignServer, AFileIsAnnouncedWithAndWithoutItsRecord) {
    const TApplManAddFileRecord file{.applId = kApplId,
                                     .fileType = 5,
                                     .sourcePath = "C:\\source.bin",
                                     .targetPath = "store",
                                     .targetName = "name.bin",
                                     .fileFlags = 0x00ABCDEF,
                                     .additionalText = "more",
                                     .reserved = {1, 2, 3, 4, 5, 6, 7, 8},
                                     .finalText = "end"};
    Reply<TApplManAddFileResult> absent{*client_};
    ASSERT_EQ(call(APPLMAN_ADD_FILE_2, {kAccessId, std::nullopt}, absent), 0);
    EXPECT_EQ(absent->result, 9);

    Reply<TApplManAddFileResult> added{*client_};
    ASSERT_EQ(call(APPLMAN_ADD_FILE_2, {kAccessId, file}, added), 0);
    EXPECT_EQ(added->result, -1);
    EXPECT_EQ(added->targetPath, "store/files");
    EXPECT_EQ(added->targetName, "name.bin");
    expectTheServersMessage();
}

TEST_F(CallsToForeignServer, AFlashApplicationIsLoaded) {
    const TApplManFlashCommand command{
        1, -0x0102030405060708, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}, {'a', 'z'}};
    Reply<TApplManResult> reply{*client_};
    ASSERT_EQ(call(APPLMAN_LOAD_FLASH_APPL, {kAccessId, command}, reply), 0);
    EXPECT_EQ(reply->result, 4);
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
}

} // namespace
} // namespace applman
