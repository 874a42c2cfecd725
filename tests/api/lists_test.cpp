// Lists of applications and of processor cores: what is checked when, what the count holds, which failures are silent.
#include <map>

#include "api/KvApplicationManagerAP.h"
#include "protocol/procedure_numbers.h"
#include "support/failing_memory.h"
#include "support/one_target.h"

using namespace applman;

namespace {

using Ids = std::vector<std::uint32_t>;
using Texts = std::map<std::uint32_t, std::string>; // by application

constexpr std::uint32_t kFill = 0x55555555;

const char* const kBadHandles = "checkDeviceAndAccessRestrictionHandle 1024";

class Lists : public OneTarget {
protected:
    std::int32_t applications(std::uint32_t state, std::uint32_t* into, std::int32_t capacity) {
        count = static_cast<std::uint32_t>(capacity);
        return KvApplMan_getApplications(pool, t.device, t.access, state, into,
                                         reinterpret_cast<std::int32_t*>(&count));
    }
    std::int32_t cores(std::uint32_t kind, std::uint32_t* into, std::uint32_t capacity) {
        count = capacity;
        return KvApplMan_getAvailableCoreIDs(pool, t.device, t.access, kind, &count, into);
    }
    void hasCores(std::int32_t result, const Ids& listed) {
        t.target.script(kGetCoreIds, wire::reply(TApplManCoreIdResult{77, result, {}, listed}));
    }

    Ids ids = Ids(4, kFill);
    std::uint32_t count = 0;
};

class InfoList : public OneTarget {
protected:
    ~InfoList() override { KvApplMan_freeApplInfoList(&listed, &count); }

    void hasApplications(std::size_t number, const std::vector<std::string>& texts) {
        Ids ids(number);
        for (std::size_t i = 0; i < number; ++i) {
            ids[i] = static_cast<std::uint32_t>(i);
        }
        t.target.script(kGetApplications, wire::value(ids));
        for (const std::string& text : texts) {
            t.target.script(kGetParam, wire::value(Text{text}));
        }
    }

    std::int32_t list(const char* name = nullptr) {
        KvApplMan_freeApplInfoList(&listed, &count);
        listed = reinterpret_cast<KvTApplicationInfo*>(std::uintptr_t{8});
        count = 77;
        return KvApplMan_getApplInfoList(pool, t.device, t.access, &listed, &count, name);
    }

    Texts texts() const {
        Texts all;
        for (std::uint32_t i = 0; i < count; ++i) {
            all[listed[i].applId] = listed[i].infoText;
        }
        return all;
    }
    bool nothing() const { return listed == nullptr && count == 0; }

    KvTApplicationInfo* listed = nullptr;
    std::uint32_t count = 0;
};

} // namespace

TEST_F(Lists, ApplicationsAreAskedForByTheTargetsNumberOfTheState) {
    const Ids targetStates{4, 0, 1, 2, 3, 5, 6};
    for (std::uint32_t state = 0; state < targetStates.size(); ++state) {
        ids.assign(4, kFill);
        t.target.script(kGetApplications, wire::value(Ids{9, 8}));
        EXPECT_EQ(applications(state, ids.data(), 3), 0);
        EXPECT_EQ(count, 2U);
        EXPECT_EQ(ids, (Ids{9, 8, 0, kFill}));
        const auto asked = request<TApplManRequest>(state);
        EXPECT_EQ((Ids{asked.first, asked.second, asked.third}), (Ids{1, t.accessId, targetStates[state]}));
    }
    EXPECT_EQ(messages(pool), Messages{});
}

TEST_F(Lists, ArgumentsForApplicationsAreJudgedAfterTheHandlesAndBeforeAnythingIsSent) {
    EXPECT_EQ(KvApplMan_getApplications(pool, nullptr, t.access, 7, nullptr, nullptr), -100);
    EXPECT_EQ(KvApplMan_getApplications(pool, t.device, t.access, 7, ids.data(), nullptr), -100);
    EXPECT_EQ(applications(7, nullptr, 1), -100);
    EXPECT_EQ(applications(7, ids.data(), -1), -200);
    EXPECT_EQ(ids, Ids(4, kFill));
    EXPECT_EQ(applications(7, ids.data(), 3), -210);
    EXPECT_EQ(ids, (Ids{0, 0, 0, kFill})) << "the array is cleared before the state is judged";
    EXPECT_EQ(count, 3U);
    const std::string self = "KvApplMan_getApplications ";
    EXPECT_EQ(messages(pool), (Messages{kBadHandles, self + "1024", self + "1024", self + "0x12500012",
                                        "getInternalApplState 0x12500015"}));
    EXPECT_EQ(procedures(), Ids{});
}

TEST_F(Lists, TheCountOfApplicationsIsStoredUnlessTheTargetRefuses) {
    struct Row {
        simulated_target::ScriptedReply reply;
        std::int32_t capacity;
        std::int32_t status;
        std::uint32_t count;
        Messages expected;
    };
    const std::string self = "KvApplMan_getApplications ";
    const auto refusal = wire::reply(TApplManValueResult{1, Ids{1}, wire::errorList({0x14a00900})});
    for (const Row& row : {Row{wire::value(Ids{1, 2, 3}), 2, -200, 3, {self + "0x12500012"}},
                           Row{wire::value(Ids{1, 2, 3}), 0, -200, 3, {self + "0x12500012"}},
                           Row{wire::value(Ids{}), 0, 0, 0, {}}, Row{wire::value(std::int64_t{5}), 2, 0, 0, {}},
                           Row{refusal, 2, -215, 2, {"target 0x14a00900", self + "0x12500016"}},
                           Row{wire::notOffered(), 2, -185, 2, {self + "0x1250000a(KvApplMan_getApplications)"}}}) {
        pool->reset();
        ids.assign(4, kFill);
        t.target.script(kGetApplications, row.reply);
        EXPECT_EQ(applications(0, row.capacity == 0 ? nullptr : ids.data(), row.capacity), row.status);
        EXPECT_EQ(count, row.count);
        EXPECT_EQ(ids[0], row.capacity == 0 ? kFill : 0U) << "nothing is copied";
        EXPECT_EQ(messages(pool), row.expected);
    }
}

TEST_F(Lists, CoresAreAskedForByKindAndCopiedInTheirOrder) {
    for (const std::uint32_t kind : {0U, 1U}) {
        hasCores(5, {7, 3}); // any value but -1 is success
        EXPECT_EQ(cores(kind, ids.data(), 3), 0);
        EXPECT_EQ(count, 2U);
        EXPECT_EQ(ids, (Ids{7, 3, 0, kFill}));
        const auto asked = request<TApplManPairRequest>(kind);
        EXPECT_EQ((Ids{asked.accessId, asked.second}), (Ids{t.accessId, kind + 1}));
    }
    hasCores(-1, {1});
    EXPECT_EQ(cores(1, ids.data(), 4), -841);
    EXPECT_EQ(count, 4U) << "a refusal leaves the count alone";
    EXPECT_EQ(messages(pool), Messages{"KvApplMan_getAvailableCoreIDs 0x12500036"});
}

TEST_F(Lists, ArgumentsForCoresAreJudgedBeforeTheHandles) {
    EXPECT_EQ(KvApplMan_getAvailableCoreIDs(pool, nullptr, nullptr, 2, nullptr, ids.data()), -100);
    count = 3;
    EXPECT_EQ(KvApplMan_getAvailableCoreIDs(pool, nullptr, nullptr, 2, &count, ids.data()), -205);
    EXPECT_EQ(ids, (Ids{0, 0, 0, kFill})) << "the array is cleared before the kind is judged";
    EXPECT_EQ(KvApplMan_getAvailableCoreIDs(pool, nullptr, nullptr, 1, &count, nullptr), -100);
    const std::string self = "KvApplMan_getAvailableCoreIDs ";
    EXPECT_EQ(messages(pool), (Messages{self + "1024", self + "0x12500014", kBadHandles}));
    EXPECT_EQ(count, 3U);
}

TEST_F(Lists, CoresThatDoNotFitAreToldByTheStatusAlone) {
    struct Row {
        Ids cores;
        bool given; // an array
        std::uint32_t capacity;
        std::int32_t status;
    };
    for (const Row& row : {Row{{1, 2, 3, 4}, true, 2, -200}, Row{{1, 2}, false, 1, -200}, Row{{1, 2}, false, 2, -100},
                           Row{{}, false, 0, -100}, Row{{}, true, 0, 0}}) {
        ids.assign(4, kFill);
        hasCores(0, row.cores);
        EXPECT_EQ(cores(0, row.given ? ids.data() : nullptr, row.capacity), row.status);
        EXPECT_EQ(count, row.cores.size());
        EXPECT_EQ(ids[0], row.given && row.capacity > 0 ? 0U : kFill);
    }
    EXPECT_EQ(messages(pool), Messages{});
}

TEST_F(Lists, ATargetThatDoesNotOfferCoresHasOneAndAFailedCallNone) {
    for (const std::uint32_t number : {1U, 0U}) {
        t.target.scriptAlways(kGetCoreIds, number == 1 ? wire::notOffered() : wire::failedCall());
        EXPECT_EQ(cores(1, ids.data(), 2), 0);
        EXPECT_EQ(ids[0], number) << "the one core is 1";
        EXPECT_EQ(count, number);
        EXPECT_EQ(cores(1, ids.data(), 0), number == 1 ? -200 : 0);
        EXPECT_EQ(cores(1, nullptr, 2), -100);
        EXPECT_EQ(count, number);
    }
    EXPECT_EQ(messages(pool), Messages{});
}

TEST_F(InfoList, WithoutANameAllApplicationsAreListed) {
    for (const char* const name : {static_cast<const char*>(nullptr), ""}) {
        t.target.forgetRequests();
        hasApplications(2, {"first", "second"});
        ASSERT_EQ(list(name), 0);
        EXPECT_EQ(texts(), (Texts{{0, "first"}, {1, "second"}}));
        EXPECT_EQ(procedures(), (Ids{kGetApplications, kGetParam, kGetParam}));
        EXPECT_EQ(request<TApplManRequest>(0).third, 4U);
        EXPECT_EQ(request<TApplManGetParamRequest>(2).targetParamId, 41U);
    }
    hasApplications(0, {});
    EXPECT_EQ(list(), 0);
    EXPECT_TRUE(nothing());
    EXPECT_EQ(messages(pool), Messages{});
}

TEST_F(InfoList, ANameSelectsByFileNameWithoutItsLastExtension) {
    hasApplications(6, {"model.x86", "first", "Model.x86", "model.a.b", ".x", "model", "second", "models"});
    ASSERT_EQ(list("model"), 0);
    EXPECT_EQ(texts(), (Texts{{0, "first"}, {4, "second"}})) << "a text is read of selected applications only";
    EXPECT_EQ(messages(pool), Messages{});
    for (const std::vector<std::string>& fileNames : {std::vector<std::string>{}, {"model.x86", "model"}}) {
        pool->reset();
        hasApplications(fileNames.size(), fileNames);
        EXPECT_EQ(list("model.x86"), 0) << "an extension is no part of a name";
        EXPECT_TRUE(nothing());
        EXPECT_EQ(messages(pool), Messages{"KvApplMan_getApplInfoList 0x1250005c(model.x86)"});
    }
}

TEST_F(InfoList, WhatDoesNotFitOrCannotBeReadLeavesNothing) {
    const std::string longest(255, 'a');
    hasApplications(128, std::vector<std::string>(128, longest));
    EXPECT_EQ(list(), 0);
    EXPECT_EQ(count, 128U);
    hasApplications(129, {});
    EXPECT_EQ(list(), -200);
    EXPECT_TRUE(nothing());
    hasApplications(2, {longest, longest + 'a'});
    EXPECT_EQ(list(), -200);
    EXPECT_TRUE(nothing());
    hasApplications(1, {});
    t.target.script(kGetParam, wire::failedCall());
    EXPECT_EQ(list("model"), -185);
    EXPECT_TRUE(nothing());
    EXPECT_EQ(messages(pool), (Messages{"KvApplMan_getApplications 0x12500012", "decodeParameterReturnValue 0x12500014",
                                        "KvApplMan_getApplInfo 0x1250000a(KvApplMan_getApplInfo)"}));
}

TEST_F(InfoList, OutParametersComeBeforeTheHandles) {
    EXPECT_EQ(KvApplMan_getApplInfoList(pool, nullptr, nullptr, nullptr, &count, nullptr), -100);
    EXPECT_EQ(KvApplMan_getApplInfoList(pool, nullptr, nullptr, &listed, nullptr, nullptr), -100);
    t.access = nullptr;
    EXPECT_EQ(list(), -100);
    EXPECT_TRUE(nothing());
    const std::string self = "KvApplMan_getApplInfoList ";
    EXPECT_EQ(messages(pool), (Messages{self + "0x1250005b", self + "0x1250005b", kBadHandles}));
}

TEST_F(InfoList, FreeingIsSafeWhateverIsLeft) {
    hasApplications(1, {"first"});
    ASSERT_EQ(list(), 0);
    KvApplMan_freeApplInfoList(nullptr, &count);
    KvApplMan_freeApplInfoList(&listed, nullptr);
    EXPECT_EQ(texts(), (Texts{{0, "first"}})) << "with one of the two missing nothing happens";
    for (const std::uint32_t left : {1U, 0U, 3U}) { // a list that is gone has no elements
        count = left;
        KvApplMan_freeApplInfoList(&listed, &count);
        EXPECT_TRUE(nothing());
    }
}

TEST_F(InfoList, WithoutMemoryThereIsNoListRatherThanPartOfOne) {
    t.target.scriptAlways(kGetApplications, wire::value(Ids{1, 2}));
    t.target.scriptAlways(kGetParam, wire::value(Text{std::string(100, 'a')}));
    ASSERT_EQ(list(), 0); // connects
    bool failed = true;
    for (std::size_t allowed = 0; failed; ++allowed) {
        KvApplMan_freeApplInfoList(&listed, &count);
        const FailingMemory memory{allowed};
        static_cast<void>(KvApplMan_getApplInfoList(pool, t.device, t.access, &listed, &count, nullptr));
        failed = memory.hasFailed();
        EXPECT_TRUE(nothing() || (count == 2 && listed[1].infoText != nullptr)) << allowed;
    }
    EXPECT_EQ(count, 2U);
}
