// Every fault of a target in every request of every function: what the call looks like, times what the function does then.
#include <algorithm>
#include <cctype>
#include <fstream>
#include <future>
#include <optional>
#include <set>
#include <thread>

#include "api/api_test.h"
#include "rpc_client/rpc_limits.h"
#include "support/open_handles.h"

using namespace applman;

namespace {

/// What a call with a fault looks like to its caller.
enum class Looks : std::uint8_t { good, refused, lacked, notOffered, failed, silent };

#if defined(_WIN32)
constexpr std::chrono::milliseconds kShortCall{200}; // since a call that works takes longer there
constexpr bool kCountsHandles = false; // the thread library keeps those of threads that ended, for new ones
#else
constexpr std::chrono::milliseconds kShortCall{100};
constexpr bool kCountsHandles = true;
#endif
constexpr std::chrono::milliseconds kLate{50}; // beyond that
constexpr std::string_view kLateReply = "delay";
constexpr int kAttempts = 4;      // on a machine that is slower than a short call now and then
constexpr int kShortTransfer = 4; // short calls, since a target waits for its disk then

struct FaultRow {
    const char* fault;
    Looks looks;
    Words procedures{}; // whose replies have the field; empty = all
};

void PrintTo(const FaultRow& row, std::ostream* stream) { *stream << row.fault; }

const Words kWithArrays{11, 16, 19, 24};
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
    {"accept-status=3", Looks::notOffered},
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
    {"stop-reading", Looks::silent},
    {"wrong-xid", Looks::silent},
    {"stale-xid", Looks::silent},
    {"overtaken", Looks::silent},
    {kLateReply.data(), Looks::silent},
    {"hang,reboot", Looks::silent},
};

struct Expected {
    std::int32_t status = 0;
    Messages messages{};
    Words out{}; // what the caller sees beside the status
    bool operator==(const Expected&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Expected& expected) {
    return stream << expected.status << " " << testing::PrintToString(expected.messages) << " "
                  << testing::PrintToString(expected.out);
}

constexpr std::chrono::milliseconds kAllowance{100}; // for each request
constexpr std::size_t kTransferRequests = 3;

class Reboot : public ApiTest {
protected:
    bool answers() const {
        Pool own;
        std::uint32_t count = 4;
        Words cores(4);
        return KvApplMan_getAvailableCoreIDs(own, t.device, t.access, 0, &count, cores.data()) == 0 && count == 4;
    }
};

struct RequestRow;

class FaultMatrix : public ApiTest, public testing::WithParamInterface<FaultRow> {
public:
    FaultMatrix() : ApiTest(options()) {
        std::ofstream{file_} << "binary";
        for (const std::uint32_t command : {3U, 4U, 5U, 6U, 7U, 8U, 9U, 13U, 20U, 22U, 23U, 26U, 27U, 28U, 29U}) {
            t.target.scriptAlways(command, wire::result(0)); // in every state of the process
        }
        prepare();
    }
    ~FaultMatrix() override { KvApplMan_deleteApplGroupHandle(pool, group_); }

    // The functions. Each leaves in `out` what its caller sees beside the status.

    template <auto kFunction>
    std::int32_t command() {
        return kFunction(pool, t.device, t.access, applId_);
    }
    std::int32_t createGroup() {
        auto* group = reinterpret_cast<KvSApplGroupHandle*>(this);
        const std::int32_t status = KvApplMan_createApplGroupHandle_2(pool, &t.device, &t.access, 1, &group);
        out = {group == nullptr ? 0U : 1U};
        if (status == 0) { EXPECT_EQ(KvApplMan_deleteApplGroupHandle(pool, group), 0); }
        return status;
    }
    std::int32_t registerAppl() {
        std::uint32_t applId = 0xFFFFFFFF;
        const std::int32_t status = KvApplMan_registerAppl_2(pool, t.device, t.access, group_, 1, &applId);
        out = {group_->lastApplNo, applId == 0 ? 0U : 1U};
        if (applId != 0) { applId_ = applId; }
        return status;
    }
    std::int32_t setParameter() {
        return KvApplMan_setApplParameter(pool, t.device, t.access, applId_, 1008, "abc", 4);
    }
    std::int32_t download() {
        const std::string file = file_.string();
        const char* const path = file.c_str();
        return KvApplMan_downloadApplUtf8(pool, &t.device, &t.access, &applId_, &path, 0, 1, nullptr, nullptr, nullptr);
    }
    template <std::uint32_t kItem>
    std::int32_t getInfo() {
        out = {0xFFFFFFFF};
        std::int32_t size = 4;
        return KvApplMan_getApplInfo(pool, t.device, t.access, applId_, kItem, out.data(), &size);
    }
    std::int32_t getApplications() {
        std::int32_t count = 2;
        out = {9, 9};
        const std::int32_t status = KvApplMan_getApplications(pool, t.device, t.access, 4, out.data(), &count);
        out.push_back(static_cast<std::uint32_t>(count));
        return status;
    }
    std::int32_t getInfoList() {
        auto* list = reinterpret_cast<KvTApplicationInfo*>(this);
        std::uint32_t count = 9;
        const std::int32_t status = KvApplMan_getApplInfoList(pool, t.device, t.access, &list, &count, nullptr);
        out = {list == nullptr ? 0U : 1U, count == 0 ? 0U : 1U};
        KvApplMan_freeApplInfoList(&list, &count);
        return status;
    }
    std::int32_t getCores() {
        std::uint32_t count = 4;
        out = {9, 9, 9, 9};
        const std::int32_t status = KvApplMan_getAvailableCoreIDs(pool, t.device, t.access, 0, &count, out.data());
        out.push_back(count);
        return status;
    }
    std::int32_t loadFile() {
        return KvApplMan_loadFileUtf8(pool, t.device, t.access, applId_, file_.string().c_str(), "", "x", 1, 0, nullptr,
                                      nullptr, nullptr);
    }
    std::int32_t getFiles() {
        std::uint32_t count = 4;
        std::vector<TApplManAddFileInfo> files(4, TApplManAddFileInfo{{'x'}, {}, {}, 9, {}});
        const std::int32_t status = KvApplMan_getFileInfo(pool, t.device, t.access, applId_, &count, files.data());
        out = {count, files[0].entryWord};
        return status;
    }
    std::int32_t removeFile() { return KvApplMan_removeFile(pool, t.device, t.access, applId_, "x", 1); }
    std::int32_t getFlash() {
        std::uint32_t count = 2;
        out = {9, 9};
        const std::int32_t status = KvApplMan_getFlashApplications(pool, t.device, t.access, 0, &count, out.data());
        out.push_back(count);
        return status;
    }
    std::int32_t getFlashInfo() {
        std::int32_t size = 8;
        out = {0x78787878, 9};
        return KvApplMan_getFlashApplInfo(pool, t.device, t.access, 7, 2, out.data(), &size);
    }
    std::int32_t setFlash() {
        const std::uint64_t value = 5;
        return KvApplMan_setFlashApplParameter(pool, t.device, t.access, 7, 1200, &value, 8);
    }
    template <auto kFunction>
    std::int32_t flashCommand() {
        return kFunction(pool, t.device, t.access, 7);
    }

    Words out{};

protected:
    static simulated_target::Options options() {
        simulated_target::Options options;
        options.flashApplications[7] = "flash";
        return options;
    }

    /// A process with a file, and a group for another one.
    void prepare() {
        renewGroup();
        EXPECT_EQ(KvApplMan_registerAppl_2(pool, t.device, t.access, group_, 1, &applId_), 0);
        EXPECT_EQ(loadFile(), 0);
        renewGroup();
        EXPECT_EQ(messages(pool), Messages{});
    }
    void renewGroup() {
        if (group_ != nullptr) { EXPECT_EQ(KvApplMan_deleteApplGroupHandle(pool, group_), 0); }
        EXPECT_EQ(KvApplMan_createApplGroupHandle_2(pool, &t.device, &t.access, 1, &group_), 0);
    }

    void recover();
    Expected run(const RequestRow& row);
    /// Runs a function with the fault in one of its requests. Result: whether the fault came about, and cost no more time
    /// than it may.
    bool runFaulty(const RequestRow& row, std::chrono::milliseconds shortCall, Expected& got);
    /// With the target's process and file in place of their placeholders.
    Expected filledIn(Expected expected) const;
    std::size_t requestsSentAgain() const;

    TemporaryFolder folder_{};
    const std::filesystem::path file_ = folder_.path() / "file.bin";
    KvSApplGroupHandle* group_ = nullptr;
    std::uint32_t applId_ = 0;
};

using Run = std::int32_t (FaultMatrix::*)();

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

Messages join(Messages first, const Messages& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Expected remote(const std::string& operation, const Messages& then = {}, Words out = {}) {
    return {-185, join({operation + " 0x1250000a(" + operation + ")"}, then), std::move(out)};
}

/// The two requests of a wait for a command.
void addWait(std::vector<RequestRow>& rows, const std::string& timeout, const std::string& poll, Run run,
             std::int32_t status, const std::string& failure, const Messages& then) {
    const Messages unknown = join({"waitWhileBusy 0x12500023"}, then);
    rows.push_back({timeout, run, remote("KvApplMan_getApplInfo", unknown),
                    Expected{-175, join({"KvApplMan_getApplInfo 0x12500007"}, unknown)}, Expected{}});
    rows.push_back(
        {poll, run, remote("waitWhileBusy", then), Expected{status, join({"waitWhileBusy " + failure}, then)}});
}

/// A command, in the name of `operation`.
void addCommand(std::vector<RequestRow>& rows, const char* call, Run run, const std::string& operation,
                std::int32_t status, const std::string& failure) {
    rows.push_back({call, run, remote(operation), Expected{status, {operation + " " + failure}}});
    addWait(rows, "10@1", "9@1", run, status, failure, {});
}

/// A command that ends every failure of its wait with a summary.
void addSummarizedCommand(std::vector<RequestRow>& rows, const char* call, Run run, const std::string& operation,
                          std::int32_t status, const std::string& summary) {
    const Messages then{operation + summary};
    rows.push_back({call, run, remote(operation), Expected{status, then}});
    addWait(rows, "10@1", "9@1", run, status, "0x12500020(" + std::to_string(status) + ")", then);
}

/// A command of a download, in the name of `operation`.
void addDownloadStep(std::vector<RequestRow>& rows, const std::string& call, int number, const std::string& operation,
                     std::int32_t status, const std::string& failure, const std::string& summary) {
    const Run run = &FaultMatrix::download;
    const Messages then{"KvApplMan_downloadApplUtf8 " + summary};
    rows.push_back({call, run, remote(operation, then), Expected{status, join({operation + " " + failure}, then)}});
    addWait(rows, "10@" + std::to_string(number + 4), "9@" + std::to_string(number), run, status, failure, then);
}

std::vector<RequestRow> requestRows() {
    using F = FaultMatrix;
    const std::string create = "KvApplMan_createApplGroupHandle_2 ";
    const std::string enroll = "KvApplMan_registerAppl_2 ";
    const std::string read = "KvApplMan_getApplInfo";
    const std::string unread = read + " 0x12500007";
    const std::string noFile = "copyBinaryToTarget 0x1250000d(transfer,{file},applications/{no}";
    const Messages loadFailed{"KvApplMan_downloadApplUtf8 0x12500050(1,1)"};
    const Expected announced = remote("KvApplMan_setDownloadParameters", loadFailed);
    const Expected refusedAnnouncement{-176, join({"KvApplMan_setDownloadParameters 0x12500028"}, loadFailed)};
    const Expected noPath{-175, join({"KvApplMan_getApplBinaryTargetPath 0x12500007"}, loadFailed)};
    const Expected noTransfer{-195, join({noFile + ",file.bin)"}, loadFailed)};
    const Expected registered{0, {}, {1, 1}};
    const Expected refusedGroupData{-176, {}, {1, 1}};

    std::vector<RequestRow> rows{
        {"17", &F::createGroup, {-840, {create + "0x12500033"}, {0}}, {}, {}, Expected{0, {}, {1}}},
        {"10",
         &F::createGroup,
         {-840, join(remote(read).messages, {create + "0x12500046(0,-185)", create + "0x12500048"}), {0}},
         Expected{-840, {unread, create + "0x12500046(0,-175)", create + "0x12500048"}, {0}},
         Expected{0, {}, {1}}},
        {"10",
         &F::registerAppl,
         {-110, join(remote(read).messages, {enroll + "0x1250004a(1,-185)"}), {0, 0}},
         Expected{-110, {unread, enroll + "0x1250004a(1,-175)"}, {0, 0}},
         registered},
        {"18",
         &F::registerAppl,
         {-110, {enroll + "0x12500000"}, {0, 0}},
         {},
         {},
         Expected{-185,
                  {enroll + "0x12500034(1,1)", remote("KvApplMan_registerAppl_2").messages[0], enroll + "0x12500000"},
                  {0, 0}}},
        {"2", &F::setParameter, remote("KvApplMan_setApplParameter"),
         Expected{-176, {"KvApplMan_setApplParameter 0x12500028"}}, Expected{}},
        {"10@1", &F::download, remote(read, {"KvApplMan_checkApplicationCount 0x1250004e"}),
         Expected{-175, {unread, "KvApplMan_checkApplicationCount 0x1250004e"}}, Expected{}},
        {"10@2", &F::download, remote(read, {"KvApplMan_downloadApplUtf8 0x12500054"}),
         Expected{-175, {unread, "KvApplMan_downloadApplUtf8 0x12500054"}}, Expected{}},
        {"2@1", &F::download, announced, refusedAnnouncement},
        {"2@7", &F::download, announced, refusedAnnouncement},
        {"10@3", &F::download, noPath, noPath},
        {"10@4", &F::download, noPath, noPath},
        {"file.1", &F::download, noTransfer},
        {"file.2", &F::download, noTransfer},
        {"file.3", &F::download, noTransfer},
        {"10", &F::getInfo<0>, remote(read, {}, {0}), Expected{-175, {unread}, {0}}},
        {"10", &F::getInfo<2055>, remote(read, {}, {0}), Expected{-175, {unread}, {0}}, Expected{0, {}, {0}}},
        {"11", &F::getApplications, remote("KvApplMan_getApplications", {}, {0, 0, 2}),
         Expected{-215, {"KvApplMan_getApplications 0x12500016"}, {0, 0, 2}}},
        {"11", &F::getInfoList, remote("KvApplMan_getApplications", {}, {0, 0}),
         Expected{-215, {"KvApplMan_getApplications 0x12500016"}, {0, 0}}},
        {"10", &F::getInfoList, remote(read, {}, {0, 0}), Expected{-175, {unread}, {0, 0}}},
        {"19",
         &F::getCores,
         {0, {}, {0, 0, 0, 0, 0}},
         Expected{-841, {"KvApplMan_getAvailableCoreIDs 0x12500036"}, {0, 0, 0, 0, 4}},
         {},
         Expected{0, {}, {1, 0, 0, 0, 1}}},
        {"14",
         &F::loadFile,
         remote("KvApplMan_loadFileUtf8"),
         Expected{-832, {"KvApplMan_loadFileUtf8 0x12500041({file},1,-1,{id})"}},
         {},
         Expected{}},
        {"file.1", &F::loadFile, {-195, {noFile + "/files,x)"}}},
        {"16", &F::getFiles, remote("KvApplMan_getFileInfo", {}, {0, 0}), Expected{0, {}, {0, 0}}},
        {"20", &F::removeFile, remote("KvApplMan_removeFile"),
         Expected{-831, {"KvApplMan_removeFile 0x12500037(x,1,-1,{id})"}}},
        {"24",
         &F::getFlash,
         {0, {}, {0, 0, 0}},
         Expected{-851, {"KvApplMan_getFlashApplications 0x1250003b"}, {0, 0, 2}}},
        {"25", &F::getFlashInfo, remote("KvApplMan_getFlashApplInfo", {}, {0, 0}),
         Expected{-175, {"KvApplMan_getFlashApplInfo 0x1250003d"}, {0, 0}}},
        {"26", &F::setFlash, remote("KvApplMan_setFlashApplParameter"),
         Expected{-176, {"KvApplMan_setFlashApplParameter 0x1250003e"}}},
        {"28", &F::flashCommand<KvApplMan_clearFlashAppl>, remote("KvApplMan_clearFlashAppl"),
         Expected{-853, {"KvApplMan_clearFlashAppl 0x12500040"}}},
    };
    // The host's time may be refused, and is sent in another way then; what else becomes of it is only reported.
    rows.push_back(
        {"2@1", &F::registerAppl, {0, remote("KvApplMan_setApplParameter").messages, {1, 1}}, registered, registered});
    rows.back().dropsRefusal = true;
    for (const auto& [call, parameter] : {std::pair{"2@2", "29"}, std::pair{"2@3", "30"}}) {
        rows.push_back(
            {call, &F::registerAppl, remote("KvApplMan_setMpParameters", {}, {1, 1}),
             Expected{-176, {std::string{"KvApplMan_setMpParameters 0x1250004c({id},"} + parameter + ")"}, {1, 1}},
             registered});
    }
    addDownloadStep(rows, "4", 1, "download", -130, "0x12500002", "0x12500050(1,1)");
    addDownloadStep(rows, "3", 2, "KvApplMan_InitAppl", -120, "0x12500001", "0x12500056(1,1,1,1)");
    addDownloadStep(rows, "8", 3, "KvApplMan_ApplyAppl", -140, "0x12500003", "0x12500057(1,1)");
    addCommand(rows, "6", &F::command<KvApplMan_startAppl>, "KvApplMan_startAppl", -150, "0x12500004");
    addCommand(rows, "7", &F::command<KvApplMan_stopAppl>, "KvApplMan_stopTerminateAppl", -160, "0x12500005");
    addCommand(rows, "29", &F::command<KvApplMan_terminateAppl>, "KvApplMan_stopTerminateAppl", -161, "0x12500060");
    addCommand(rows, "5", &F::command<KvApplMan_unloadAppl>, "KvApplMan_unloadAppl", -170, "0x12500006");
    rows.back().lacked = Expected{-170, {"applicationManager 0x14a00804(0,0)", "waitWhileBusy 0x12500006"}};
    rows.back().refused = Expected{}; // a process that is unknown has been unloaded
    rows.back().dropsRefusal = true;
    addCommand(rows, "27", &F::flashCommand<KvApplMan_loadFlashAppl>, "KvApplMan_loadFlashAppl", -852, "0x1250003f");
    addSummarizedCommand(rows, "22", &F::command<KvApplMan_pauseAppl>, "KvApplMan_pauseAppl", -165,
                         " 0x12500038({id})");
    addSummarizedCommand(rows, "23", &F::command<KvApplMan_stepAppl>, "KvApplMan_stepAppl", -166, " 0x12500039({id})");
    return rows;
}

/// What does not follow from the two tables. A transfer awaits its replies together; a registration goes on when the host's
/// time cannot be told, and a download when the name for its binary cannot be read, with a request that has the same fault
/// or, after a reboot, another end.
enum class Means : std::uint8_t { whatItLooks, nothing, noRegistration, anything };
struct ExceptionRow {
    std::string_view fault, call;
    Run run;
    Means means;
};
const ExceptionRow kExceptions[] = {
    {"overtaken", "file.1", &FaultMatrix::download, Means::nothing},
    {"overtaken", "file.1", &FaultMatrix::loadFile, Means::nothing},
    {"overtaken", "file.2", &FaultMatrix::download, Means::nothing},
    {"stop-reading", "2@1", &FaultMatrix::registerAppl, Means::noRegistration},
    {"hang,reboot", "2@1", &FaultMatrix::registerAppl, Means::anything},
};

/// None for file transfer, whose refusals carry no messages.
bool ofApplicationManager(const RequestRow& row) { return !row.call.starts_with("file."); }
std::uint32_t procedureOf(const std::string& call) { return static_cast<std::uint32_t>(std::stoul(call)); }

Means meansOf(const RequestRow& row, const FaultRow& fault) {
    for (const ExceptionRow& exception : kExceptions) {
        if (exception.fault == fault.fault && exception.call == row.call && exception.run == row.run) {
            return exception.means;
        }
    }
    return Means::whatItLooks;
}

Expected expectedOf(const RequestRow& row, const FaultRow& fault, const Expected& faultless, const Expected& got) {
    const Means means = meansOf(row, fault);
    if (means == Means::nothing) { return faultless; }
    if (means == Means::anything) { return got; }
    if (means == Means::noRegistration) {
        return {-110, join(row.failed.messages, {"KvApplMan_registerAppl_2 0x12500000"}), {0, 0}};
    }
    if (fault.looks == Looks::good) { return faultless; }
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

std::size_t FaultMatrix::requestsSentAgain() const {
    std::set<std::pair<std::uint32_t, std::vector<std::uint8_t>>> different;
    const auto all = t.target.requests();
    for (const auto& request : all) {
        different.emplace(request.procedure, request.arguments);
    }
    return all.size() - different.size();
}

Expected FaultMatrix::filledIn(Expected expected) const {
    char id[16];
    std::snprintf(id, sizeof id, "%x", applId_);
    std::string file = file_.string();
    std::replace(file.begin(), file.end(), '/', '\\');
    for (std::string& message : expected.messages) {
        for (const auto& [placeholder, text] :
             {std::pair<std::string, std::string>{"{id}", id}, {"{no}", std::to_string(applId_)}, {"{file}", file}}) {
            const std::size_t place = message.find(placeholder);
            if (place != std::string::npos) { message.replace(place, placeholder.size(), text); }
        }
    }
    return expected;
}

Expected FaultMatrix::run(const RequestRow& row) {
    t.target.forgetRequests();
    out.clear();
    const std::int32_t status = (this->*row.run)();
    const Outcome reported = outcome(status);
    return {status, reported.second, out};
}

bool FaultMatrix::runFaulty(const RequestRow& row, std::chrono::milliseconds shortCall, Expected& got) {
    const FaultRow& fault = GetParam();
    std::string rule = row.call + (row.call.find('@') == std::string::npos ? "@1:" : ":") + fault.fault;
    if (fault.fault == kLateReply) { rule += "=" + std::to_string((shortCall + kLate).count()); }
    const bool silent = fault.looks == Looks::silent && meansOf(row, fault) != Means::nothing;
    const std::uint64_t faultyCalls = t.target.faultyCalls();
    t.target.addFault(simulated_target::parseFault(rule));
    if (silent) { kvrpc::limits::callOverride = shortCall; }
    const auto start = std::chrono::steady_clock::now();
    got = run(row);
    const auto time = std::chrono::steady_clock::now() - start;
    kvrpc::limits::callOverride = std::chrono::milliseconds{0};
    t.target.clearFaults();
    const int timeouts = !silent ? 0 : got.status == -110 ? 2 : 1; // a registration goes on
    const auto bound = timeouts * shortCall + (t.target.requests().size() + kTransferRequests) * kAllowance;
    return t.target.faultyCalls() > faultyCalls && time <= bound;
}

/// The target works again, on the same handles and in another thread; everything else is as it was.
void FaultMatrix::recover() {
    if (std::string_view{GetParam().fault} == "stop-reading") { t.target.dropConnections(); }
    const bool rebooting = std::string_view{GetParam().fault}.ends_with("reboot");
    std::async(std::launch::async, [this, rebooting] {
        for (int i = 0; rebooting && i < 500 && (getCores() != 0 || out[0] == 0); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds{2});
        }
        if (rebooting) {
            pool->reset();
            prepare();
        }
        EXPECT_EQ(getCores(), 0);
        EXPECT_EQ(out, (Words{1, 2, 3, 4, 4}));
        renewGroup();
        EXPECT_EQ(messages(pool), Messages{});
    }).get();
}

TEST_P(FaultMatrix, EveryRequestOfEveryFunction) {
    std::size_t handles = kCountsHandles ? openHandles() : 0;
    for (const RequestRow& row : requestRows()) {
        const FaultRow& fault = GetParam();
        const Words& procedures = fault.procedures;
        const bool concerned =
            procedures.empty() ||
            (ofApplicationManager(row) && std::count(procedures.begin(), procedures.end(), procedureOf(row.call)) > 0);
        if (!concerned) { continue; }
        SCOPED_TRACE(row.call + ":" + fault.fault + " " + testing::PrintToString(row.failed.messages));
        const Expected faultless = run(row);
        EXPECT_EQ(faultless, (Expected{0, {}, faultless.out}));
        const std::size_t sentAgain = requestsSentAgain();
        renewGroup();
        const auto shortest = kShortCall * (ofApplicationManager(row) ? 1 : kShortTransfer);
        Expected got;
        bool tells = false;
        for (int attempt = 0; attempt < kAttempts && !tells; ++attempt) {
            if (attempt > 0) { recover(); }
            tells = runFaulty(row, shortest * (1 << attempt), got);
        }
        EXPECT_TRUE(tells) << "the fault did not come about, or its call took too long";
        EXPECT_EQ(got, filledIn(expectedOf(row, fault, faultless, got)));
        EXPECT_LE(requestsSentAgain(), sentAgain) << "a call that was sent is never sent again";
        recover();
        if (!kCountsHandles) { continue; }
        for (int i = 0; i < 2000 && openHandles() > handles; ++i) { // the target closes its side later
            std::this_thread::sleep_for(std::chrono::milliseconds{2});
        }
        ASSERT_LE(openHandles(), handles);
        handles = openHandles();
    }
}

TEST_F(Reboot, CostsEachThreadAtMostOneCallOnceTheTargetListensAgain) {
    for (int round = 0; round < 5; ++round) {
        t.target.reboot();
        const auto start = std::chrono::steady_clock::now();
        std::vector<std::future<int>> threads;
        for (int i = 0; i < 16; ++i) {
            threads.push_back(std::async(std::launch::async, [this] {
                int failures = 0;
                while (!answers()) {
                    ++failures;
                }
                return failures;
            }));
        }
        for (auto& thread : threads) {
            EXPECT_LE(thread.get(), 1);
        }
        EXPECT_LE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds{250});
    }
    EXPECT_LE(t.target.acceptedConnections(), 5U);
}

INSTANTIATE_TEST_SUITE_P(Faults, FaultMatrix, testing::ValuesIn(kFaults), [](const auto& instance) {
    std::string name = instance.param.fault;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
});

} // namespace
