// What every exported function does when memory runs out: at each of its allocations, once and for good. On POSIX only,
// because under Wine it takes minutes.
#include <algorithm>

#include "faults/every_function.h"
#include "support/failing_memory.h"

using namespace applman;

namespace {

using Fails = FailingMemory::Fails;
using Statuses = std::vector<std::int32_t>;

// Statuses of calls that lack memory. -1 is the registry's own, passed on.
const Statuses kClient{-1, -100, -180};
const Statuses kCall{-1, -100, -180, -185};
const Statuses kGroup{-1, -100, -180, -840};
const Statuses kRegistration{-100, -110, -185, -245};
const Statuses kLoad{-1, -100, -180, -185, -190, -195};
const Statuses kDownload{-1, -100, -175, -180, -185, -190, -195};

std::int32_t loadUnknown(Call& c) { return loadFrom(c, c.file, "n", 6); }
std::int32_t loadTree(Call& c) { return loadFrom(c, c.file, "n", 512); }

std::int32_t readAddresses(Call& c) {
    std::int32_t size = sizeof c.out;
    return c(KvApplMan_getApplInfo, c.applId, 16, c.out.data(), &size);
}

/// What a lack of memory does: fails the call, may be of no matter, or may also read as an empty answer.
enum class Lack { fails, mayNotMatter, mayReadAsNothing };

struct Row {
    const char* name;
    std::int32_t (*call)(Call& call);
    Statuses failures; // that a lack of memory may come to
    Lack lack = Lack::fails;
    std::int32_t status = 0;     // with enough memory
    std::uint32_t procedure = 0; // that gets this reply
    simulated_target::ScriptedReply reply{};
    std::uint32_t message = 0; // that one of the failures has
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.name; }

// clang-format off
const Row kRows[] = {
    {"createGroup", createGroup, kGroup, Lack::fails, 0, 0, {}, 0x12500045},
    {"registerAppl", registerAppl, kRegistration, Lack::mayNotMatter, 0, 0, {}, 0x12500052},
    {"registerApplRefused", registerAppl, kRegistration, Lack::fails, -110, kRegisterAppl,
     wire::reply(TApplManRegisterResult{-1, 3, {}, {}, wire::errorList({0x14a00900})})},
    {"setApplParameter", setParameter, kCall},
    {"download", download, kDownload},
    {"downloadRefused", download, kDownload, Lack::fails, -120, kInitAppl, wire::result(-1, {0x14a00900})},
    {"startAppl", command<KvApplMan_startAppl>, kCall},
    {"stopAppl", command<KvApplMan_stopAppl>, kCall},
    {"terminateAppl", command<KvApplMan_terminateAppl>, kCall},
    {"unloadAppl", command<KvApplMan_unloadAppl>, kCall},
    {"pauseAppl", command<KvApplMan_pauseAppl>, kCall},
    {"stepAppl", command<KvApplMan_stepAppl>, kCall},
    {"getApplInfo", readAddresses, kCall, Lack::fails, 0, kGetParam,
     wire::value(Words{0x0100007f, 0x0100007f}), 0x12500051},
    {"getApplInfoDefault", readAddresses, kDownload, Lack::mayReadAsNothing, 0, kGetParam, wire::noValue({0x14a00804})},
    {"getApplications", getApplications, kCall, Lack::fails, 0, kGetApplications, wire::value(Words{8, 9})},
    {"getApplInfoList", getInfoList, kCall, Lack::mayReadAsNothing},
    {"getAvailableCoreIDs", getCores, kClient, Lack::mayReadAsNothing},
    {"loadFile", loadFile, kLoad},
    {"loadTree", loadTree, kLoad},
    {"loadFileRefused", loadUnknown, kCall, Lack::fails, -832, kAddFile2,
     wire::reply(TApplManAddFileResult{-1, "", wire::errorList({0x14a01077}), ""})},
    {"getFileInfo", getFiles, kCall},
    {"removeFile", removeFile, kCall},
    {"getFlashApplications", getFlash, kClient, Lack::mayReadAsNothing},
    {"getFlashApplInfo", getFlashInfo, kCall},
    {"setFlashApplParameter", setFlash, kCall},
    {"loadFlashAppl", flashCommand<KvApplMan_loadFlashAppl>, kCall},
    {"clearFlashAppl", flashCommand<KvApplMan_clearFlashAppl>, kCall},
};
// clang-format on

struct Ended {
    std::int32_t status = 0;
    std::uint32_t messages = 0;
    Out out{};
    bool operator==(const Ended&) const = default;
};

class Exhaustion : public EveryFunction, public testing::WithParamInterface<Row> {
protected:
    Exhaustion() {
        folder.file("tree/file", "more");
        folder.file("tree/deep/file", "most");
        if (row.call == loadTree) { call.file = (folder.path() / "tree").string(); }
        if (row.procedure != 0) { t.target.scriptAlways(row.procedure, row.reply); }
        run(call, kEnough, Fails::once); // what is made once for all
    }

    Ended run(Call& made, std::size_t allowed, Fails fails) {
        made.give({});
        Ended ended;
        {
            const FailingMemory memory{allowed, fails};
            ended.status = row.call(made);
            failed = memory.hasFailed();
        }
        ended.messages = made.pool.getErrorCount();
        for (std::uint32_t i = 0; i < ended.messages; ++i) {
            told = told || made.pool.getErrorCode(i) == row.message;
        }
        ended.out = made.out;
        made.pool.reset();
        return ended;
    }

    /// A call with so much memory and one with enough on the same handles, those of a new device.
    void runTwice(std::size_t allowed, Fails fails, Ended& first, Ended& second) {
        const Pool own;
        Call made{*own, nullptr, nullptr, call.file, 1, call.applId};
        ASSERT_EQ(KvPlatform_addDevice(own, t.address.c_str(), 1, &made.device), 0);
        ASSERT_EQ(KvHIM_createAccessRestrictionHandle(own, made.device, &made.access), 0);
        const std::ptrdiff_t before = memoryUse().blocks;
        first = run(made, allowed, fails);
        const bool lacked = failed;
        gotNothing = made.gotNothing();
        second = run(made, kEnough, fails);
        failed = lacked;
        held = memoryUse().blocks - before;
        ASSERT_EQ(KvPlatform_removeDevice(own, made.device), 0);
    }

    static constexpr std::size_t kEnough = 1U << 30;
    const Row& row = GetParam();
    bool told = row.message == 0;
    bool failed = true;      // the call has lacked memory
    bool gotNothing = false; // from it
    std::ptrdiff_t held = 0; // by the device, after its calls
};

} // namespace

TEST_P(Exhaustion, CostsTheCallAtMost) {
    Ended whole;
    Ended first;
    Ended second;
    runTwice(kEnough, Fails::once, first, whole);
    EXPECT_EQ(whole.status, row.status);
    const std::ptrdiff_t usuallyHeld = held;
    for (const auto fails : {Fails::once, Fails::fromThenOn}) {
        failed = true;
        for (std::size_t allowed = 0; failed; ++allowed) {
            const std::ptrdiff_t before = memoryUse().blocks;
            runTwice(allowed, fails, first, second);
            ASSERT_EQ(memoryUse().blocks, before) << "leaked at " << allowed;
            ASSERT_EQ(held, usuallyHeld) << "kept at " << allowed;
            ASSERT_EQ(second, whole) << "later call, at " << allowed;
            const bool done = first.status == row.status && (row.status != 0 || row.lack != Lack::fails);
            const bool tabled = done || std::ranges::count(row.failures, first.status) == 1;
            ASSERT_TRUE(failed ? tabled : first == whole) << first.status << " at " << allowed;
            const bool mayBeEmpty = first.status != 0 || row.lack == Lack::mayReadAsNothing;
            ASSERT_TRUE(first.out == whole.out || (mayBeEmpty && gotNothing)) << first.status << " at " << allowed;
            ASSERT_TRUE(first.status == 0 || first.messages > 0 || fails != Fails::once)
                << first.status << " at " << allowed;
        }
    }
    EXPECT_TRUE(told);
}

INSTANTIATE_TEST_SUITE_P(Functions, Exhaustion, testing::ValuesIn(kRows),
                         [](const auto& row) { return row.param.name; });
