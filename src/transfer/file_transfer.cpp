// Whoever makes a client deletes it: a caller's is left alone, one that was made here goes on every path, also when memory
// runs out. Of several failures the first is the result: that the client was not deleted counts only when nothing failed
// before. In a tree each directory is made before what lies in it, and the first failure stops everything; what was sent
// before stays. Only std::bad_alloc is thrown.
#include "transfer/file_transfer.h"

#include <utility>
#include <vector>

#include "frame/report.h"
#include "platform/host_interface.h"
#include "transfer/directory_walk.h"
#include "transfer/host_path.h"
#include "transfer/text.h"

namespace applman {
namespace {

constexpr const char* kAbsent = "<NULL>";

/// The client of one transfer: the caller's, or one of its own, which it deletes.
class TransferClient {
public:
    TransferClient(KvCErrorListPool& pool, void* callers) : pool_(pool), client_(callers) {}
    ~TransferClient() { static_cast<void>(deleteOwn()); }
    TransferClient(const TransferClient&) = delete;
    TransferClient& operator=(const TransferClient&) = delete;

    Status makeUnlessGiven(void* device) {
        if (client_ != nullptr) { return Status::ok; }
        const Status status = createFTHandle(pool_, device, &own_);
        client_ = own_;
        return status;
    }
    Status deleteOwn() { return deleteFTHandle(pool_, std::exchange(own_, nullptr)); }
    void* get() const { return client_; }

private:
    KvCErrorListPool& pool_;
    void* client_;
    void* own_ = nullptr;
};

Status firstFailure(Status earlier, Status later) { return earlier == Status::ok ? later : earlier; }

Status refuseOptions(const Reporter& report, std::uint8_t loadOptions) {
    return report.fail(Msg::loadOptionsNotSupported, Status::transfer, std::uint32_t{loadOptions});
}

Status putFile(const Reporter& report, void* client, const std::u16string& hostPath, const char* targetDirectory,
               const char* targetName, TApplManProgressTracker* tracker) {
    const std::int64_t sent = KvHIM_putFileU(report.pool(), nullptr, client, hostPath.c_str(), targetDirectory,
                                             targetName, tracker == nullptr ? nullptr : onTransferProgress, tracker);
    if (sent >= 0) { return Status::ok; }
    return report.fail(Msg::fileTransferFailed, Status::transfer, "transfer", wideToMessageText(hostPath.c_str()),
                       targetDirectory, targetName);
}

Status checkPaths(const Reporter& report, const char16_t* hostDirectory, const char* targetDirectory) {
    const bool given = hostDirectory != nullptr && hostDirectory[0] != u'\0' && targetDirectory != nullptr &&
                       targetDirectory[0] != '\0';
    if (given) { return Status::ok; }
    return report.fail(Msg::directoryPathMissing, Status::transfer,
                       hostDirectory == nullptr ? kAbsent : wideToMessageText(hostDirectory),
                       targetDirectory == nullptr ? kAbsent : targetDirectory);
}

/// Sends a tree entry by entry, each directory before what lies in it.
class TreeTransfer {
public:
    TreeTransfer(const Reporter& report, void* device, void* client, TApplManProgressTracker* tracker)
        : report_(report), device_(device), client_(client), tracker_(tracker) {}

    Status run(const std::u16string& hostDirectory, const std::string& targetDirectory) {
        Status status = enter(hostDirectory, targetDirectory);
        while (status == Status::ok && !walk_.ended()) {
            status = sendNext();
        }
        return status;
    }

private:
    Status enter(const std::u16string& hostDirectory, std::string targetDirectory) {
        if (!walk_.enter(hostDirectory)) {
            return report_.fail(Msg::directoryNotFound, Status::transfer, wideToMessageText(hostDirectory.c_str()));
        }
        targets_.push_back(std::move(targetDirectory));
        return Status::ok;
    }

    Status sendNext() {
        const auto entry = walk_.next();
        if (!entry) { return leave(); }
        if (!isDirectory(*entry)) { return sendFile(*entry); }
        return isSelfOrParent(*entry) ? Status::ok : sendDirectory(*entry);
    }

    Status sendFile(const host_system::DirectoryEntry& entry) {
        return copyBinaryToTarget(report_.pool(), device_, client_, normalizeHostPath(walk_.pathOf(entry).c_str()),
                                  targets_.back().c_str(), wideToUtf8(entry.name.c_str()).c_str(), 0, tracker_);
    }

    Status sendDirectory(const host_system::DirectoryEntry& entry) {
        const std::string& base = targets_.back();
        const std::string name = wideToUtf8(entry.name.c_str());
        const std::int32_t made = KvHIM_makeDir(report_.pool(), nullptr, client_, base.c_str(), name.c_str());
        if (made != 0) {
            return report_.fail(Msg::targetDirectoryNotCreated, Status::transfer, base,
                                wideToMessageText(entry.name.c_str()), made);
        }
        const std::u16string child = normalizeHostPath(walk_.pathOf(entry).c_str());
        const std::string target = base + '/' + name;
        const Status status = checkPaths(report_, child.c_str(), target.c_str());
        return status == Status::ok ? enter(child, target) : status;
    }

    Status leave() {
        if (walk_.lastError() != host_system::kNoMoreFiles) {
            return report_.fail(Msg::directoryNotRead, Status::transfer, wideToMessageText(walk_.directory().c_str()),
                                walk_.lastError());
        }
        walk_.leave();
        targets_.pop_back();
        return Status::ok;
    }

    const Reporter& report_;
    void* device_;
    void* client_;
    TApplManProgressTracker* tracker_;
    DirectoryWalk walk_;
    std::vector<std::string> targets_; // of the directories on the way, the innermost last
};

} // namespace

Status copyBinaryToTarget(KvCErrorListPool& pool, void* device, void* client, const std::u16string& hostPath,
                          const char* targetDirectory, const char* targetName, std::uint8_t loadOptions,
                          TApplManProgressTracker* tracker) {
    const Reporter report{pool, "copyBinaryToTarget"};
    const std::uint64_t size = getFileSize(hostPath);
    const std::string path = wideToUtf8(hostPath.c_str());
    updateProgress(tracker, path.c_str(), 0, nullptr, 0, 0);
    if (loadOptions != 0) { return refuseOptions(report, loadOptions); }
    TransferClient channel{pool, client};
    if (const Status made = channel.makeUnlessGiven(device); made != Status::ok) { return made; }
    const Status sent = putFile(report, channel.get(), hostPath, targetDirectory, targetName, tracker);
    const Status status = firstFailure(sent, channel.deleteOwn());
    updateProgress(tracker, path.c_str(), size, nullptr, 0, 0);
    return status;
}

Status copyDirToTarget(KvCErrorListPool& pool, void* device, void* client, const char16_t* hostDirectory,
                       const char* targetDirectory, std::uint8_t loadOptions, TApplManProgressTracker* tracker) {
    const Reporter report{pool, "copyDirToTarget"};
    if (const Status given = checkPaths(report, hostDirectory, targetDirectory); given != Status::ok) { return given; }
    if (loadOptions != 0) { return refuseOptions(report, loadOptions); }
    TransferClient channel{pool, client};
    if (const Status made = channel.makeUnlessGiven(device); made != Status::ok) { return made; }
    const Status sent = TreeTransfer{report, device, channel.get(), tracker}.run(hostDirectory, targetDirectory);
    return firstFailure(sent, channel.deleteOwn());
}

Status createFTHandle(KvCErrorListPool& pool, void* device, void** client) {
    if (device != nullptr && client != nullptr) {
        *client = nullptr;
        if (KvHIM_createFTClientHandle(pool, device, client) == 0) { return Status::ok; }
    }
    return Reporter{pool, "createFTHandle"}.fail(Msg::noFileTransferClient, Status::ftCreate);
}

Status deleteFTHandle(KvCErrorListPool& pool, void* client) {
    if (client == nullptr || KvHIM_deleteFTClientHandle(pool, client) == 0) { return Status::ok; }
    return Reporter{pool, "deleteFTHandle"}.fail(Msg::fileTransferClientNotDeleted, Status::ftDelete);
}

} // namespace applman
