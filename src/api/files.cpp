// Additional application files: loading, listing and removing them.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "KvApplManConstants.h"
#include "api/KvApplicationManagerAP.h"
#include "frame/calling_frame.h"
#include "frame/error_codes.h"
#include "frame/temporary_list.h"
#include "protocol/procedures.h"
#include "transfer/file_transfer.h"
#include "transfer/host_path.h"
#include "transfer/text.h"

static_assert(sizeof(TApplManAddFileInfo) == 3332);
static_assert(offsetof(TApplManAddFileInfo, entryText2) == 1024);
static_assert(offsetof(TApplManAddFileInfo, entryText3) == 1280);
static_assert(offsetof(TApplManAddFileInfo, entryWord) == 2304);
static_assert(offsetof(TApplManAddFileInfo, reserved) == 2308);

namespace applman {
namespace {

constexpr std::uint32_t kDirectoryType = KV_APPLMAN_FILE_TYPE_DIRECTORY;
constexpr std::uint32_t kRetriedType = KV_APPLMAN_FILE_TYPE_WITH_FALLBACK;
constexpr std::uint32_t kSubstituteType = KV_APPLMAN_FILE_TYPE_FALLBACK;
constexpr std::uint32_t kFileFlagsMask = 0x00FFFFFF;

/// What the host gave.
struct LoadArguments {
    void* devHandle;
    void* accessResHandle;
    std::uint32_t applId;
    const char* sourcePathUtf8;
    const char* targetPathUtf8;
    const char* targetNameUtf8;
    std::uint32_t fileType;
    std::uint32_t fileFlagsAndLoadOptions;
    KvTApplManProgressCallback progressCallback; // may be null
    void* userData;
    const char* additionalInfo; // may be null

    bool isDirectory() const { return fileType == kDirectoryType; }
    std::uint32_t fileFlags() const { return fileFlagsAndLoadOptions & kFileFlagsMask; }
    std::uint8_t loadOptions() const {
        return static_cast<std::uint8_t>(fileFlagsAndLoadOptions >> KV_APPLMAN_LOAD_OPTIONS_BIT);
    }
};

/// The source on the host: its path, and the path as messages show it.
struct Source {
    std::u16string path;
    std::string shown;
};

Source sourceOf(const LoadArguments& given) {
    std::u16string path = hostPathOf(given.sourcePathUtf8);
    if (given.sourcePathUtf8[0] != '\0') { path = normalizeHostPath(path.c_str()); }
    std::string shown = wideToMessageText(path.c_str());
    return {std::move(path), std::move(shown)};
}

const char* shownOf(const Text& text) { return text ? text->c_str() : "<NULL>"; }

bool holdsText(const Text& text) { return text && text->c_str()[0] != '\0'; }

TApplManProgressTracker progressOf(const LoadArguments& given, const Source& source) {
    TApplManProgressTracker tracker;
    if (given.progressCallback == nullptr) { return tracker; }
    tracker.callback = given.progressCallback;
    tracker.userData = given.userData;
    tracker.totalUnits = given.isDirectory() ? getDirectorySize(source.path) : getFileSize(source.path);
    tracker.phaseName = kPhaseLoad;
    tracker.phase = 1;
    tracker.phaseCount = 1;
    return tracker;
}

/// A directory goes below the target path; a target path that is empty asks for no transfer.
Status transferDirectory(const Reporter& report, const LoadArguments& given, const Source& source,
                         const TApplManAddFileResult& target, TApplManProgressTracker* tracker) {
    if (!target.targetPath || holdsText(target.targetName)) {
        return report.fail(Msg::directoryTargetInvalid, Status::fileLoad, source.shown, given.applId,
                           shownOf(target.targetPath), shownOf(target.targetName));
    }
    if (!holdsText(target.targetPath)) { return Status::ok; }
    return copyDirToTarget(report.pool(), given.devHandle, nullptr, source.path.c_str(), target.targetPath->c_str(),
                           given.loadOptions(), tracker);
}

Status transferFile(const Reporter& report, const LoadArguments& given, const Source& source,
                    const TApplManAddFileResult& target, TApplManProgressTracker* tracker) {
    if (!holdsText(target.targetPath) || !holdsText(target.targetName)) {
        return report.fail(Msg::fileTargetInvalid, Status::fileLoad, source.shown, given.fileType, given.applId,
                           shownOf(target.targetPath), shownOf(target.targetName));
    }
    return copyBinaryToTarget(report.pool(), given.devHandle, nullptr, source.path, target.targetPath->c_str(),
                              target.targetName->c_str(), given.loadOptions(), tracker);
}

/// Registers the file; a target that does not offer the request is asked by the older one.
std::int32_t askToAddFile(const Reporter& report, const Session& session, const LoadArguments& given,
                          Reply<TApplManAddFileResult>& reply) {
    TApplManAddFileRecord file;
    file.applId = given.applId;
    file.fileType = given.fileType;
    file.sourcePath = given.sourcePathUtf8;
    file.targetPath = given.targetPathUtf8;
    file.targetName = given.targetNameUtf8;
    file.fileFlags = given.fileFlags();
    file.additionalText = given.additionalInfo == nullptr ? "" : given.additionalInfo;
    const std::int32_t called =
        APPLMAN_ADD_FILE_2(session.client, report.pool(), {session.accessId, std::move(file)}, reply);
    if (called != KvCRpcClient::kProcedureNotOffered) { return called; }
    return APPLMAN_ADD_FILE(session.client, report.pool(),
                            {kMode, session.accessId, given.applId, given.fileType, given.sourcePathUtf8,
                             given.targetPathUtf8, given.targetNameUtf8, given.fileFlags()},
                            reply);
}

Status registerAndTransfer(const Reporter& report, const Session& session, const LoadArguments& given,
                           const Source& source) {
    Reply<TApplManAddFileResult> reply{session.client};
    if (askToAddFile(report, session, given, reply) != 0) { return report.failRemoteCall(); }
    if (reply->result != 0) {
        return report.fail(Msg::fileNotRegistered, Status::fileLoad, source.shown, given.fileType, reply->result,
                           given.applId);
    }
    TApplManProgressTracker tracker = progressOf(given, source);
    TApplManProgressTracker* const reporting = tracker.callback == nullptr ? nullptr : &tracker;
    return given.isDirectory() ? transferDirectory(report, given, source, *reply, reporting)
                               : transferFile(report, given, source, *reply, reporting);
}

bool isTypeUnsupported(const KvCErrorListPool& reported, Status status) {
    return status == Status::fileLoad && hasCode(reported, kTargetUnsupportedFileType);
}

/// What is done about a file type that the target does not support.
Status fallBack(const Reporter& report, const LoadArguments& given, const Source& source) {
    KvCErrorListPool& pool = report.pool();
    if (given.fileType == kRetriedType) {
        pool.reset();
        return static_cast<Status>(
            KvApplMan_loadFileUtf8(pool, given.devHandle, given.accessResHandle, given.applId, given.sourcePathUtf8,
                                   given.targetPathUtf8, given.targetNameUtf8, kSubstituteType, given.fileFlags(),
                                   given.progressCallback, given.userData, given.additionalInfo));
    }
    if (given.isDirectory()) {
        pool.reset();
        report.add(Msg::directoriesNotSupported, source.shown, given.applId);
    }
    return Status::fileLoad;
}

/// Once there is a client, the messages are collected and judged before they are handed on.
Status loadFile(const Reporter& report, const LoadArguments& given) {
    if (given.sourcePathUtf8 == nullptr || given.targetPathUtf8 == nullptr || given.targetNameUtf8 == nullptr ||
        given.applId == 0) {
        return report.fail(Msg::invalidArgument, Status::argument);
    }
    const Source source = sourceOf(given);
    if (!isPathOfKind(source.path, !given.isDirectory())) {
        return report.fail(Msg::sourceNotFound, Status::fileSource,
                           given.isDirectory() ? "directory" : "application specific file", source.shown, given.applId,
                           given.fileType);
    }
    return runFrame(report, given.devHandle, given.accessResHandle, [&](const Session& session) {
        const CollectedList collected{report.pool()};
        if (!collected) { return report.fail(Msg::invalidArgument, Status::argument); }
        const Reporter collecting{collected.pool(), report.operation()};
        const Status status = registerAndTransfer(collecting, session, given, source);
        return isTypeUnsupported(collected.pool(), status) ? fallBack(collecting, given, source) : status;
    });
}

/// Copies a text into a field whose bytes are zeros; the last two stay zeros.
template <std::size_t size>
void copyCut(char (&field)[size], const Text& text) {
    if (!text) { return; }
    std::memcpy(field, text->c_str(), std::min(std::strlen(text->c_str()), size - 2));
}

Status deliverFiles(const Reporter& report, const TApplManFileListResult& reply, std::uint32_t applId,
                    std::uint32_t capacity, std::uint32_t* fileCount, TApplManAddFileInfo* fileInfoList) {
    if (reply.errorCode != 0) {
        return report.fail(Msg::fileListRefused, Status::fileInformation, reply.errorCode, applId);
    }
    const auto listed = static_cast<std::uint32_t>(reply.files.size());
    *fileCount = listed;
    if (capacity < listed) {
        return report.fail(Msg::fileListBufferTooSmall, Status::fileInformation, applId, capacity, listed);
    }
    for (std::size_t index = 0; index < listed; ++index) {
        const TApplManFileEntry& entry = reply.files[index];
        TApplManAddFileInfo& info = fileInfoList[index];
        copyCut(info.entryText1, entry.entryText1);
        copyCut(info.entryText2, entry.entryText2);
        copyCut(info.entryText3, entry.entryText3);
        info.entryWord = entry.entryWord;
    }
    return Status::ok;
}

Status getFileInfo(const Reporter& report, void* devHandle, void* accessResHandle, std::uint32_t applId,
                   std::uint32_t* fileCount, TApplManAddFileInfo* fileInfoList) {
    const std::uint32_t capacity = fileCount == nullptr ? 0 : *fileCount;
    if (applId == 0 || fileCount == nullptr || (capacity != 0 && fileInfoList == nullptr)) {
        return report.fail(Msg::invalidArgument, Status::argument);
    }
    if (capacity > 0) {
        *fileCount = 0;
        std::memset(fileInfoList, 0, std::size_t{capacity} * sizeof *fileInfoList);
    }
    return runFrame(report, devHandle, accessResHandle, [&](const Session& session) {
        Reply<TApplManFileListResult> reply{session.client};
        const std::int32_t called =
            APPLMAN_GET_FILE_LIST(session.client, report.pool(), {kMode, session.accessId, applId}, reply);
        if (called != 0) { return report.failRemoteCall(); }
        return deliverFiles(report, *reply, applId, capacity, fileCount, fileInfoList);
    });
}

Status removeFile(const Reporter& report, void* devHandle, void* accessResHandle, std::uint32_t applId,
                  const char* targetName, std::uint32_t fileType) {
    if (applId == 0 || targetName == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    return runFrame(report, devHandle, accessResHandle, [&](const Session& session) {
        Reply<TApplManResult> reply{session.client};
        const std::int32_t called = APPLMAN_REMOVE_FILE(session.client, report.pool(),
                                                        {kMode, session.accessId, applId, fileType, targetName}, reply);
        if (called != 0) { return report.failRemoteCall(); }
        if (reply->result == 0) { return Status::ok; }
        return report.fail(Msg::fileNotRemoved, Status::fileRemove, targetName, fileType, reply->result, applId);
    });
}

} // namespace
} // namespace applman

using namespace applman;

extern "C" std::int32_t KvApplMan_loadFileUtf8(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                               std::uint32_t applId, const char* sourcePathUtf8,
                                               const char* targetPathUtf8, const char* targetNameUtf8,
                                               std::uint32_t fileType, std::uint32_t fileFlagsAndLoadOptions,
                                               KvTApplManProgressCallback progressCallback, void* userData,
                                               const char* additionalInfo) noexcept {
    const Reporter report{pool, "KvApplMan_loadFileUtf8"};
    return guarded(report, [&] {
        return loadFile(report, LoadArguments{devHandle, accessResHandle, applId, sourcePathUtf8, targetPathUtf8,
                                              targetNameUtf8, fileType, fileFlagsAndLoadOptions, progressCallback,
                                              userData, additionalInfo});
    });
}

extern "C" std::int32_t KvApplMan_getFileInfo(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                              std::uint32_t applId, std::uint32_t* fileCount,
                                              TApplManAddFileInfo* fileInfoList) noexcept {
    const Reporter report{pool, "KvApplMan_getFileInfo"};
    return guarded(report,
                   [&] { return getFileInfo(report, devHandle, accessResHandle, applId, fileCount, fileInfoList); });
}

extern "C" std::int32_t KvApplMan_removeFile(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                             std::uint32_t applId, const char* targetName,
                                             std::uint32_t fileType) noexcept {
    const Reporter report{pool, "KvApplMan_removeFile"};
    return guarded(report,
                   [&] { return removeFile(report, devHandle, accessResHandle, applId, targetName, fileType); });
}
