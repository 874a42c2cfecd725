// Writing parameters: which values are sent how, what is refused before anything is sent, what is tolerated.
#include <cstring>

#include "api/KvApplicationManagerAP.h"
#include "protocol/procedure_numbers.h"
#include "support/one_target.h"

using namespace applman;

namespace {

class Parameters : public OneTarget {
protected:
    std::int32_t set(std::uint32_t paramId, const void* value, std::int32_t size, std::uint32_t applId = 5) {
        return KvApplMan_setApplParameter(pool, t.device, t.access, applId, paramId, value, size);
    }
};

std::string self(const char* what) { return std::string("KvApplMan_setApplParameter ") + what; }

} // namespace

TEST_F(Parameters, EachIsSentUnderTheTargetsNumberInItsOwnType) {
    const std::uint32_t words[] = {1, 2, 3};
    const std::int64_t quad = -5;
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
        {1001, texts, 0, 13, std::vector<Text>{}},
        {1002, "xyz", 1, 15, Text{"xyz"}}, // the size does not cut a text
        {1003, "xyz", 0, 14, Text{"xyz"}},
        {1004, &quad, 8, 16, quad},
        {1005, words, 10, 17, std::vector<std::uint32_t>{1, 2}},
        {1005, words, 3, 17, std::vector<std::uint32_t>{}},
        {1007, "xyz", 9, 8, Text{"xyz"}},
        {1008, words, 4, 23, words[0]},
        {1009, words, 4, 24, words[0]},
        {1010, words, 4, 28, words[0]},
        {1011, "", 0, 42, Text{""}},
        {3072, words, 4, 1024, words[0]},
        {3073, &number, 8, 134, number},
        {3074, &number, 8, 131, number},
        {3075, texts, 1, 43, std::vector<Text>{"a"}},
    };
    t.target.scriptAlways(kSetParam, wire::result(0));
    for (const Row& row : rows) {
        t.target.forgetRequests();
        EXPECT_EQ(set(row.paramId, row.value, row.size), 0) << row.paramId;
        const auto asked = request<TApplManSetParamRequest>(0);
        EXPECT_EQ((std::array{asked.mode, asked.accessId, asked.applId, asked.targetParamId}),
                  (std::array<std::uint32_t, 4>{1, t.accessId, 5, row.targetParamId}));
        EXPECT_EQ(asked.value, row.sent) << row.paramId;
    }
    char bytes[9] = {};
    std::memcpy(bytes + 1, &quad, sizeof quad);
    EXPECT_EQ(set(1004, bytes + 1, 8), 0) << "values need no alignment";
}

TEST_F(Parameters, ArgumentsAreJudgedInTheirOrderBeforeTheHandles) {
    const std::uint32_t word = 1;
    const char* const texts[] = {"a", nullptr};
    struct Row {
        std::uint32_t paramId;
        const void* value;
        std::int32_t size;
        std::int32_t status;
        const char* message;
    };
    const Row rows[] = {
        {1006, nullptr, -1, -100, "1024"},     {1001, nullptr, 0, -100, "1024"},
        {1006, &word, -1, -200, "0x12500012"}, {1006, &word, 4, -205, "0x12500014"},
        {1000, &word, 4, -205, "0x12500014"},  {1012, &word, 4, -205, "0x12500014"},
        {3071, &word, 4, -205, "0x12500014"},  {3076, &word, 4, -205, "0x12500014"},
        {1008, &word, 8, -200, "0x12500012"},  {1004, &word, 4, -200, "0x12500012"},
        {3073, &word, 4, -200, "0x12500012"},  {1001, texts, 2, -100, "1024"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(KvApplMan_setApplParameter(pool, nullptr, nullptr, 5, row.paramId, row.value, row.size), row.status);
        EXPECT_EQ(messages(pool), Messages{self(row.message)}) << row.paramId;
        pool->reset();
    }
    EXPECT_EQ(KvApplMan_setApplParameter(pool, nullptr, nullptr, 5, 1008, &word, 4), -100);
    EXPECT_EQ(messages(pool), Messages{"checkDeviceAndAccessRestrictionHandle 1024"});
}

TEST_F(Parameters, OnlyMinusOneIsARefusalAndOnlySomeAreTolerated) {
    const std::uint32_t word = 1;
    struct Row {
        std::uint32_t paramId;
        std::uint32_t applId;
        std::int32_t result;
        std::uint32_t code;
        std::int32_t status;
    };
    for (const Row& row :
         {Row{1008, 5, -1, 0x14a00804, 0}, Row{1010, 5, -1, 0x14a00804, 0}, Row{1008, 0, -1, 0x14a00804, -176},
          Row{1008, 5, -1, 0x14a00805, -176}, Row{1002, 5, -1, 0x14a00804, -176}, Row{1008, 5, 5, 0x14a00804, 0}}) {
        pool->reset();
        KvPlatform_addEntry(pool, 4711);
        t.target.script(kSetParam, wire::result(row.result, {row.code}));
        EXPECT_EQ(set(row.paramId, row.paramId == 1002 ? static_cast<const void*>("x") : &word, 4, row.applId),
                  row.status);
        const bool tolerated = row.status == 0 && row.result == -1;
        const auto expected = tolerated         ? std::vector<std::uint32_t>{}
                              : row.status == 0 ? std::vector<std::uint32_t>{4711, row.code}
                                                : std::vector<std::uint32_t>{4711, row.code, 0x12500028};
        EXPECT_EQ(pool.codes(), expected) << row.paramId << " of " << row.applId;
    }
    pool->reset();
    t.target.script(kSetParam, wire::failedCall());
    EXPECT_EQ(set(1008, &word, 4), -185);
    EXPECT_EQ(messages(pool), Messages{self("0x1250000a(KvApplMan_setApplParameter)")});
}
