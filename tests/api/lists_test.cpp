// Lists of applications, processor cores and flash applications: what is checked when, what the count holds, which
// failures are silent.
#include <map>
#include <tuple>

#include "api/api_test.h"

using namespace applman;

namespace {

using Texts = std::map<std::uint32_t, std::string>; // by application

/// Status, messages, count and array after a call.
using Listing = std::tuple<std::int32_t, Messages, std::uint32_t, Words>;

constexpr std::uint32_t kFill = 0x55555555;
const Words kUntouched(4, kFill);
const Words kCleared{0, 0, kFill, kFill}; // of two elements

class Lists : public ApiTest {
protected:
    Listing applications(std::uint32_t state, std::uint32_t capacity, const TApplManValueResult& reply) {
        t.target.script(kGetApplications, wire::reply(reply));
        auto* const size = reinterpret_cast<std::int32_t*>(&count);
        return list(capacity, with(KvApplMan_getApplications, state, ids.data(), size));
    }
    Listing cores(std::uint32_t kind, std::uint32_t capacity, std::int32_t result, const Words& listed,
                  bool withArray = true) {
        t.target.script(kGetCoreIds, wire::reply(TApplManCoreIdResult{77, result, {}, listed}));
        return list(capacity, with(KvApplMan_getAvailableCoreIDs, kind, &count, withArray ? ids.data() : nullptr));
    }
    Listing flash(std::uint32_t capacity, std::int32_t result, const Words& listed) {
        t.target.script(kGetFlashApplications, wire::reply(TApplManFlashListResult{77, result, {}, listed, {}, {8}}));
        return list(capacity, with(KvApplMan_getFlashApplications, 0, &count, ids.data()));
    }

    Listing list(std::uint32_t capacity, const DeviceCall& call) {
        count = capacity;
        std::copy(kUntouched.begin(), kUntouched.end(), ids.begin());
        const auto [status, reported] = outcome(call(pool, t.device, t.access));
        return {status, reported, count, ids};
    }

    Words ids = kUntouched;
    std::uint32_t count = 0;
};

class InfoList : public ApiTest {
protected:
    ~InfoList() override { KvApplMan_freeApplInfoList(&listed, &count); }

    void hasApplications(std::size_t number, const std::vector<std::string>& texts) {
        Words ids(number);
        for (std::size_t i = 0; i < number; ++i) {
            ids[i] = static_cast<std::uint32_t>(i);
        }
        t.target.script(kGetApplications, wire::value(ids));
        for (const std::string& text : texts) {
            t.target.script(kGetParam, wire::value(Text{text}));
        }
    }

    Outcome list(const char* name = nullptr) {
        KvApplMan_freeApplInfoList(&listed, &count);
        listed = reinterpret_cast<KvTApplicationInfo*>(std::uintptr_t{8});
        count = 77;
        return outcome(KvApplMan_getApplInfoList(pool, t.device, t.access, &listed, &count, name));
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
    const Words targetStates{4, 0, 1, 2, 3, 5, 6};
    for (std::uint32_t state = 0; state < targetStates.size(); ++state) {
        EXPECT_EQ(applications(state, 3, {0, Words{9, 8}, {}}), (Listing{0, {}, 2, {9, 8, 0, kFill}}));
        EXPECT_EQ(sentWords(state), (Words{1, t.accessId, targetStates[state]}));
    }
    EXPECT_EQ(applications(0, 2, {0, std::int64_t{5}, {}}), (Listing{0, {}, 0, kCleared}))
        << "another type lists nothing";
    EXPECT_EQ(applications(0, 2, {1, Words{1}, {}}),
              (Listing{-215, {"KvApplMan_getApplications 0x12500016"}, 2, kCleared}));
}

TEST_F(Lists, CoresAreAskedForByKindAndWhatDoesNotFitIsToldByTheStatusAlone) {
    for (const std::uint32_t kind : {0U, 1U}) {
        EXPECT_EQ(cores(kind, 3, 5, {7, 3}), (Listing{0, {}, 2, {7, 3, 0, kFill}})) << "any value but -1 is success";
        EXPECT_EQ(sentWords(kind), (Words{t.accessId, kind + 1}));
    }
    EXPECT_EQ(cores(0, 1, 0, {1, 2}, false), (Listing{-200, {}, 2, kUntouched}));
    EXPECT_EQ(cores(0, 2, 0, {1, 2}, false), (Listing{-100, {}, 2, kUntouched}));
    t.target.script(kGetCoreIds, wire::reply(TApplManCoreIdResult{77, 0, {}, {5}}));
    std::uint32_t word = 1; // both count and array
    EXPECT_EQ(KvApplMan_getAvailableCoreIDs(pool, t.device, t.access, 0, &word, &word), 0) << "the count before counts";
}

TEST_F(Lists, FlashApplicationsThatDoNotFitAreCountedInAMessage) {
    EXPECT_EQ(flash(3, 5, {9, 8}), (Listing{0, {}, 2, {9, 8, 0, kFill}})) << "any value but -1 is success";
    EXPECT_EQ(sentWords(0), (Words{t.accessId, 1}));
    EXPECT_EQ(flash(2, 0, {1, 2, 3, 4, 5}),
              (Listing{-200, {"KvApplMan_getFlashApplications 0x1250003c(5,2)"}, 5, kCleared}));
}

TEST_F(InfoList, WithoutANameAllApplicationsAreListed) {
    hasApplications(2, {"first", "second"});
    ASSERT_EQ(list(""), (Outcome{0, {}}));
    EXPECT_EQ(texts(), (Texts{{0, "first"}, {1, "second"}}));
    EXPECT_EQ(procedures(), (Words{kGetApplications, kGetParam, kGetParam}));
    EXPECT_EQ((Words{sentWords(0).back(), sentWords(2).back()}), (Words{4, 41}));
    hasApplications(0, {});
    EXPECT_EQ(list(), (Outcome{0, {}}));
    EXPECT_TRUE(nothing());
}

TEST_F(InfoList, ANameSelectsByFileNameWithoutItsLastExtension) {
    hasApplications(6, {"model.x86", "first", "Model.x86", "model.a.b", ".x", "model", "second", "models"});
    ASSERT_EQ(list("model"), (Outcome{0, {}}));
    EXPECT_EQ(texts(), (Texts{{0, "first"}, {4, "second"}})) << "a text is read of selected applications only";
    hasApplications(2, {"model.x86", "model"});
    EXPECT_EQ(list("model.x86"), (Outcome{0, {"KvApplMan_getApplInfoList 0x1250005c(model.x86)"}}))
        << "an extension is no part of a name";
    EXPECT_TRUE(nothing());
}

TEST_F(InfoList, WhatDoesNotFitOrCannotBeReadLeavesNothing) {
    const std::string longest(255, 'a');
    hasApplications(128, std::vector<std::string>(128, longest));
    EXPECT_EQ(list(), (Outcome{0, {}}));
    EXPECT_EQ(count, 128U);
    hasApplications(129, {});
    EXPECT_EQ(list(), (Outcome{-200, {"KvApplMan_getApplications 0x12500012"}}));
    EXPECT_TRUE(nothing());
    hasApplications(2, {longest, longest + 'a'});
    EXPECT_EQ(list(), (Outcome{-200, {"decodeParameterReturnValue 0x12500014"}}));
    EXPECT_TRUE(nothing());
}

TEST_F(InfoList, FreeingIsSafeWhateverIsMissing) {
    hasApplications(1, {"first"});
    ASSERT_EQ(list(), (Outcome{0, {}}));
    KvApplMan_freeApplInfoList(nullptr, &count);
    KvApplMan_freeApplInfoList(&listed, nullptr);
    EXPECT_EQ(texts(), (Texts{{0, "first"}})) << "with one of the two missing nothing happens";
    KvApplMan_freeApplInfoList(&listed, &count);
    EXPECT_TRUE(nothing());
}
