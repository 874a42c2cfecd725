// The download of a whole group: load, initialise and apply, always in slot order.
#include <algorithm>
#include <cstdint>

#include "api/KvApplicationManagerAP.h"
#include "api/binary_download.h"
#include "api/group_devices.h"
#include "frame/calling_frame.h"
#include "protocol/commands.h"
#include "protocol/parameter_numbers.h"
#include "transfer/host_path.h"
#include "transfer/text.h"

namespace applman {
namespace {

/// What the host gave, per slot and for all.
struct DownloadArguments {
    void* const* devHandles;
    void* const* accessResHandles;
    const std::uint32_t* applIds;
    const char* const* applPathsUtf8;
    const char* const* targetPathsUtf8; // may be null
    std::uint32_t downloadOption;
    std::uint32_t applCount;
    std::uint8_t loadOptions;
    KvTApplManProgressCallback progressCallback; // may be null
    void* userData;

    bool present(std::uint32_t slot) const { return devHandles[slot] != nullptr; }
};

/// How often the processes are to be initialised; a complete load needs none.
struct InitCalls {
    bool completeLoad = false;
    std::uint32_t most = 0;
};

std::int32_t readWord(KvCErrorListPool& pool, void* devHandle, void* accessResHandle, std::uint32_t applId,
                      std::uint32_t infoId, std::uint32_t* word) {
    std::int32_t size = sizeof *word;
    return KvApplMan_getApplInfo(pool, devHandle, accessResHandle, applId, infoId, word, &size);
}

Status KvApplMan_checkApplicationCount(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                       std::uint32_t applId, std::uint32_t expected) {
    const Reporter report{pool, "KvApplMan_checkApplicationCount"};
    std::uint32_t count = 0;
    const std::int32_t read = readWord(pool, devHandle, accessResHandle, applId, param::kGroupSize.host, &count);
    if (read != 0) { return report.fail(Msg::groupSizeUnread, static_cast<Status>(read)); }
    if (count != expected) { return report.fail(Msg::wrongGroupSize, Status::load, expected, count); }
    return Status::ok;
}

Status readInitCalls(const Reporter& report, const DownloadArguments& what, InitCalls* calls) {
    for (std::uint32_t slot = 0; slot < what.applCount; ++slot) {
        if (!what.present(slot)) { continue; }
        std::uint32_t count = 0;
        const std::int32_t read = readWord(report.pool(), what.devHandles[slot], what.accessResHandles[slot],
                                           what.applIds[slot], param::kInitCalls.host, &count);
        if (read != 0) { return report.fail(Msg::initCallsUnread, static_cast<Status>(read)); }
        calls->completeLoad = calls->completeLoad || count == 0;
        calls->most = std::max(calls->most, count);
    }
    if (calls->completeLoad && calls->most != 0) { return report.fail(Msg::initCallsInconsistent, Status::load); }
    return Status::ok;
}

/// The three phases over the slots of one download, and the progress of it.
class GroupDownload {
public:
    GroupDownload(const Reporter& report, const DownloadArguments& what, const InitCalls& calls)
        : report_(report), what_(what), calls_(calls) {
        if (what_.progressCallback != nullptr) { prepareProgress(); }
    }

    Status run() {
        Status status = load();
        for (std::uint32_t pass = 1; status == Status::ok && pass <= calls_.most; ++pass) {
            status = initialise(pass);
            if (pass == calls_.most) { break; } // the largest count has no successor
        }
        if (status == Status::ok && !calls_.completeLoad) { status = apply(); }
        return status;
    }

private:
    struct Phase {
        const char* name;
        std::uint32_t number;
    };
    static constexpr Phase kLoadPhase{kPhaseLoad, 1};
    static constexpr Phase kInitPhase{kPhaseInit, 2};
    static constexpr Phase kApplyPhase{kPhaseApply, 3};
    static constexpr std::uint32_t kPhaseCount = 3;

    void prepareProgress() {
        std::uint64_t bytes = 0;
        for (std::uint32_t slot = 0; slot < what_.applCount; ++slot) {
            if (what_.present(slot)) { bytes += getFileSize(hostPathOf(what_.applPathsUtf8[slot])); }
        }
        const std::uint64_t slots = what_.applCount;
        tracker_.callback = what_.progressCallback;
        tracker_.userData = what_.userData;
        tracker_.totalUnits = bytes + bytes * slots + (calls_.completeLoad ? 0 : 2 * bytes * slots);
        tracker_.phaseName = kLoadPhase.name;
        tracker_.phase = kLoadPhase.number;
        tracker_.phaseCount = kPhaseCount;
        unitsPerStep_ = bytes;
    }

    void countStep(std::uint32_t slot, const Phase& phase) {
        updateProgress(&tracker_, what_.applPathsUtf8[slot], unitsPerStep_, phase.name, phase.number, kPhaseCount);
    }

    Status loadSlot(std::uint32_t slot) {
        const std::u16string path = hostPathOf(what_.applPathsUtf8[slot]);
        const std::u16string targetPath =
            utf8ToWide(what_.targetPathsUtf8 == nullptr ? nullptr : what_.targetPathsUtf8[slot]);
        return download(report_.pool(), what_.devHandles[slot], what_.accessResHandles[slot], what_.applIds[slot],
                        what_.downloadOption, path.c_str(), calls_.completeLoad, what_.loadOptions,
                        targetPath.empty() ? nullptr : targetPath.c_str(),
                        tracker_.callback == nullptr ? nullptr : &tracker_);
    }

    /// KvApplMan_InitAppl and KvApplMan_ApplyAppl.
    Status runOnSlot(const char* operation, const Command& command, std::uint32_t slot) {
        const Reporter report{report_.pool(), operation};
        return runFrame(report, what_.devHandles[slot], what_.accessResHandles[slot], [&](const Session& session) {
            return carryOut(report, session, command, what_.applIds[slot]);
        });
    }

    // A step counts for every slot, an empty one and one that failed too.

    Status load() {
        Status status = Status::ok;
        for (std::uint32_t slot = 0; status == Status::ok && slot < what_.applCount; ++slot) {
            if (what_.present(slot)) { status = loadSlot(slot); }
            if (status != Status::ok) { report_.add(Msg::loadFailed, slot + 1, what_.applCount); }
            countStep(slot, kLoadPhase);
        }
        return status;
    }

    Status initialise(std::uint32_t pass) {
        Status status = Status::ok;
        for (std::uint32_t slot = 0; status == Status::ok && slot < what_.applCount; ++slot) {
            if (what_.present(slot)) { status = runOnSlot("KvApplMan_InitAppl", kInitialise, slot); }
            if (status != Status::ok) { report_.add(Msg::initFailed, slot + 1, what_.applCount, pass, calls_.most); }
            if (pass == calls_.most) { countStep(slot, kInitPhase); }
        }
        return status;
    }

    Status apply() {
        Status status = Status::ok;
        for (std::uint32_t slot = 0; status == Status::ok && slot < what_.applCount; ++slot) {
            if (what_.present(slot)) { status = runOnSlot("KvApplMan_ApplyAppl", kApply, slot); }
            if (status != Status::ok) { report_.add(Msg::applyFailed, slot + 1, what_.applCount); }
            countStep(slot, kApplyPhase);
        }
        return status;
    }

    const Reporter& report_;
    const DownloadArguments& what_;
    const InitCalls& calls_;
    TApplManProgressTracker tracker_;
    std::uint64_t unitsPerStep_ = 0;
};

Status downloadGroup(const Reporter& report, const DownloadArguments& what) {
    if (what.devHandles == nullptr || what.accessResHandles == nullptr || what.applIds == nullptr ||
        what.applPathsUtf8 == nullptr || what.applCount == 0) {
        return report.fail(Msg::invalidArgument, Status::argument);
    }
    std::int32_t first = -1;
    if (const Status checked = KvApplMan_checkDevHandleList(report.pool(), what.devHandles, what.applCount, &first);
        checked != Status::ok) {
        return checked;
    }
    if (const Status checked = KvApplMan_checkApplicationCount(
            report.pool(), what.devHandles[first], what.accessResHandles[first], what.applIds[first], what.applCount);
        checked != Status::ok) {
        return checked;
    }
    InitCalls calls;
    if (const Status read = readInitCalls(report, what, &calls); read != Status::ok) { return read; }
    return GroupDownload{report, what, calls}.run();
}

} // namespace
} // namespace applman

using namespace applman;

extern "C" std::int32_t KvApplMan_downloadApplUtf8(KvCErrorListPool& pool, void* const* devHandles,
                                                   void* const* accessResHandles, const std::uint32_t* applIds,
                                                   const char* const* applPathsUtf8, std::uint32_t downloadOption,
                                                   std::uint32_t applCountAndLoadOptions,
                                                   KvTApplManProgressCallback progressCallback, void* userData,
                                                   const char* const* targetPathsUtf8) noexcept {
    const Reporter report{pool, "KvApplMan_downloadApplUtf8"};
    return guarded(report, [&] {
        return downloadGroup(report,
                             DownloadArguments{devHandles, accessResHandles, applIds, applPathsUtf8, targetPathsUtf8,
                                               downloadOption, applCountAndLoadOptions & 0x00FFFFFFU,
                                               static_cast<std::uint8_t>(applCountAndLoadOptions >> 24),
                                               progressCallback, userData});
    });
}
