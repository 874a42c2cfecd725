// The wire form of the records, byte by byte. Where rpcgen is at hand, what it makes of docs/applman.x reads and writes the
// same bytes.
#include "protocol/records.h"

#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "support/wire.h"

#if defined(KV_FOREIGN_ROUTINES)
#include "applman.h"
#define FOREIGN(record) xdr_##record
#else
#define FOREIGN(record) nullptr
#endif

using namespace applman;

namespace {

using Bytes = std::vector<std::uint8_t>;
using Quads = std::vector<std::int64_t>;

std::string hex(const Bytes& bytes) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i > 0 && i % 4 == 0) { text += ' '; }
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 15];
    }
    return text;
}

#if defined(KV_FOREIGN_ROUTINES)
/// What a foreign program sends when it sends on what it has received.
template <class Record>
Bytes sentOn(bool_t (*routine)(XDR*, Record*), Bytes bytes) {
    const auto size = static_cast<u_int>(bytes.size());
    Record record{};
    Bytes sent(size);
    XDR xdr;
    xdrmem_create(&xdr, reinterpret_cast<char*>(bytes.data()), size, XDR_DECODE);
    EXPECT_TRUE(routine(&xdr, &record) != 0 && xdr_getpos(&xdr) == size);
    xdrmem_create(&xdr, reinterpret_cast<char*>(sent.data()), size, XDR_ENCODE);
    EXPECT_TRUE(routine(&xdr, &record) != 0 && xdr_getpos(&xdr) == size);
    xdr_free(reinterpret_cast<xdrproc_t>(routine), &record);
    return sent;
}
#else
Bytes sentOn(std::nullptr_t, Bytes bytes) { return bytes; }
#endif

template <class Record, class Foreign>
std::string wireOf(const Record& record, Foreign foreign) {
    const Bytes bytes = wire::bytesOf(record);
    EXPECT_EQ(hex(wire::bytesOf(wire::recordOf<Record>(bytes))), hex(bytes));
    EXPECT_EQ(hex(sentOn(foreign, bytes)), hex(bytes));
    return hex(bytes);
}

std::string zeros(std::size_t words) { return words == 0 ? "" : " 00000000" + zeros(words - 1); }

} // namespace

TEST(Records, AValueIsItsTagAndItsArm) {
    const std::pair<TApplManValue, std::string> rows[] = {
        {std::uint32_t{0xfedcba98}, "00000000 fedcba98"},
        {-1234.0625, "00000001 c0934840 00000000"},
        {Text{"Gr\u00f6\u00dfe"}, "00000002 00000007 4772c3b6 c39f6500"},
        {std::vector<std::uint32_t>{1, 0xffffffff}, "00000003 00000002 00000001 ffffffff"},
        {std::int64_t{-0x0123456789abcdef}, "00000004 fedcba98 76543211"},
        {std::vector<Text>{"", "abcd"}, "00000005 00000002 00000000 00000004 61626364"},
        {Bytes{0x00, 0x7f, 0x80, 0xff, 0x01}, "00000006 00000005 007f80ff 01000000"},
        {Quads{std::numeric_limits<std::int64_t>::min(), 1}, "00000007 00000002 80000000 00000000 00000000 00000001"},
    };
    for (const auto& [value, bytes] : rows) {
        EXPECT_EQ(wireOf(value, FOREIGN(applman_value)), bytes);
    }
}

TEST(Records, RequestsHaveTheirFieldsInWireOrder) {
    EXPECT_EQ(wireOf(TApplManRequest{1, 16, 3}, FOREIGN(applman_request)), "00000001 00000010 00000003");
    EXPECT_EQ(wireOf(TApplManPairRequest{16, 3}, FOREIGN(applman_pair_request)), "00000010 00000003");
    EXPECT_EQ(wireOf(TApplManOpenGroupRequest{16}, FOREIGN(uint32_t)), "00000010");
    EXPECT_EQ(wireOf(TApplManGetParamRequest{1, 2, 3, 4}, FOREIGN(applman_get_param_request)),
              "00000001 00000002 00000003 00000004");
    EXPECT_EQ(wireOf(TApplManSetParamRequest{1, 2, 3, 4, Text{"abc"}}, FOREIGN(applman_set_param_request)),
              "00000001 00000002 00000003 00000004 00000002 00000003 61626300");
    EXPECT_EQ(wireOf(TApplManSetFlashParamRequest{2, 3, 64, Quads{-2}}, FOREIGN(applman_set_flash_param_request)),
              "00000002 00000003 00000040 00000007 00000001 ffffffff fffffffe");
    EXPECT_EQ(wireOf(TApplManRemoveFileRequest{1, 2, 3, 4, "f"}, FOREIGN(applman_remove_file_request)),
              "00000001 00000002 00000003 00000004 00000001 66000000");
    EXPECT_EQ(wireOf(TApplManAddFileRequest{1, 2, 3, 4, "a", "b", "", 5}, FOREIGN(applman_add_file_request)),
              "00000001 00000002 00000003 00000004 00000001 61000000 00000001 62000000 00000000 00000005");
    const TApplManAddFileRecord file{1, 2, "a", "b", "c", 3, "d", {1, 2, 3, 4, 5, 6, 7, 8}, "e"};
    EXPECT_EQ(wireOf(TApplManAddFileRequest2{9, file}, FOREIGN(applman_add_file_request_2)),
              "00000009 00000001 00000001 00000002 00000001 61000000 00000001 62000000 00000001 63000000 00000003 "
              "00000001 64000000 00000001 00000002 00000003 00000004 00000005 00000006 00000007 00000008 "
              "00000001 65000000");
    EXPECT_EQ(wireOf(TApplManAddFileRequest2{9, {}}, FOREIGN(applman_add_file_request_2)), "00000009 00000000");
    const TApplManGroupPart group{{4, 5, 6, 3, 8}, {1, 2, 3, 4, 5, 6, 7}, {21, 22}};
    EXPECT_EQ(wireOf(TApplManRegisterRequest{9, 2, group}, FOREIGN(applman_register_request)),
              "00000009 00000002 00000004 00000005 00000006 00000003 00000008 00000001 00000002 00000003 00000004 "
              "00000005 00000006 00000007 00000002 00000015 00000016");
    const TApplManFlashCommand command{1, 0x1122334455667788, {}, {'A', '\xff'}};
    EXPECT_EQ(wireOf(TApplManFlashRequest{9, command}, FOREIGN(applman_flash_request)),
              "00000009 00000001 11223344 55667788" + zeros(16) + " 00000002 00000041 ffffffff");
}

TEST(Records, RepliesHaveTheirFieldsInWireOrder) {
    EXPECT_EQ(wireOf(TApplManResult{-1, {0xaa}}, FOREIGN(applman_result)), "ffffffff 00000001 aa000000");
    EXPECT_EQ(wireOf(TApplManValueResult{-1, 7U, {0xaa}}, FOREIGN(applman_value_result)),
              "ffffffff 00000000 00000007 00000001 aa000000");
    EXPECT_EQ(wireOf(TApplManRegisterResult{-1, 7, "a", "b", {0xaa}}, FOREIGN(applman_register_result)),
              "ffffffff 00000007 00000001 61000000 00000001 62000000 00000001 aa000000");
    EXPECT_EQ(
        wireOf(TApplManFileListResult{1, -2, {{"a", "b", "c", 9}}, {0xaa}}, FOREIGN(applman_file_list_result)),
        "00000001 fffffffe 00000001 00000001 61000000 00000001 62000000 00000001 63000000 00000009 00000001 aa000000");
    EXPECT_EQ(wireOf(TApplManAddFileResult{1, "p", {0xaa}, "n"}, FOREIGN(applman_add_file_result)),
              "00000001 00000001 70000000 00000001 aa000000 00000001 6e000000");
    EXPECT_EQ(wireOf(TApplManAddFileResult{}, FOREIGN(applman_add_file_result)), "00000000 00000000 00000000 00000000")
        << "what is absent is sent empty";
    EXPECT_EQ(wireOf(TApplManGroupResult{1, -2, {0xaa}, 3, 4}, FOREIGN(applman_group_result)),
              "00000001 fffffffe 00000001 aa000000 00000003 00000004");
    EXPECT_EQ(wireOf(TApplManCoreIdResult{1, -2, {}, {3, 4}}, FOREIGN(applman_core_id_result)),
              "00000001 fffffffe 00000000 00000002 00000003 00000004");
    EXPECT_EQ(wireOf(TApplManFlashListResult{1, -2, {}, {3}, {}, {4}}, FOREIGN(applman_flash_list_result)),
              "00000001 fffffffe 00000000 00000001 00000003" + zeros(16) + " 00000001 00000004");
}
