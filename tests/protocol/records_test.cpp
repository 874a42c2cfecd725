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
using Words = std::vector<std::uint32_t>;
using Quads = std::vector<std::int64_t>;

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
Words wireOf(const Record& record, Foreign foreign) {
    const Bytes bytes = wire::bytesOf(record);
    EXPECT_EQ(wire::bytesOf(wire::recordOf<Record>(bytes)), bytes);
    EXPECT_EQ(sentOn(foreign, bytes), bytes);
    return wire::wordsOf(bytes);
}

} // namespace

TEST(Records, AValueIsItsTagAndItsArm) {
    const std::pair<TApplManValue, Words> rows[] = {
        {std::uint32_t{0xfedcba98}, {0, 0xfedcba98}},
        {-1234.0625, {1, 0xc0934840, 0}},
        {Text{"Gr\u00f6\u00dfe"}, {2, 7, 0x4772c3b6, 0xc39f6500}},
        {Words{1, 0xffffffff}, {3, 2, 1, 0xffffffff}},
        {std::int64_t{-0x0123456789abcdef}, {4, 0xfedcba98, 0x76543211}},
        {std::vector<Text>{"", "abcd"}, {5, 2, 0, 4, 0x61626364}},
        {Bytes{0x00, 0x7f, 0x80, 0xff, 0x01}, {6, 5, 0x007f80ff, 0x01000000}},
        {Quads{std::numeric_limits<std::int64_t>::min(), 1}, {7, 2, 0x80000000, 0, 0, 1}},
    };
    for (const auto& [value, bytes] : rows) {
        EXPECT_EQ(wireOf(value, FOREIGN(applman_value)), bytes);
    }
}

TEST(Records, RequestsHaveTheirFieldsInWireOrder) {
    EXPECT_EQ(wireOf(TApplManRequest{1, 16, 3}, FOREIGN(applman_request)), (Words{1, 16, 3}));
    EXPECT_EQ(wireOf(TApplManRequest{1, 16, 3}, FOREIGN(applman_get_applications_request)), (Words{1, 16, 3}));
    EXPECT_EQ(wireOf(TApplManRequest{16, 7, 41}, FOREIGN(applman_get_flash_param_request)), (Words{16, 7, 41}));
    EXPECT_EQ(wireOf(TApplManPairRequest{16, 3}, FOREIGN(applman_pair_request)), (Words{16, 3}));
    EXPECT_EQ(wireOf(TApplManPairRequest{16, 2}, FOREIGN(applman_get_core_ids_request)), (Words{16, 2}));
    EXPECT_EQ(wireOf(TApplManPairRequest{16, 1}, FOREIGN(applman_get_flash_applications_request)), (Words{16, 1}));
    EXPECT_EQ(wireOf(TApplManOpenGroupRequest{16}, FOREIGN(applman_open_group_request)), (Words{16}));
    EXPECT_EQ(wireOf(TApplManGetParamRequest{1, 2, 3, 4}, FOREIGN(applman_get_param_request)), (Words{1, 2, 3, 4}));
    EXPECT_EQ(wireOf(TApplManSetParamRequest{1, 2, 3, 4, Text{"abc"}}, FOREIGN(applman_set_param_request)),
              (Words{1, 2, 3, 4, 2, 3, 0x61626300}));
    EXPECT_EQ(wireOf(TApplManSetFlashParamRequest{2, 3, 64, Quads{-2}}, FOREIGN(applman_set_flash_param_request)),
              (Words{2, 3, 64, 7, 1, 0xffffffff, 0xfffffffe}));
    EXPECT_EQ(wireOf(TApplManRemoveFileRequest{1, 2, 3, 4, "f"}, FOREIGN(applman_remove_file_request)),
              (Words{1, 2, 3, 4, 1, 0x66000000}));
    EXPECT_EQ(wireOf(TApplManAddFileRequest{1, 2, 3, 4, "a", "b", "", 5}, FOREIGN(applman_add_file_request)),
              (Words{1, 2, 3, 4, 1, 0x61000000, 1, 0x62000000, 0, 5}));
    const TApplManAddFileRecord file{1, 2, "a", "b", "c", 3, "d", {1, 2, 3, 4, 5, 6, 7, 8}, "e"};
    EXPECT_EQ(wireOf(TApplManAddFileRequest2{9, file}, FOREIGN(applman_add_file_request_2)),
              (Words{9,          1, 1, 2, 1, 0x61000000, 1, 0x62000000, 1, 0x63000000, 3,         1,
                     0x64000000, 1, 2, 3, 4, 5,          6, 7,          8, 1,          0x65000000}));
    EXPECT_EQ(wireOf(TApplManAddFileRequest2{9, {}}, FOREIGN(applman_add_file_request_2)), (Words{9, 0}));
    const TApplManGroupPart group{{4, 5, 6, 3, 8}, {1, 2, 3, 4, 5, 6, 7}, {21, 22}};
    EXPECT_EQ(wireOf(TApplManRegisterRequest{9, 2, group}, FOREIGN(applman_register_request)),
              (Words{9, 2, 4, 5, 6, 3, 8, 1, 2, 3, 4, 5, 6, 7, 2, 21, 22}));
    const TApplManFlashCommand command{1, 0x1122334455667788, {}, {'A', '\xff'}};
    EXPECT_EQ(wireOf(TApplManFlashRequest{9, command}, FOREIGN(applman_flash_request)),
              (Words{9, 1, 0x11223344, 0x55667788, 0, 0, 0, 0, 0, 0,          0,         0,
                     0, 0, 0,          0,          0, 0, 0, 0, 2, 0x00000041, 0xffffffff}));
}

TEST(Records, RepliesHaveTheirFieldsInWireOrder) {
    EXPECT_EQ(wireOf(TApplManResult{-1, {0xaa}}, FOREIGN(applman_result)), (Words{0xffffffff, 1, 0xaa000000}));
    EXPECT_EQ(wireOf(TApplManValueResult{-1, 7U, {0xaa}}, FOREIGN(applman_value_result)),
              (Words{0xffffffff, 0, 7, 1, 0xaa000000}));
    EXPECT_EQ(wireOf(TApplManRegisterResult{-1, 7, "a", "b", {0xaa}}, FOREIGN(applman_register_result)),
              (Words{0xffffffff, 7, 1, 0x61000000, 1, 0x62000000, 1, 0xaa000000}));
    EXPECT_EQ(wireOf(TApplManFileListResult{1, -2, {{"a", "b", "c", 9}}, {0xaa}}, FOREIGN(applman_file_list_result)),
              (Words{1, 0xfffffffe, 1, 1, 0x61000000, 1, 0x62000000, 1, 0x63000000, 9, 1, 0xaa000000}));
    EXPECT_EQ(wireOf(TApplManAddFileResult{1, "p", {0xaa}, "n"}, FOREIGN(applman_add_file_result)),
              (Words{1, 1, 0x70000000, 1, 0xaa000000, 1, 0x6e000000}));
    EXPECT_EQ(wireOf(TApplManAddFileResult{}, FOREIGN(applman_add_file_result)), (Words{0, 0, 0, 0}))
        << "what is absent is sent empty";
    EXPECT_EQ(wireOf(TApplManGroupResult{1, -2, {0xaa}, 3, 4}, FOREIGN(applman_group_result)),
              (Words{1, 0xfffffffe, 1, 0xaa000000, 3, 4}));
    EXPECT_EQ(wireOf(TApplManCoreIdResult{1, -2, {}, {3, 4}}, FOREIGN(applman_core_id_result)),
              (Words{1, 0xfffffffe, 0, 2, 3, 4}));
    EXPECT_EQ(wireOf(TApplManFlashListResult{1, -2, {}, {3}, {}, {4}}, FOREIGN(applman_flash_list_result)),
              (Words{1, 0xfffffffe, 0, 1, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 4}));
}
