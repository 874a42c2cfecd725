// The download of a group: order of the phases, what is announced, where failures stop it, what is reported meanwhile.
#include "api/api_test.h"

using namespace applman;

namespace {

struct Step {
    std::string what;
    double fraction;
};

void record(const KvTApplManProgress* progress, void* steps) {
    static_cast<std::vector<Step>*>(steps)->push_back({std::to_string(progress->phase) + "/" +
                                                           std::to_string(progress->phaseCount) + " " +
                                                           progress->phaseName + " " + progress->fileName,
                                                       progress->fraction});
}

void throwing(const KvTApplManProgress*, void* calls) {
    ++*static_cast<int*>(calls);
    throw 1;
}

simulated_target::Options withTwoInitCalls() {
    simulated_target::Options options;
    options.initialisationCalls = 2;
    return options;
}

std::string self(const std::string& what) { return "KvApplMan_downloadApplUtf8 " + what; }

/// A group of three slots, the middle one empty, whose two processes are registered.
class Download : public ApiTest {
protected:
    Download() : ApiTest(withTwoInitCalls()) {
        EXPECT_EQ(KvApplMan_createApplGroupHandle_2(pool, devices, handles, 3, &group), 0);
        EXPECT_EQ(KvApplMan_registerAppl_2(pool, t.device, t.access, group, 1, &applIds[0]), 0);
        EXPECT_EQ(KvApplMan_registerAppl_2(pool, t.device, t.access, group, 3, &applIds[2]), 0);
        t.target.forgetRequests();
    }
    ~Download() override { EXPECT_EQ(KvApplMan_deleteApplGroupHandle(pool, group), 0); }

    Outcome download(std::uint32_t count = 3, KvTApplManProgressCallback callback = nullptr, void* userData = nullptr) {
        const char* const paths[] = {first.c_str(), nullptr, second.c_str()};
        return outcome(KvApplMan_downloadApplUtf8(pool, devices, handles, applIds, paths, 77, count, callback, userData,
                                                  targetPaths));
    }

    void answerWords(const Words& values) {
        for (const std::uint32_t value : values) {
            t.target.script(kGetParam, wire::value(value));
        }
    }

    /// The processes that the requests of a procedure were meant for.
    Words processesOf(std::uint32_t procedure) const {
        const auto asked = procedures();
        Words all;
        for (std::size_t index = 0; index < asked.size(); ++index) {
            if (asked[index] == procedure) { all.push_back(sentWords(index).at(2)); }
        }
        return all;
    }

    std::uintmax_t storedBytes() const {
        std::uintmax_t all = 0;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(t.store())) {
            if (entry.is_regular_file()) { all += entry.file_size(); }
        }
        return all;
    }

    TemporaryFolder folder;
    std::string first = folder.file("first.bin", std::string(100, 'a'));
    std::string second = folder.file("second.bin", std::string(300, 'b'));
    void* devices[3] = {t.device, nullptr, t.device};
    void* handles[3] = {t.access, nullptr, t.access};
    std::uint32_t applIds[3] = {};
    const char* const* targetPaths = nullptr;
    KvSApplGroupHandle* group = nullptr;
};

} // namespace

TEST_F(Download, LoadsInitialisesInPassesAndApplies) {
    std::vector<Step> steps;
    ASSERT_EQ(download(3, record, &steps), (Outcome{0, {}}));
    const std::uint32_t a = applIds[0];
    const std::uint32_t b = applIds[2];
    EXPECT_EQ(processesOf(kLoadAppl), (Words{a, b}));
    EXPECT_EQ(processesOf(kInitAppl), (Words{a, b, a, b}));
    EXPECT_EQ(processesOf(kApplyAppl), (Words{a, b}));
    EXPECT_EQ(processesOf(kLoadApplComplete), Words{});
    EXPECT_EQ(storedBytes(), 400U);

    std::vector<std::string> phases;
    double fraction = 0.0;
    for (const Step& reported : steps) {
        if (phases.empty() || phases.back() != reported.what) { phases.push_back(reported.what); }
        EXPECT_GE(reported.fraction, fraction);
        fraction = reported.fraction;
    }
    EXPECT_EQ(phases,
              (std::vector<std::string>{"1/3 \"Load\" first.bin", "1/3 \"Load\" ", "1/3 \"Load\" second.bin",
                                        "2/3 \"Init\" first.bin", "2/3 \"Init\" ", "2/3 \"Init\" second.bin",
                                        "3/3 \"Apply\" first.bin", "3/3 \"Apply\" ", "3/3 \"Apply\" second.bin"}));
    EXPECT_DOUBLE_EQ(fraction, 1.0);
    EXPECT_NEAR(steps[steps.size() - 2].fraction, 0.9, 1e-12) << "400 bytes, and as many units per slot and phase";
}

TEST_F(Download, ACompleteLoadEndsWithTheLoad) {
    answerWords({3, 0, 0}); // slots, initialisation calls
    std::vector<Step> steps;
    ASSERT_EQ(download(3, record, &steps), (Outcome{0, {}}));
    EXPECT_EQ(processesOf(kLoadApplComplete).size(), 2U);
    EXPECT_EQ(processesOf(kInitAppl).size() + processesOf(kApplyAppl).size(), 0U);
    EXPECT_DOUBLE_EQ(steps.back().fraction, 1.0);
}

TEST_F(Download, ABinaryIsAnnouncedInSevenParameters) {
    const char* const names[] = {"sub\\name.x86", nullptr, ""};
    targetPaths = names;
    ASSERT_EQ(download(), (Outcome{0, {}}));
    std::vector<TApplManSetParamRequest> sent;
    for (const auto& asked : t.target.requests()) {
        if (asked.procedure == kSetParam) { sent.push_back(wire::recordOf<TApplManSetParamRequest>(asked.arguments)); }
    }
    ASSERT_EQ(sent.size(), 14U);
    const std::uint32_t order[] = {10, 7, 34, 12, 33, 5, 6};
    for (std::size_t i = 0; i < sent.size(); ++i) {
        EXPECT_EQ((Words{sent[i].targetParamId, sent[i].applId}), (Words{order[i % 7], applIds[i < 7 ? 0 : 2]}));
    }
    EXPECT_EQ(sent[0].value, TApplManValue{std::uint32_t{77}});
    EXPECT_GT(std::get<kTagQuad>(sent[1].value), 0);
    EXPECT_EQ(std::get<kTagText>(sent[2].value)->size(), 19U);
    EXPECT_EQ(sent[5].value, TApplManValue{Text{"name.x86"}});
    EXPECT_EQ(sent[6].value, TApplManValue{Text{"sub"}});
    EXPECT_EQ(sent[12].value, TApplManValue{Text{"second.bin"}}) << "an empty name is none";
}

TEST_F(Download, TheNumberOfSlotsIsJudgedBeforeAnythingIsLoaded) {
    EXPECT_EQ(download(2), (Outcome{-130, {"KvApplMan_checkApplicationCount 0x1250004f(2,3)"}}));
    answerWords({3, 0, 1});
    EXPECT_EQ(download(), (Outcome{-130, {self("0x12500055")}})) << "all processes load alike";
    EXPECT_EQ(storedBytes(), 0U);
}

TEST_F(Download, LoadOptionsAreRefusedByTheTransferAndAMissingFileBefore) {
    EXPECT_EQ(download(0x02000003), (Outcome{-195, {"copyBinaryToTarget 0x12500031(2)", self("0x12500050(1,3)")}}));
    EXPECT_EQ(processesOf(kLoadAppl).size(), 0U);
    second = folder.path().string();
    EXPECT_EQ(download(), (Outcome{-250, {"download 0x1250002b(" + second + ")", self("0x12500050(3,3)")}}))
        << "a directory is no binary";
    EXPECT_EQ(processesOf(kInitAppl).size(), 0U);
}

TEST_F(Download, AFailureStopsTheSequence) {
    for (const std::uint32_t procedure : {kSetParam, kLoadAppl, kInitAppl, kApplyAppl}) {
        t.target.script(procedure, wire::result(-1));
        std::vector<Step> steps;
        EXPECT_LT(download(3, record, &steps).first, 0);
        const bool failedInFirstSlot = steps.back().what.ends_with("first.bin");
        EXPECT_EQ(failedInFirstSlot, procedure != kInitAppl)
            << "a step counts for the slot that failed, but initialising counts in its last pass only";
    }
}

TEST_F(Download, TimesThatATargetDoesNotKnowAreTolerated) {
    KvPlatform_addEntry(pool, 4711);
    t.target.script(kSetParam, wire::result(0));
    t.target.script(kSetParam, wire::result(0));
    t.target.script(kSetParam, wire::result(-1, {0x14a00804}));
    EXPECT_EQ(download(), (Outcome{0, {}}));
}

TEST_F(Download, ACallbackThatThrowsIsNotCalledAgainAndStopsNothing) {
    int calls = 0;
    EXPECT_EQ(download(3, throwing, &calls), (Outcome{0, {}}));
    EXPECT_EQ(calls, 1);
}
