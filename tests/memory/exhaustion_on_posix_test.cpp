// What every exported function does when memory runs out: at each of its allocations, once and for good. On POSIX only,
// because under Wine it takes minutes.
#include <algorithm>
#include <fstream>
#include <utility>

#include "api/api_test.h"
#include "support/failing_memory.h"

using namespace applman;

namespace {

using Fails = FailingMemory::Fails;
using Out = std::array<std::uint32_t, 4>; // what out-parameters hold after a call
using Statuses = std::vector<std::int32_t>;

// Statuses of calls that lack memory. -1 is the registry's own, passed on.
const Statuses kNothing{};
const Statuses kClient{-1, -100, -180};
const Statuses kCall{-1, -100, -180, -185};
const Statuses kGroup{-1, -100, -180, -840};
const Statuses kRegistration{-100, -110, -185, -245};
const Statuses kLoad{-1, -100, -180, -185, -190, -195};
const Statuses kDownload{-1, -100, -175, -180, -185, -190, -195};

const TemporaryFolder folder;
const std::string tree = (folder.path() / "tree").string();
const std::string file = (folder.path() / "tree/file.bin").string();

/// What a call has in hand. Nothing of it needs memory during the call.
struct Call {
    KvCErrorListPool& pool;
    void* device = nullptr;
    void* access = nullptr;
    KvSApplGroupHandle* group = nullptr;
    KvTApplicationInfo* list = nullptr;
    std::uint32_t listed = 0;
    Out out{};

    template <class... Parameters>
    std::int32_t operator()(std::int32_t (*function)(KvCErrorListPool&, void*, void*, Parameters...) noexcept,
                            std::type_identity_t<Parameters>... arguments) {
        return function(pool, device, access, arguments...);
    }
    void release() {
        if (group != nullptr) { KvApplMan_deleteApplGroupHandle(pool, std::exchange(group, nullptr)); }
        KvApplMan_freeApplInfoList(&list, &listed);
    }
};

std::int32_t createGroup(Call& c) {
    const std::int32_t status = KvApplMan_createApplGroupHandle_2(c.pool, &c.device, &c.access, 1, &c.group);
    c.out[0] = c.group == nullptr ? 0 : c.group->ipAddresses[0];
    return status;
}

std::int32_t makeList(Call& c) {
    const std::int32_t status = c(KvApplMan_getApplInfoList, &c.list, &c.listed, nullptr);
    c.out = {c.listed, c.list == nullptr ? 0 : c.list->applId};
    return status;
}

std::int32_t listFiles(Call& c) {
    TApplManAddFileInfo info;
    c.out[0] = 1;
    const std::int32_t status = c(KvApplMan_getFileInfo, 1, c.out.data(), &info);
    c.out[1] = info.entryWord;
    return status;
}

void ignore(const KvTApplManProgress*, void*) {}

std::int32_t load(Call& c, const std::string& source, std::uint32_t type) {
    return c(KvApplMan_loadFileUtf8, 1, source.c_str(), "p", "n", type, 0, ignore, nullptr, "info");
}

std::int32_t registerOne(Call& c) {
    std::uint32_t serial = 1;
    std::uint32_t address = 0x0100007f;
    KvSApplGroupHandle group{0, 0, 0, 1, 0, &serial, &address};
    const std::int32_t status = c(KvApplMan_registerAppl_2, &group, 1, c.out.data());
    c.out[0] = c.out[0] == 0 ? 0 : 1; // a new ID each time
    return status;
}

std::int32_t download(Call& c) {
    const char* const path = file.c_str();
    const std::uint32_t applId = 1;
    return KvApplMan_downloadApplUtf8(c.pool, &c.device, &c.access, &applId, &path, 7, 1, ignore, nullptr, nullptr);
}

std::int32_t readAddresses(Call& c) {
    std::int32_t size = sizeof c.out;
    return c(KvApplMan_getApplInfo, 1, 16, c.out.data(), &size);
}

template <auto kFunction>
std::int32_t command(Call& c) {
    return c(kFunction, 1);
}

template <auto kFunction>
std::int32_t listIds(Call& c) {
    std::uint32_t count = 4;
    return c(kFunction, 0, &count, c.out.data());
}

/// What a lack of memory does: fails the call, may be of no matter, or may also read as an empty answer.
enum class Lack { fails, mayNotMatter, mayReadAsNothing };

struct Row {
    const char* name;
    std::int32_t (*call)(Call& call);
    Statuses failures;           // that a lack of memory may come to
    std::uint32_t procedure = 0; // that gets this reply
    simulated_target::ScriptedReply reply{};
    std::int32_t status = 0; // with memory enough
    Lack lack = Lack::fails;
    std::int32_t (*prepare)(Call& call) = nullptr;
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.name; }

// clang-format off
const Row kRows[] = {
    {"createGroup", createGroup, kGroup},
    {"deleteGroup", [](Call& c) { return KvApplMan_deleteApplGroupHandle(c.pool, std::exchange(c.group, nullptr)); },
     kNothing, 0, {}, 0, Lack::fails, createGroup},
    {"registerAppl", registerOne, kRegistration, 0, {}, 0, Lack::mayNotMatter},
    {"registerApplRefused", registerOne, kRegistration, kRegisterAppl,
     wire::reply(TApplManRegisterResult{-1, 3, {}, {}, wire::errorList({0x14a00900})}), -110},
    {"setApplParameter", [](Call& c) { return c(KvApplMan_setApplParameter, 1, 1003, "text", 4); }, kCall},
    {"download", download, kDownload},
    {"downloadRefused", download, kDownload, kInitAppl, wire::result(-1, {0x14a00900}), -120},
    {"startAppl", command<KvApplMan_startAppl>, kCall, kStartAppl, wire::result(0)},
    {"stopAppl", command<KvApplMan_stopAppl>, kCall, kStopAppl, wire::result(0)},
    {"terminateAppl", command<KvApplMan_terminateAppl>, kCall, kTerminateAppl, wire::result(0)},
    {"unloadAppl", command<::KvApplMan_unloadAppl>, kCall, kUnloadAppl, wire::result(0)},
    {"pauseAppl", command<KvApplMan_pauseAppl>, kCall, kPauseAppl, wire::result(0)},
    {"stepAppl", command<KvApplMan_stepAppl>, kCall, kStepAppl, wire::result(0)},
    {"getApplInfo", readAddresses, kCall},
    {"getApplInfoDefault", readAddresses, kDownload, kGetParam, wire::noValue({0x14a00804}), 0, Lack::mayReadAsNothing},
    {"getApplications", 
     [](Call& c) { std::int32_t count = 4; return c(KvApplMan_getApplications, 0, c.out.data(), &count); },
     kCall, kGetApplications, wire::value(Words{8, 9})},
    {"getApplInfoList", makeList, kCall, kGetApplications, wire::value(Words{1}), 0, Lack::mayReadAsNothing},
    {"freeApplInfoList", [](Call& c) { KvApplMan_freeApplInfoList(&c.list, &c.listed); return 0; }, kNothing,
     kGetApplications, wire::value(Words{1}), 0, Lack::fails, makeList},
    {"getAvailableCoreIDs", listIds<KvApplMan_getAvailableCoreIDs>, kClient, 0, {}, 0, Lack::mayReadAsNothing},
    {"loadFile", [](Call& c) { return load(c, file, 7); }, kLoad},
    {"loadTree", [](Call& c) { return load(c, tree, 512); }, kLoad},
    {"loadFileRefused", [](Call& c) { return load(c, file, 6); }, kCall, kAddFile2,
     wire::reply(TApplManAddFileResult{-1, "", wire::errorList({0x14a01077}), ""}), -832},
    {"getFileInfo", listFiles, kCall, kGetFileList,
     wire::reply(TApplManFileListResult{0, 0, {{"a", "b", "c", 9}}, {}})},
    {"removeFile", [](Call& c) { return c(KvApplMan_removeFile, 1, "n", 7); }, kCall, kRemoveFile, wire::result(0)},
    {"getFlashApplications", listIds<::KvApplMan_getFlashApplications>, kClient, kGetFlashApplications,
     wire::reply(TApplManFlashListResult{1, 0, {}, {3, 4}, {}, {}}), 0, Lack::mayReadAsNothing},
    {"getFlashApplInfo", 
     [](Call& c) { std::int32_t size = 4; return c(KvApplMan_getFlashApplInfo, 7, 2, c.out.data(), &size); },
     kCall, kGetFlashParam, wire::value(Text{"abc"})},
    {"setFlashApplParameter", [](Call& c) { return c(KvApplMan_setFlashApplParameter, 7, 1200, "12345678", 8); }, kCall,
     kSetFlashParam, wire::result(0)},
    {"loadFlashAppl", command<::KvApplMan_loadFlashAppl>, kCall, kLoadFlashAppl, wire::result(0)},
    {"clearFlashAppl", command<::KvApplMan_clearFlashAppl>, kCall, kClearFlashAppl, wire::result(0)},
};
// clang-format on

struct Ended {
    std::int32_t status = 0;
    std::uint32_t messages = 0;
    Out out{};
    bool operator==(const Ended&) const = default;
};

class Exhaustion : public ApiTest, public testing::WithParamInterface<Row> {
protected:
    Exhaustion() {
        std::filesystem::create_directories(tree + "/deep");
        std::ofstream{file} << "content";
        std::ofstream{tree + "/deep/file"} << "more";
        Call call{*pool, t.device, t.access};
        EXPECT_EQ(registerOne(call), 0); // application 1
        if (row.procedure != 0) { t.target.scriptAlways(row.procedure, row.reply); }
        run(call, {}); // what is made once for all
    }

    Ended run(Call& call, const std::optional<std::pair<std::size_t, Fails>>& lack) {
        if (row.prepare != nullptr) { EXPECT_EQ(row.prepare(call), 0); }
        call.out = {};
        Ended ended;
        {
            const FailingMemory memory{lack ? lack->first : kEnough, lack ? lack->second : Fails::once};
            ended.status = row.call(call);
            failed = memory.hasFailed();
        }
        ended.messages = call.pool.getErrorCount();
        ended.out = call.out;
        call.release();
        call.pool.reset();
        return ended;
    }

    /// A call without enough memory, if there is a lack, and one with it on the same handles, those of a new device.
    void runTwice(const std::optional<std::pair<std::size_t, Fails>>& lack, Ended& first, Ended& second) {
        const Pool own;
        Call call{*own};
        ASSERT_EQ(KvPlatform_addDevice(own, t.address.c_str(), 1, &call.device), 0);
        ASSERT_EQ(KvHIM_createAccessRestrictionHandle(own, call.device, &call.access), 0);
        const std::ptrdiff_t before = memoryUse().blocks;
        if (lack) { first = run(call, lack); }
        const bool lacked = failed;
        second = run(call, {});
        failed = lacked;
        held = memoryUse().blocks - before;
        ASSERT_EQ(KvPlatform_removeDevice(own, call.device), 0);
    }

    static constexpr std::size_t kEnough = 1U << 30;
    const Row& row = GetParam();
    bool failed = true;      // the call has lacked memory
    std::ptrdiff_t held = 0; // by the device, after its calls
};

} // namespace

TEST_P(Exhaustion, CostsTheCallAtMost) {
    Ended whole;
    Ended first;
    Ended second;
    runTwice({}, first, whole);
    EXPECT_EQ(whole.status, row.status);
    const std::ptrdiff_t usuallyHeld = held;
    for (const auto fails : {Fails::once, Fails::fromThenOn}) {
        failed = true;
        for (std::size_t allowed = 0; failed; ++allowed) {
            const std::ptrdiff_t before = memoryUse().blocks;
            runTwice({{allowed, fails}}, first, second);
            ASSERT_EQ(memoryUse().blocks, before) << "leaked at " << allowed;
            ASSERT_EQ(held, usuallyHeld) << "kept at " << allowed;
            ASSERT_EQ(second, whole) << "later call, at " << allowed;
            const bool done = first.status == row.status && (row.status != 0 || row.lack != Lack::fails);
            const bool tabled = done || std::ranges::count(row.failures, first.status) == 1;
            ASSERT_TRUE(failed ? tabled : first == whole) << first.status << " at " << allowed;
            const bool mayBeEmpty = first.status != 0 || row.lack == Lack::mayReadAsNothing;
            ASSERT_TRUE(first.out == whole.out || (mayBeEmpty && first.out == Out{}))
                << first.status << " at " << allowed;
            ASSERT_TRUE(first.status == 0 || first.messages > 0 || fails != Fails::once)
                << first.status << " at " << allowed;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Functions, Exhaustion, testing::ValuesIn(kRows),
                         [](const auto& row) { return row.param.name; });
