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

const std::string kApplications = "KvApplMan_getApplications ";
const std::string kCores = "KvApplMan_getAvailableCoreIDs ";
const std::string kFlash = "KvApplMan_getFlashApplications ";

class Lists : public ApiTest {
protected:
    Listing applications(std::uint32_t state, std::int32_t capacity, bool given = true) {
        Words ids = kUntouched;
        std::int32_t count = capacity;
        const auto [status, reported] =
            outcome(KvApplMan_getApplications(pool, t.device, t.access, state, given ? ids.data() : nullptr, &count));
        return {status, reported, static_cast<std::uint32_t>(count), ids};
    }
    Listing cores(std::uint32_t kind, std::uint32_t capacity, bool given = true) {
        Words ids = kUntouched;
        const auto [status, reported] = outcome(
            KvApplMan_getAvailableCoreIDs(pool, t.device, t.access, kind, &capacity, given ? ids.data() : nullptr));
        return {status, reported, capacity, ids};
    }
    Listing flash(std::uint32_t mode, std::uint32_t capacity, bool given = true) {
        Words ids = kUntouched;
        const auto [status, reported] = outcome(
            KvApplMan_getFlashApplications(pool, t.device, t.access, mode, &capacity, given ? ids.data() : nullptr));
        return {status, reported, capacity, ids};
    }
    void hasCores(std::int32_t result, const Words& listed) {
        t.target.script(kGetCoreIds, wire::reply(TApplManCoreIdResult{77, result, {}, listed}));
    }
    void hasFlash(std::int32_t result, const Words& listed) {
        t.target.script(kGetFlashApplications, wire::reply(TApplManFlashListResult{77, result, {}, listed, {}, {8}}));
    }
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
        t.target.script(kGetApplications, wire::value(Words{9, 8}));
        EXPECT_EQ(applications(state, 3), (Listing{0, {}, 2, {9, 8, 0, kFill}}));
        EXPECT_EQ(sentWords(state), (Words{1, t.accessId, targetStates[state]}));
    }
}

TEST_F(Lists, TheCountOfApplicationsIsStoredUnlessTheTargetRefuses) {
    t.target.script(kGetApplications, wire::value(std::int64_t{5}));
    EXPECT_EQ(applications(0, 2), (Listing{0, {}, 0, kCleared})) << "an answer of another type lists nothing";
    t.target.script(kGetApplications, wire::reply(TApplManValueResult{1, Words{1}, {}}));
    EXPECT_EQ(applications(0, 2), (Listing{-215, {kApplications + "0x12500016"}, 2, kCleared}));
}

TEST_F(Lists, CoresAreAskedForByKindAndWhatDoesNotFitIsToldByTheStatusAlone) {
    for (const std::uint32_t kind : {0U, 1U}) {
        hasCores(5, {7, 3}); // any value but -1 is success
        EXPECT_EQ(cores(kind, 3), (Listing{0, {}, 2, {7, 3, 0, kFill}}));
        EXPECT_EQ(sentWords(kind), (Words{t.accessId, kind + 1}));
    }
    hasCores(0, {1, 2});
    EXPECT_EQ(cores(0, 1, false), (Listing{-200, {}, 2, kUntouched}));
    hasCores(0, {1, 2});
    EXPECT_EQ(cores(0, 2, false), (Listing{-100, {}, 2, kUntouched}));
    hasCores(0, {5});
    std::uint32_t word = 1; // both count and array
    EXPECT_EQ(KvApplMan_getAvailableCoreIDs(pool, t.device, t.access, 0, &word, &word), 0) << "the count before counts";
}

TEST_F(Lists, FlashApplicationsThatDoNotFitAreCountedInAMessage) {
    hasFlash(5, {9, 8}); // any value but -1 is success
    EXPECT_EQ(flash(0, 3), (Listing{0, {}, 2, {9, 8, 0, kFill}}));
    EXPECT_EQ(sentWords(0), (Words{t.accessId, 1}));
    hasFlash(0, {1, 2, 3, 4, 5});
    EXPECT_EQ(flash(0, 2), (Listing{-200, {kFlash + "0x1250003c(5,2)"}, 5, kCleared}));
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
