// Writing parameters: which values are sent how, what is refused before anything is sent, what is tolerated.
#include "api/api_test.h"

using namespace applman;

namespace {

class Parameters : public ApiTest {
protected:
    std::int32_t set(std::uint32_t paramId, const void* value, std::int32_t size, std::uint32_t applId = 5) {
        return KvApplMan_setApplParameter(pool, t.device, t.access, applId, paramId, value, size);
    }

    const Words words{1, 2, 3};
    const std::int64_t quad = -5;
};

} // namespace

TEST_F(Parameters, EachIsSentUnderTheTargetsNumberInItsOwnType) {
    const double number = 1.5;
    const char* const texts[] = {"a", "bc"};
    struct Row {
        std::uint32_t paramId;
        const void* value;
        std::int32_t size;
        std::uint32_t targetParamId;
        TApplManValue sent;
    };
    const Row rows[] = {
        {1001, texts, 2, 13, std::vector<Text>{"a", "bc"}},
        {1002, "xyz", 1, 15, Text{"xyz"}}, // the size does not cut a text
        {1003, "xyz", 0, 14, Text{"xyz"}},
        {1004, &quad, 8, 16, quad},
        {1005, words.data(), 10, 17, Words{1, 2}},
        {1005, words.data(), 3, 17, Words{}},
        {1007, "xyz", 9, 8, Text{"xyz"}},
        {1008, words.data(), 4, 23, words[0]},
        {1009, words.data(), 4, 24, words[0]},
        {1010, words.data(), 4, 28, words[0]},
        {1011, "", 0, 42, Text{""}},
        {3072, words.data(), 4, 1024, words[0]},
        {3073, &number, 8, 134, number},
        {3074, &number, 8, 131, number},
    };
    t.target.scriptAlways(kSetParam, wire::result(0));
    for (const Row& row : rows) {
        t.target.forgetRequests();
        EXPECT_EQ(set(row.paramId, row.value, row.size), 0) << row.paramId;
        EXPECT_EQ(sentWords(0, 4), (Words{1, t.accessId, 5, row.targetParamId}));
        EXPECT_EQ(request<TApplManSetParamRequest>(0).value, row.sent) << row.paramId;
    }
}

TEST_F(Parameters, OnlyMinusOneIsARefusalAndOnlySomeAreTolerated) {
    struct Row {
        std::uint32_t paramId;
        std::uint32_t applId;
        std::int32_t result;
        std::uint32_t code;
        std::int32_t status;
        Words codes;
    };
    for (const Row& row : {Row{1008, 5, -1, 0x14a00804, 0, {}}, Row{1010, 5, -1, 0x14a00804, 0, {}},
                           Row{1008, 0, -1, 0x14a00804, -176, {4711, 0x14a00804, 0x12500028}},
                           Row{1008, 5, -1, 0x14a00805, -176, {4711, 0x14a00805, 0x12500028}},
                           Row{1002, 5, -1, 0x14a00804, -176, {4711, 0x14a00804, 0x12500028}},
                           Row{1008, 5, 5, 0x14a00804, 0, {4711, 0x14a00804}}}) {
        pool->reset();
        KvPlatform_addEntry(pool, 4711);
        t.target.script(kSetParam, wire::result(row.result, {row.code}));
        const void* const value = row.paramId == 1002 ? static_cast<const void*>("x") : words.data();
        EXPECT_EQ(set(row.paramId, value, 4, row.applId), row.status);
        EXPECT_EQ(pool.codes(), row.codes) << row.paramId << " of " << row.applId;
    }
}
