// Every fault of a target in every request of every function: what the call looks like, times what the function does then.
#include <algorithm>
#include <cctype>
#include <future>
#include <optional>
#include <set>
#include <thread>

#include "faults/every_function.h"
#include "support/open_handles.h"
#include "support/shortened_limits.h"
#include "support/threads.h"

using namespace applman;

namespace {

#if defined(_WIN32)
constexpr std::chrono::milliseconds kShortCall{200}; // since a call that works takes longer there
constexpr bool kCountsHandles = false; // the thread library keeps those of threads that ended, for new ones
#else
constexpr std::chrono::milliseconds kShortCall{100};
constexpr bool kCountsHandles = true;
#endif
constexpr std::chrono::milliseconds kLate{50};       // beyond that
constexpr std::chrono::milliseconds kAllowance{100}; // for each request
constexpr std::size_t kTransferRequests = 3;
constexpr int kAttempts = 4;      // on a machine that is slower than a short call now and then
constexpr int kShortTransfer = 4; // short calls, since a target waits for its disk then

/// What a call with a fault looks like to its caller.
enum class Looks : std::uint8_t { good, refused, lacked, notOffered, failed, silent };

struct FaultRow {
    std::string fault;
    Looks looks;
    Words procedures{}; // that show it; 0 = file transfer; empty = all
};

void PrintTo(const FaultRow& row, std::ostream* stream) { *stream << row.fault; }

const Words kWithArrays{11, 16, 19, 24};
const Words kChannels{0, 17, 19}; // a silence costs its time; what it is to a function, "hang" tells
const Words kWithLists{2, 3, 4, 6, 7, 8, 9, 10, 11, 14, 16, 18, 19, 20, 22, 23, 24, 25, 26, 27, 28, 29};

const FaultRow kFaults[] = {
    {"delay=1", Looks::good},
    {"split", Looks::good},
    {"twice", Looks::good},
    {"trailing", Looks::good},
    {"corrupt-list", Looks::good},
    {"refuse=0x14a00803", Looks::refused}, // the code of an unknown process
    {"lack-parameter", Looks::lacked},
    {"lack-procedure", Looks::notOffered},
    {"accept-status=1", Looks::failed},
    {"accept-status=2", Looks::failed},
    {"accept-status=4", Looks::failed},
    {"accept-status=5", Looks::failed},
    {"accept-status=6", Looks::failed},
    {"accept-status=0xffffffff", Looks::failed},
    {"rpc-mismatch", Looks::failed},
    {"auth-error", Looks::failed},
    {"auth-error=0x7fffffff", Looks::failed},
    {"text", Looks::failed, {14, 18}},
    {"bytes", Looks::failed, kWithLists},
    {"bytes=0xfffffffd", Looks::failed, kWithLists},
    {"array", Looks::failed, kWithArrays},
    {"array=0x40000001", Looks::failed, kWithArrays},
    {"tag", Looks::failed, {10, 11, 25}},
    {"fragment", Looks::failed},
    {"cut=2", Looks::failed},
    {"cut=27", Looks::failed},
    {"cut=31", Looks::failed},
    {"close", Looks::failed},
    {"reset", Looks::failed},
    {"hang", Looks::silent},
    {"stop-reading", Looks::silent, kChannels},
    {"wrong-xid", Looks::silent, kChannels},
    {"stale-xid", Looks::silent, kChannels},
    {"overtaken", Looks::silent, kChannels},
    {"delay", Looks::silent, kChannels},
    {"hang,reboot", Looks::silent, kChannels},
};

/// A call: how it ends, and what its caller sees.
struct Expected {
    std::int32_t status = 0;
    Messages messages{};
    Out out{};
};

using Run = std::int32_t (*)(Call&);

/// A request of a function, as a fault rule names it, and what the function does when that goes wrong. In front of the
/// messages of `refused` stands the target's own; so it is with `lacked` and a refusal without an outcome of its own. A
/// procedure that is not offered counts as a failed call unless it has an outcome of its own.
struct RequestRow {
    std::string call;
    Run run;
    Expected failed;
    std::optional<Expected> refused{}; // none: like a failed call
    std::optional<Expected> lacked{};
    std::optional<Expected> notOffered{};
    bool dropsRefusal = false; // with the target's message
};

/// A command, and the two requests of the wait for it.
struct CommandRow {
    const char *call, *timeout, *poll;
    Run run;
    std::string operation;
    std::int32_t status;
    std::string failure{}; // none: every failure of the wait is summarized
    Messages then{};
};

Messages join(Messages first, const Messages& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Expected remote(const std::string& operation, const Messages& then = {}, const Out& out = {}) {
    return {-185, join({operation + " 0x1250000a(" + operation + ")"}, then), out};
}

/// A request whose refusal is told by `code` alone.
RequestRow plain(const char* call, Run run, const std::string& operation, std::int32_t status, const std::string& code,
                 const std::optional<Expected>& lacked = {}) {
    return {call, run, remote(operation), Expected{status, {operation + " " + code}}, lacked};
}

/// The messages tell the process and the file that the call works with now.
std::vector<RequestRow> requestRows(const Call& c) {
    char id[16];
    std::snprintf(id, sizeof id, "%x", c.applId);
    const std::string ofId = std::string{"("} + id;
    std::string file = c.file;
    std::replace(file.begin(), file.end(), '/', '\\');
    const std::string create = "KvApplMan_createApplGroupHandle_2 ";
    const std::string enroll = "KvApplMan_registerAppl_2 ";
    const std::string setGroup = "KvApplMan_setMpParameters";
    const std::string load = "KvApplMan_downloadApplUtf8 ";
    const std::string read = "KvApplMan_getApplInfo";
    const std::string unread = read + " 0x12500007";
    const std::string noCount = "KvApplMan_checkApplicationCount 0x1250004e";
    const std::string noFile =
        "copyBinaryToTarget 0x1250000d(transfer," + file + ",applications/" + std::to_string(c.applId);
    const Messages loadFailed{load + "0x12500050(1,1)"};
    const Expected announced = remote("KvApplMan_setDownloadParameters", loadFailed);
    const Expected refusedAnnouncement{-176, join({"KvApplMan_setDownloadParameters 0x12500028"}, loadFailed)};
    const Expected noPath{-175, join({"KvApplMan_getApplBinaryTargetPath 0x12500007"}, loadFailed)};
    const Expected noTransfer{-195, join({noFile + ",file.bin)"}, loadFailed)};
    const Expected created{0, {}, {0x0100007f}};
    const Expected registered{0, {}, {1, 1}};

    // clang-format off
    std::vector<RequestRow> rows{
        {"17", createGroup, {-840, {create + "0x12500033"}}, {}, {}, created},
        {"10", createGroup, {-840, join(remote(read).messages, {create + "0x12500046(0,-185)", create + "0x12500048"})},
         Expected{-840, {unread, create + "0x12500046(0,-175)", create + "0x12500048"}}, created},
        {"10", registerAppl, {-110, join(remote(read).messages, {enroll + "0x1250004a(1,-185)"})},
         Expected{-110, {unread, enroll + "0x1250004a(1,-175)"}}, registered},
        // The host's time may be refused, and is sent in another way then; what else becomes of it is only reported.
        {"2@1", registerAppl, {0, remote("KvApplMan_setApplParameter").messages, {1, 1}}, registered, registered, {},
         true},
        {"18", registerAppl, {-110, {enroll + "0x12500000"}}, {}, {},
         Expected{-185, join({enroll + "0x12500034(1,1)"},
                             remote("KvApplMan_registerAppl_2", {enroll + "0x12500000"}).messages)}},
        {"2@2", registerAppl, remote(setGroup, {}, {1, 1}),
         Expected{-176, {setGroup + " 0x1250004c" + ofId + ",29)"}, {1, 1}}, registered},
        {"2@3", registerAppl, remote(setGroup, {}, {1, 1}),
         Expected{-176, {setGroup + " 0x1250004c" + ofId + ",30)"}, {1, 1}}, registered},
        plain("2", setParameter, "KvApplMan_setApplParameter", -176, "0x12500028", Expected{}),
        {"10@1", download, remote(read, {noCount}), Expected{-175, {unread, noCount}}, Expected{}},
        {"10@2", download, remote(read, {load + "0x12500054"}), Expected{-175, {unread, load + "0x12500054"}},
         Expected{}},
        {"2@1", download, announced, refusedAnnouncement},
        {"2@7", download, announced, refusedAnnouncement},
        {"10@3", download, noPath, noPath},
        {"10@4", download, noPath, noPath},
        {"file.1", download, noTransfer},
        {"file.2", download, noTransfer},
        {"file.3", download, noTransfer},
        plain("10", getInfo<0>, read, -175, "0x12500007"),
        plain("10", getInfo<2055>, read, -175, "0x12500007", Expected{}),
        {"11", getApplications, remote("KvApplMan_getApplications", {}, {0, 0, 2}),
         Expected{-215, {"KvApplMan_getApplications 0x12500016"}, {0, 0, 2}}},
        plain("11", getInfoList, "KvApplMan_getApplications", -215, "0x12500016"),
        plain("10", getInfoList, read, -175, "0x12500007"),
        {"19", getCores, {}, Expected{-841, {"KvApplMan_getAvailableCoreIDs 0x12500036"}, {0, 0, 0, 0, 4}}, {},
         Expected{0, {}, {1, 0, 0, 0, 1}}},
        {"14", loadFile, remote("KvApplMan_loadFileUtf8"),
         Expected{-832, {"KvApplMan_loadFileUtf8 0x12500041(" + file + ",1,-1," + id + ")"}}, {}, Expected{}},
        {"file.1", loadFile, {-195, {noFile + "/files,x)"}}},
        {"16", getFiles, remote("KvApplMan_getFileInfo"), Expected{}},
        plain("20", removeFile, "KvApplMan_removeFile", -831, std::string{"0x12500037(x,1,-1,"} + id + ")"),
        {"24", getFlash, {}, Expected{-851, {"KvApplMan_getFlashApplications 0x1250003b"}, {0, 0, 2}}},
        plain("25", getFlashInfo, "KvApplMan_getFlashApplInfo", -175, "0x1250003d"),
        plain("26", setFlash, "KvApplMan_setFlashApplParameter", -176, "0x1250003e"),
        plain("28", flashCommand<KvApplMan_clearFlashAppl>, "KvApplMan_clearFlashAppl", -853, "0x12500040"),
    };
    const CommandRow commands[] = {
        {"4", "10@5", "9@1", download, "download", -130, "0x12500002", loadFailed},
        {"3", "10@6", "9@2", download, "KvApplMan_InitAppl", -120, "0x12500001", {load + "0x12500056(1,1,1,1)"}},
        {"8", "10@7", "9@3", download, "KvApplMan_ApplyAppl", -140, "0x12500003", {load + "0x12500057(1,1)"}},
        {"6", "10@1", "9@1", command<KvApplMan_startAppl>, "KvApplMan_startAppl", -150, "0x12500004"},
        {"7", "10@1", "9@1", command<KvApplMan_stopAppl>, "KvApplMan_stopTerminateAppl", -160, "0x12500005"},
        {"29", "10@1", "9@1", command<KvApplMan_terminateAppl>, "KvApplMan_stopTerminateAppl", -161, "0x12500060"},
        {"27", "10@1", "9@1", flashCommand<KvApplMan_loadFlashAppl>, "KvApplMan_loadFlashAppl", -852, "0x1250003f"},
        {"22", "10@1", "9@1", command<KvApplMan_pauseAppl>, "KvApplMan_pauseAppl", -165, "",
         {"KvApplMan_pauseAppl 0x12500038" + ofId + ")"}},
        {"23", "10@1", "9@1", command<KvApplMan_stepAppl>, "KvApplMan_stepAppl", -166, "",
         {"KvApplMan_stepAppl 0x12500039" + ofId + ")"}},
        {"5", "10@1", "9@1", command<KvApplMan_unloadAppl>, "KvApplMan_unloadAppl", -170, "0x12500006"},
    };
    // clang-format on
    for (const CommandRow& row : commands) {
        const bool summarized = row.failure.empty();
        const Messages own = summarized ? Messages{} : Messages{row.operation + " " + row.failure};
        const std::string polled = summarized ? "0x12500020(" + std::to_string(row.status) + ")" : row.failure;
        const Messages unknown = join({"waitWhileBusy 0x12500023"}, row.then);
        rows.push_back({row.call, row.run, remote(row.operation, summarized ? Messages{} : row.then),
                        Expected{row.status, join(own, row.then)}});
        rows.push_back(
            {row.timeout, row.run, remote(read, unknown), Expected{-175, join({unread}, unknown)}, Expected{}});
        rows.push_back({row.poll, row.run, remote("waitWhileBusy", row.then),
                        Expected{row.status, join({"waitWhileBusy " + polled}, row.then)}});
    }
    rows.back().lacked = Expected{-170, {"applicationManager 0x14a00804(0,0)", "waitWhileBusy 0x12500006"}};
    rows.back().refused = Expected{}; // a process that is unknown has been unloaded
    rows.back().dropsRefusal = true;
    return rows;
}

/// None for file transfer, whose refusals carry no messages.
bool ofApplicationManager(const RequestRow& row) { return !row.call.starts_with("file."); }

bool concerns(const FaultRow& fault, const RequestRow& row) {
    const std::uint64_t procedure = ofApplicationManager(row) ? std::stoul(row.call) : 0;
    return fault.procedures.empty() || std::ranges::count(fault.procedures, procedure) > 0;
}

/// A transfer awaits the replies to all but its last request together.
bool isOfNoMatter(const FaultRow& fault, const RequestRow& row) {
    return fault.looks == Looks::good || (fault.fault == "overtaken" && (row.call == "file.1" || row.call == "file.2"));
}

Expected expectedOf(const RequestRow& row, const FaultRow& fault, const Expected& faultless) {
    if (isOfNoMatter(fault, row)) { return faultless; }
    if (fault.looks == Looks::notOffered) { return row.notOffered.value_or(row.failed); }
    if (fault.looks == Looks::failed || fault.looks == Looks::silent) { return row.failed; }
    const bool lacked = fault.looks == Looks::lacked;
    if (lacked && row.lacked) { return *row.lacked; }
    Expected refused = row.refused.value_or(row.failed);
    if (ofApplicationManager(row) && !row.dropsRefusal) {
        const char* const message = lacked ? "applicationManager 0x14a00804(0,0)" : "applicationManager 0x14a00803";
        refused.messages.insert(refused.messages.begin(), message);
    }
    return refused;
}

class FaultMatrix : public EveryFunction, public testing::WithParamInterface<FaultRow> {
protected:
    Expected run(const RequestRow& row) {
        t.target.forgetRequests();
        call.give({});
        const Outcome ended = outcome(row.run(call));
        return {ended.first, ended.second, call.out};
    }

    /// Runs a function with the fault in one of its requests. Result: whether the fault came about, and cost no more
    /// time than it may.
    bool runFaulty(const RequestRow& row, std::chrono::milliseconds shortCall, Expected& got) {
        std::string rule = row.call + (row.call.find('@') == std::string::npos ? "@1:" : ":") + fault.fault;
        if (fault.fault == "delay") { rule += "=" + std::to_string((shortCall + kLate).count()); }
        const bool silent = fault.looks == Looks::silent && !isOfNoMatter(fault, row);
        const std::uint64_t faultyCalls = t.target.faultyCalls();
        t.target.addFault(simulated_target::parseFault(rule));
        std::optional<ShortenedLimits> shortened;
        if (silent) { shortened.emplace(shortCall, t.device); }
        const auto start = std::chrono::steady_clock::now();
        got = run(row);
        const auto time = std::chrono::steady_clock::now() - start;
        shortened.reset();
        t.target.clearFaults();
        const auto bound = silent * shortCall + (t.target.requests().size() + kTransferRequests) * kAllowance;
        return t.target.faultyCalls() > faultyCalls && time <= bound;
    }

    /// The target works again, on the same handles and in another thread; everything else is as it was.
    void recover() {
        if (fault.fault == "stop-reading") { t.target.dropConnections(); }
        std::async(std::launch::async, [this] {
            if (fault.fault.ends_with("reboot")) {
                for (int i = 0; i < 500 && (getCores(call) != 0 || call.out[0] == 0); ++i) {
                    std::this_thread::sleep_for(std::chrono::milliseconds{2});
                }
                pool->reset();
                prepare();
            }
            EXPECT_EQ(getCores(call), 0);
            EXPECT_EQ(call.out, (Out{1, 2, 3, 4, 4}));
            EXPECT_EQ(messages(pool), Messages{});
        }).get();
    }

    std::size_t requestsSentAgain() const {
        std::set<std::pair<std::uint32_t, std::vector<std::uint8_t>>> different;
        const auto all = t.target.requests();
        for (const auto& request : all) {
            different.emplace(request.procedure, request.arguments);
        }
        return all.size() - different.size();
    }

    const FaultRow& fault = GetParam();
};

TEST_P(FaultMatrix, EveryRequestOfEveryFunction) {
    std::size_t handles = kCountsHandles ? openHandles() : 0;
    for (std::size_t i = 0; i < requestRows(call).size(); ++i) {
        const RequestRow row = requestRows(call)[i];
        if (!concerns(fault, row)) { continue; }
        SCOPED_TRACE(row.call + ":" + fault.fault + " " + testing::PrintToString(row.failed.messages));
        const Expected faultless = run(row);
        EXPECT_EQ(faultless.status, 0);
        EXPECT_EQ(faultless.messages, Messages{});
        const std::size_t sentAgain = requestsSentAgain();
        const auto shortest = kShortCall * (ofApplicationManager(row) ? 1 : kShortTransfer);
        Expected got;
        bool tells = false;
        for (int attempt = 0; attempt < kAttempts && !tells; ++attempt) {
            if (attempt > 0) { recover(); }
            tells = runFaulty(row, shortest * (1 << attempt), got);
        }
        EXPECT_TRUE(tells) << "the fault did not come about, or its call took too long";
        const Expected expected = expectedOf(requestRows(call)[i], fault, faultless);
        EXPECT_EQ(got.status, expected.status);
        EXPECT_EQ(got.messages, expected.messages);
        EXPECT_EQ(got.out, expected.out);
        EXPECT_LE(requestsSentAgain(), sentAgain) << "a call that was sent is never sent again";
        recover();
        if (!kCountsHandles) { continue; }
        for (int nap = 0; nap < 2000 && openHandles() > handles; ++nap) { // the target closes its side later
            std::this_thread::sleep_for(std::chrono::milliseconds{2});
        }
        ASSERT_LE(openHandles(), handles);
        handles = openHandles();
    }
}

INSTANTIATE_TEST_SUITE_P(Faults, FaultMatrix, testing::ValuesIn(kFaults), [](const auto& instance) {
    std::string name = instance.param.fault;
    std::ranges::replace_if(
        name, [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
});

using Reboot = ApiTest;

TEST_F(Reboot, CostsEachThreadAtMostOneCallOnceTheTargetListensAgain) {
    for (int round = 0; round < 5; ++round) {
        t.target.reboot();
        const auto start = std::chrono::steady_clock::now();
        inThreads(16, [this](std::size_t) {
            const Pool own;
            Call call{*own, t.device, t.access};
            int failures = 0;
            while (getCores(call) != 0 || call.out[0] == 0) {
                ++failures;
            }
            EXPECT_LE(failures, 1);
        });
        EXPECT_LE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds{250});
    }
    EXPECT_LE(t.target.acceptedConnections(), 5U);
}

} // namespace
