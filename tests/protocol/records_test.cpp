// The wire form of the records, byte by byte, and what decoding does with bytes that are no record.
#include "protocol/records.h"

#include <string>

#include <gtest/gtest.h>

#include "support/wire.h"

using namespace applman;

namespace {

std::string hex(const std::vector<std::uint8_t>& bytes) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i > 0 && i % 4 == 0) { text += ' '; }
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 15];
    }
    return text;
}

template <class Record>
std::string wireOf(const Record& record) {
    return hex(wire::bytesOf(record));
}

std::string zeros(std::size_t words) { return words == 0 ? "" : " 00000000" + zeros(words - 1); }

} // namespace

TEST(Records, RequestsHaveTheirFieldsInWireOrder) {
    EXPECT_EQ(wireOf(TApplManRequest{1, 16, 3}), "00000001 00000010 00000003");
    EXPECT_EQ(wireOf(TApplManPairRequest{16, 3}), "00000010 00000003");
    EXPECT_EQ(wireOf(TApplManOpenGroupRequest{16}), "00000010");
    EXPECT_EQ(wireOf(TApplManGetParamRequest{1, 2, 3, 4}), "00000001 00000002 00000003 00000004");
    EXPECT_EQ(wireOf(TApplManSetParamRequest{1, 2, 3, 4, Text{"abc"}}),
              "00000001 00000002 00000003 00000004 00000002 00000003 61626300");
    EXPECT_EQ(wireOf(TApplManSetFlashParamRequest{2, 3, 64, std::vector<std::int64_t>{-2}}),
              "00000002 00000003 00000040 00000007 00000001 ffffffff fffffffe");
    EXPECT_EQ(wireOf(TApplManRemoveFileRequest{1, 2, 3, 4, "f"}),
              "00000001 00000002 00000003 00000004 00000001 66000000");
    EXPECT_EQ(wireOf(TApplManAddFileRequest{1, 2, 3, 4, "a", "b", "", 5}),
              "00000001 00000002 00000003 00000004 00000001 61000000 00000001 62000000 00000000 00000005");
    EXPECT_EQ(wireOf(TApplManAddFileRequest2{9, TApplManAddFileRecord{1, 2, "a", "b", "c", 3, "d", {}, ""}}),
              "00000009 00000001 00000001 00000002 00000001 61000000 00000001 62000000 00000001 63000000 00000003 "
              "00000001 64000000" +
                  zeros(9));
    EXPECT_EQ(wireOf(TApplManAddFileRequest2{9, {}}), "00000009 00000000");
    EXPECT_EQ(wireOf(TApplManRegisterRequest{9, 2, {{0, 5, 6, 3, 0}, {}, {}}}),
              "00000009 00000002 00000000 00000005 00000006 00000003 00000000" + zeros(8));
    EXPECT_EQ(wireOf(TApplManFlashRequest{9, {1, 0x1122334455667788, {}, {}}}),
              "00000009 00000001 11223344 55667788" + zeros(17));
    EXPECT_EQ(wireOf(TApplManFlashCommand{0, 0, {}, {'A', '\xff'}}).substr(19 * 9), "00000002 00000041 ffffffff");
}

TEST(Records, RepliesHaveTheirFieldsInWireOrder) {
    EXPECT_EQ(wireOf(TApplManResult{-1, {0xaa}}), "ffffffff 00000001 aa000000");
    EXPECT_EQ(wireOf(TApplManRegisterResult{0, 7, "a", "b", {}}),
              "00000000 00000007 00000001 61000000 00000001 62000000 00000000");
    EXPECT_EQ(wireOf(TApplManFileListResult{1, 2, {{"a", "b", "c", 9}}, {}}),
              "00000001 00000002 00000001 00000001 61000000 00000001 62000000 00000001 63000000 00000009 00000000");
    EXPECT_EQ(wireOf(TApplManAddFileResult{1, "p", {0xaa}, "n"}),
              "00000001 00000001 70000000 00000001 aa000000 00000001 6e000000");
    EXPECT_EQ(wireOf(TApplManGroupResult{1, 2, {}, 3, 4}), "00000001 00000002 00000000 00000003 00000004");
    EXPECT_EQ(wireOf(TApplManAddFileResult{}), "00000000 00000000 00000000 00000000") << "what is absent is sent empty";
    EXPECT_EQ(wireOf(TApplManCoreIdResult{1, 2, {}, {3, 4}}), "00000001 00000002 00000000 00000002 00000003 00000004");
    EXPECT_EQ(wireOf(TApplManFlashListResult{1, 2, {}, {3}, {}, {4}}),
              "00000001 00000002 00000000 00000001 00000003" + zeros(16) + " 00000001 00000004");
}
