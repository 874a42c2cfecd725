// The download of a group: order of the phases, what is announced, where failures stop it, what is reported meanwhile.
#include <fstream>
#include <sstream>

#include "api/KvApplicationManagerAP.h"
#include "protocol/procedure_numbers.h"
#include "support/one_target.h"

using namespace applman;

namespace {

struct Step {
    std::string phase;
    std::string file;
    double fraction;
};

void record(const KvTApplManProgress* progress, void* steps) {
    static_cast<std::vector<Step>*>(steps)->push_back({progress->phaseName, progress->fileName, progress->fraction});
}

void throwing(const KvTApplManProgress*, void* calls) {
    ++*static_cast<int*>(calls);
    throw 1;
}

simulated_target::Options withInitCalls(std::uint32_t calls) {
    simulated_target::Options options;
    options.initialisationCalls = calls;
    return options;
}

/// A group of three slots, the middle one empty, whose two processes are registered.
class Download : public OneTarget {
protected:
    explicit Download(simulated_target::Options options = withInitCalls(2)) : OneTarget(std::move(options)) {
        EXPECT_EQ(KvApplMan_createApplGroupHandle_2(pool, devices, handles, 3, &group), 0);
        EXPECT_EQ(KvApplMan_registerAppl_2(pool, t.device, t.access, group, 1, &applIds[0]), 0);
        EXPECT_EQ(KvApplMan_registerAppl_2(pool, t.device, t.access, group, 3, &applIds[2]), 0);
        EXPECT_EQ(messages(pool), Messages{});
        write("first.bin", std::string(100, 'a'));
        write("second.bin", std::string(300, 'b'));
        t.target.forgetRequests();
    }
    ~Download() override { EXPECT_EQ(KvApplMan_deleteApplGroupHandle(pool, group), 0); }

    void write(const std::string& name, const std::string& content) {
        std::ofstream{folder.path() / name, std::ios::binary} << content;
    }
    std::string pathOf(const char* name) const { return (folder.path() / name).string(); }

    std::int32_t download(std::uint32_t count = 3, KvTApplManProgressCallback callback = nullptr,
                          void* userData = nullptr) {
        const char* const paths[] = {first.c_str(), nullptr, second.c_str()};
        return KvApplMan_downloadApplUtf8(pool, devices, handles, applIds, paths, 77, count, callback, userData,
                                          targetPaths);
    }

    /// The third word of the requests of a procedure: the processes that it was meant for.
    std::vector<std::uint32_t> processesOf(std::uint32_t procedure) const {
        std::vector<std::uint32_t> all;
        for (const auto& asked : t.target.requests()) {
            if (asked.procedure == procedure) { all.push_back(wire::recordOf<TApplManRequest>(asked.arguments).third); }
        }
        return all;
    }

    std::vector<std::string> contentsOfStore() const {
        std::vector<std::string> all;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(t.store())) {
            if (!entry.is_regular_file()) { continue; }
            std::ostringstream content;
            content << std::ifstream{entry.path(), std::ios::binary}.rdbuf();
            all.push_back(content.str());
        }
        std::sort(all.begin(), all.end());
        return all;
    }

    TemporaryFolder folder;
    std::string first = pathOf("first.bin");
    std::string second = pathOf("second.bin");
    void* devices[3] = {t.device, nullptr, t.device};
    void* handles[3] = {t.access, nullptr, t.access};
    std::uint32_t applIds[3] = {};
    const char* const* targetPaths = nullptr;
    KvSApplGroupHandle* group = nullptr;
};

class CompleteLoad : public Download {
protected:
    CompleteLoad() : Download(withInitCalls(0)) {}
};

std::string self(const std::string& what) { return "KvApplMan_downloadApplUtf8 " + what; }

std::string hexadecimal(std::uint32_t value) {
    std::ostringstream text;
    text << std::hex << value;
    return text.str();
}

} // namespace

TEST_F(Download, LoadsInitialisesInPassesAndApplies) {
    std::vector<Step> steps;
    ASSERT_EQ(download(3, record, &steps), 0);
    const std::uint32_t a = applIds[0];
    const std::uint32_t b = applIds[2];
    EXPECT_EQ(processesOf(kLoadAppl), (std::vector{a, b}));
    EXPECT_EQ(processesOf(kInitAppl), (std::vector{a, b, a, b}));
    EXPECT_EQ(processesOf(kApplyAppl), (std::vector{a, b}));
    EXPECT_EQ(processesOf(kLoadApplComplete), std::vector<std::uint32_t>{});
    EXPECT_EQ(contentsOfStore(), (std::vector{std::string(100, 'a'), std::string(300, 'b')}));
    EXPECT_EQ(messages(pool), Messages{});

    ASSERT_FALSE(steps.empty());
    EXPECT_TRUE(std::is_sorted(steps.begin(), steps.end(),
                               [](const Step& x, const Step& y) { return x.fraction < y.fraction; }));
    EXPECT_DOUBLE_EQ(steps.back().fraction, 1.0);
    const double step = 1.0 / (1 + 3 * 3); // 400 bytes, and as many units per slot and phase
    std::vector<std::string> phases;
    for (const Step& reported : steps) {
        const std::string phase = reported.phase + " " + reported.file;
        if (phases.empty() || phases.back() != phase) { phases.push_back(phase); }
    }
    EXPECT_EQ(phases, (std::vector<std::string>{"\"Load\" first.bin", "\"Load\" ", "\"Load\" second.bin",
                                                "\"Init\" first.bin", "\"Init\" ", "\"Init\" second.bin",
                                                "\"Apply\" first.bin", "\"Apply\" ", "\"Apply\" second.bin"}));
    EXPECT_NEAR(steps[steps.size() - 2].fraction, 1.0 - step, 1e-12);
}

TEST_F(CompleteLoad, EndsWithTheLoad) {
    std::vector<Step> steps;
    ASSERT_EQ(download(3, record, &steps), 0);
    EXPECT_EQ(processesOf(kLoadApplComplete).size(), 2U);
    EXPECT_EQ(processesOf(kLoadAppl).size() + processesOf(kInitAppl).size() + processesOf(kApplyAppl).size(), 0U);
    EXPECT_DOUBLE_EQ(steps.back().fraction, 1.0);
}

TEST_F(Download, ABinaryIsAnnouncedInSevenParameters) {
    const char* const names[] = {"sub\\name.x86", nullptr, ""};
    targetPaths = names;
    ASSERT_EQ(download(), 0);
    std::vector<TApplManSetParamRequest> sent;
    for (const auto& asked : t.target.requests()) {
        if (asked.procedure == kSetParam) { sent.push_back(wire::recordOf<TApplManSetParamRequest>(asked.arguments)); }
    }
    ASSERT_EQ(sent.size(), 14U);
    const std::uint32_t order[] = {10, 7, 34, 12, 33, 5, 6};
    for (std::size_t i = 0; i < sent.size(); ++i) {
        EXPECT_EQ(sent[i].targetParamId, order[i % 7]);
        EXPECT_EQ(sent[i].applId, applIds[i < 7 ? 0 : 2]);
    }
    EXPECT_EQ(sent[0].value, TApplManValue{std::uint32_t{77}});
    EXPECT_GT(std::get<kTagQuad>(sent[1].value), 0);
    EXPECT_EQ(std::get<kTagText>(sent[2].value)->size(), 19U);
    EXPECT_EQ(sent[5].value, TApplManValue{Text{"name.x86"}});
    EXPECT_EQ(sent[6].value, TApplManValue{Text{"sub"}});
    EXPECT_EQ(sent[12].value, TApplManValue{Text{"second.bin"}}) << "an empty name is none";
}

TEST_F(Download, ArgumentsAndTheNumberOfSlotsAreJudgedBeforeAnythingIsLoaded) {
    const char* const paths[] = {first.c_str(), nullptr, second.c_str()};
    EXPECT_EQ(KvApplMan_downloadApplUtf8(pool, devices, handles, applIds, nullptr, 0, 3, nullptr, nullptr, nullptr),
              -100);
    EXPECT_EQ(KvApplMan_downloadApplUtf8(pool, devices, handles, nullptr, paths, 0, 3, nullptr, nullptr, nullptr),
              -100);
    EXPECT_EQ(download(0x01000000), -100) << "load options are no slots";
    EXPECT_EQ(messages(pool), Messages(3, self("1024")));
    pool->reset();
    EXPECT_EQ(download(2), -130);
    EXPECT_EQ(messages(pool), Messages{"KvApplMan_checkApplicationCount 0x1250004f(2,3)"});
    pool->reset();
    t.target.script(kGetParam, wire::noValue({0x14a00805}));
    EXPECT_EQ(download(), -175);
    EXPECT_EQ(messages(pool).back(), "KvApplMan_checkApplicationCount 0x1250004e");
    pool->reset();
    t.target.script(kGetParam, wire::value(std::uint32_t{3}));
    t.target.script(kGetParam, wire::failedCall());
    EXPECT_EQ(download(), -185);
    EXPECT_EQ(messages(pool).back(), self("0x12500054"));
    pool->reset();
    for (const std::uint32_t answer : {3U, 0U, 1U}) {
        t.target.script(kGetParam, wire::value(answer));
    }
    EXPECT_EQ(download(), -130);
    EXPECT_EQ(messages(pool), Messages{self("0x12500055")});
    EXPECT_EQ(contentsOfStore(), std::vector<std::string>{});
    EXPECT_EQ(processesOf(kLoadAppl).size(), 0U);
}

TEST_F(Download, AFileThatIsNotThereIsFoundBeforeAnythingIsAnnounced) {
    second = folder.path().string();
    ASSERT_EQ(download(), -250) << "a directory is no binary";
    ASSERT_EQ(messages(pool).size(), 2U);
    EXPECT_EQ(messages(pool)[0], "download 0x1250002b(" + second + ")");
    EXPECT_EQ(messages(pool)[1], self("0x12500050(3,3)"));
    EXPECT_EQ(processesOf(kInitAppl).size(), 0U);
}

TEST_F(Download, LoadOptionsAreRefusedByTheTransfer) {
    EXPECT_EQ(download(0x02000003), -195);
    EXPECT_EQ(messages(pool), (Messages{"copyBinaryToTarget 0x12500031(2)", self("0x12500050(1,3)")}));
    EXPECT_EQ(processesOf(kLoadAppl).size(), 0U);
}

TEST_F(Download, AFailureStopsTheSequence) {
    struct Row {
        std::uint32_t procedure;
        int before; // replies of the target's own kind before the failing one
        simulated_target::ScriptedReply reply;
        std::int32_t status;
        Messages expected;
    };
    const Row rows[] = {
        {kSetParam, 0, wire::result(-1), -176, {"KvApplMan_setDownloadParameters 0x12500028", self("0x12500050(1,3)")}},
        {kSetParam,
         1,
         wire::failedCall(),
         -185,
         {"KvApplMan_setDownloadParameters 0x1250000a(KvApplMan_setDownloadParameters)", self("0x12500050(1,3)")}},
        {kLoadAppl, 0, wire::result(-1), -130, {"download 0x12500002", self("0x12500050(1,3)")}},
        {kLoadAppl, 0, wire::failedCall(), -185, {"download 0x1250000a(download)", self("0x12500050(1,3)")}},
        {kInitAppl, 0, wire::result(-1), -120, {"KvApplMan_InitAppl 0x12500001", self("0x12500056(1,3,1,2)")}},
        {kApplyAppl,
         0,
         wire::failedCall(),
         -185,
         {"KvApplMan_ApplyAppl 0x1250000a(KvApplMan_ApplyAppl)", self("0x12500057(1,3)")}},
        {kGetCommandState, 0, wire::result(1), -130, {"waitWhileBusy 0x12500002", self("0x12500050(1,3)")}},
    };
    for (const Row& row : rows) {
        pool->reset();
        for (int i = 0; i < row.before; ++i) {
            t.target.script(row.procedure, wire::result(0));
        }
        t.target.script(row.procedure, row.reply);
        std::vector<Step> steps;
        EXPECT_EQ(download(3, record, &steps), row.status);
        EXPECT_EQ(messages(pool), row.expected);
        EXPECT_EQ(steps.back().file, row.procedure == kInitAppl ? "second.bin" : "first.bin")
            << "a step counts for the slot that failed, but initialising counts in its last pass only";
        t.target.forgetScripts();
    }
}

TEST_F(Download, TimesThatATargetDoesNotKnowAreTolerated) {
    KvPlatform_addEntry(pool, 4711);
    t.target.script(kSetParam, wire::result(0));
    t.target.script(kSetParam, wire::result(0));
    t.target.script(kSetParam, wire::result(-1, {0x14a00804}));
    EXPECT_EQ(download(), 0);
    EXPECT_EQ(pool.codes(), std::vector<std::uint32_t>{});
}

TEST_F(Download, WithoutATargetPathNothingIsTransferred) {
    t.target.script(kGetParam, wire::value(std::uint32_t{3})); // processes
    t.target.script(kGetParam, wire::value(std::uint32_t{1})); // initialisation calls of both
    t.target.script(kGetParam, wire::value(std::uint32_t{1}));
    t.target.script(kGetParam, wire::value(std::uint32_t{1})); // a file name that is no text
    t.target.script(kGetParam, wire::failedCall());            // a directory that does not come
    EXPECT_EQ(download(), -175);
    EXPECT_EQ(messages(pool), (Messages{"KvApplMan_getApplBinaryTargetPath 0x12500007", self("0x12500050(1,3)")}));
    EXPECT_EQ(contentsOfStore(), std::vector<std::string>{});
}

TEST_F(Download, ACallbackThatThrowsIsNotCalledAgainAndStopsNothing) {
    int calls = 0;
    EXPECT_EQ(download(3, throwing, &calls), 0);
    EXPECT_EQ(calls, 1);
}

TEST_F(Download, TheWholeRoadEndsWithAStartedApplication) {
    ASSERT_EQ(download(), 0);
    for (const std::uint32_t applId : {applIds[0], applIds[2]}) {
        EXPECT_EQ(KvApplMan_startAppl(pool, t.device, t.access, applId), 0);
        std::int32_t state = -1;
        std::int32_t size = sizeof state;
        EXPECT_EQ(KvApplMan_getApplInfo(pool, t.device, t.access, applId, 0, &state, &size), 0);
        EXPECT_EQ(KvApplMan_stopAppl(pool, t.device, t.access, applId), 0);
        EXPECT_EQ(KvApplMan_unloadAppl(pool, t.device, t.access, applId), 0);
        EXPECT_EQ(KvApplMan_startAppl(pool, t.device, t.access, applId), -150) << hexadecimal(applId);
        EXPECT_EQ(pool.codes().front(), 0x14a00803U);
        pool->reset();
    }
}
