#include "api/binary_download.h"

#include <array>
#include <optional>
#include <string>
#include <utility>

#include "frame/calling_frame.h"
#include "platform/host_system.h"
#include "protocol/commands.h"
#include "protocol/parameter_numbers.h"
#include "protocol/procedures.h"
#include "protocol/unsupported_param.h"
#include "transfer/file_transfer.h"
#include "transfer/host_path.h"
#include "transfer/text.h"

namespace applman {
namespace {

using Client = KV_RPC_PROG_APPLMAN_HOST2Client;

struct DownloadParameter {
    std::uint32_t targetParamId;
    TApplManValue value;
};

/// What the target is told of a binary, in the order in which it is told.
std::array<DownloadParameter, 7> downloadParameters(const std::string& hostPath, std::uint32_t downloadOption,
                                                    const std::string& targetName) {
    const std::int64_t modified = getFileModificationTime(hostPath);
    const std::int64_t now = host_system::currentTime();
    const std::string& announced = targetName.empty() ? hostPath : targetName;
    return {{
        {param::kDownloadOption.target, downloadOption},
        {param::kFileTime.target, modified},
        {param::kFileTimeText.target, Text{formatLocalTime(modified)}},
        {param::kDownloadTime.target, now},
        {param::kDownloadTimeText.target, Text{formatLocalTime(now)}},
        {param::kFileName.target, Text{extractFileName(announced)}},
        {param::kDirectory.target, Text{extractDirectory(announced)}},
    }};
}

Status KvApplMan_setDownloadParameters(KvCErrorListPool& pool, Client& client, std::uint32_t accessId,
                                       std::uint32_t applId, const std::string& hostPath, std::uint32_t downloadOption,
                                       const std::string& targetName) {
    const Reporter report{pool, "KvApplMan_setDownloadParameters"};
    for (DownloadParameter& parameter : downloadParameters(hostPath, downloadOption, targetName)) {
        Reply<TApplManResult> reply{client};
        const std::int32_t called = APPLMAN_SET_PARAM(
            client, pool, {kMode, accessId, applId, parameter.targetParamId, std::move(parameter.value)}, reply);
        if (called != 0) { return report.failRemoteCall(); }
        acceptUnsupportedParamResult(pool, reply->result, applId, parameter.targetParamId);
        if (reply->result == kRefused) { return report.fail(Msg::parameterNotSet, Status::parameter); }
    }
    return Status::ok;
}

/// Absent when the target does not answer, whatever the reason, or answers with something else than a text.
Text readTargetText(KvCErrorListPool& pool, Client& client, std::uint32_t accessId, std::uint32_t applId,
                    std::uint32_t targetParamId) {
    Reply<TApplManValueResult> reply{client};
    const std::int32_t called = APPLMAN_GET_PARAM(client, pool, {kMode, accessId, applId, targetParamId}, reply);
    if (called != 0 || reply->result == kRefused) { return std::nullopt; }
    const Text* const text = std::get_if<kTagText>(&reply->value);
    return text == nullptr ? std::nullopt : *text;
}

/// Where the target wants the binary. Both are read, whatever becomes of the first.
Status KvApplMan_getApplBinaryTargetPath(KvCErrorListPool& pool, Client& client, std::uint32_t accessId,
                                         std::uint32_t applId, Text* directory, Text* fileName) {
    const Reporter report{pool, "KvApplMan_getApplBinaryTargetPath"};
    if (directory == nullptr || fileName == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    *fileName = readTargetText(pool, client, accessId, applId, param::kTargetFileName.target);
    *directory = readTargetText(pool, client, accessId, applId, param::kTargetDirectory.target);
    if (*fileName && *directory) { return Status::ok; }
    fileName->reset();
    directory->reset();
    return report.fail(Msg::informationNotReceived, Status::information);
}

/// One binary on its way: what was asked for, and the host path in its normal form.
struct Binary {
    void* devHandle;
    std::uint32_t applId;
    std::uint32_t downloadOption;
    const std::u16string& hostPath;
    bool completeLoad;
    std::uint8_t loadOptions;
    const char16_t* targetName;
    TApplManProgressTracker* tracker;
};

Status announce(const Reporter& report, const Session& session, const Binary& binary) {
    return KvApplMan_setDownloadParameters(report.pool(), session.client, session.accessId, binary.applId,
                                           wideToUtf8(binary.hostPath.c_str()), binary.downloadOption,
                                           wideToUtf8(binary.targetName));
}

Status transfer(const Reporter& report, const Session& session, const Binary& binary) {
    Text directory;
    Text fileName;
    const Status read = KvApplMan_getApplBinaryTargetPath(report.pool(), session.client, session.accessId,
                                                          binary.applId, &directory, &fileName);
    if (read != Status::ok) { return read; }
    return copyBinaryToTarget(report.pool(), binary.devHandle, nullptr, binary.hostPath, directory->c_str(),
                              fileName->c_str(), binary.loadOptions, binary.tracker);
}

Status load(const Reporter& report, const Session& session, const Binary& binary) {
    return carryOut(report, session, binary.completeLoad ? kLoadComplete : kLoad, binary.applId);
}

} // namespace

Status download(KvCErrorListPool& pool, void* devHandle, void* accessResHandle, std::uint32_t applId,
                std::uint32_t downloadOption, const char16_t* hostPath, bool completeLoad, std::uint8_t loadOptions,
                const char16_t* targetName, TApplManProgressTracker* tracker) {
    const Reporter report{pool, "download"};
    const std::u16string path = normalizeHostPath(hostPath);
    if (!isPathOfKind(path, true)) {
        return report.fail(Msg::binaryNotFound, Status::binaryNotFound, wideToMessageText(hostPath));
    }
    const Binary binary{devHandle, applId, downloadOption, path, completeLoad, loadOptions, targetName, tracker};
    return runFrame(report, devHandle, accessResHandle, [&](const Session& session) {
        Status status = Status::ok;
        for (const auto step : {announce, transfer, load}) {
            status = step(report, session, binary);
            if (status != Status::ok) { break; }
        }
        return status;
    });
}

} // namespace applman
