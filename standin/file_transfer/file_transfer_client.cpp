// The file-transfer functions of the host interface, and the handles of their connections.
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "error_lists/platform_messages.h"
#include "file_transfer/file_upload.h"
#include "file_transfer/transfer_session.h"
#include "host_interface/device_time.h"
#include "host_interface/failure.h"
#include "host_interface/handles.h"
#include "platform/host_interface.h"
#include "platform/host_system.h"

namespace file_transfer {
namespace {

using namespace host_interface;
using namespace platform_messages;
using Session = std::shared_ptr<TransferSession>;

/// What the file-transfer handles name. Safe for any number of threads.
class SessionTable {
public:
    void* add(Session session) {
        const std::lock_guard lock{mutex_};
        return sessions_.emplace(host_interface::newHandle(), std::move(session)).first->first;
    }
    /// Null for a handle that names nothing.
    Session find(void* handle) {
        const std::lock_guard lock{mutex_};
        const Session* const session = host_interface::find(sessions_, handle);
        return session == nullptr ? nullptr : *session;
    }
    bool remove(void* handle) {
        const std::lock_guard lock{mutex_};
        return sessions_.erase(handle) == 1;
    }

private:
    std::mutex mutex_{};
    host_interface::HandleTable<Session> sessions_{};
};

/// Lives until the process ends, so that it outlives whatever still uses it then.
SessionTable& sessions() {
    static SessionTable& table = *new SessionTable;
    return table;
}

/// Runs `work`; what is thrown inside for lack of memory is told in the pool.
template <class Work>
auto guarded(KvCErrorListPool& pool, const char* operation, Work work) noexcept -> decltype(work()) {
    try {
        return work();
    } catch (...) { return outOfMemory(pool, operation, "file transfer"); }
}

/// Tells what went wrong. Result: 0 when nothing did, else negative.
std::int32_t judge(KvCErrorListPool& pool, const char* operation, const TransferSession& session, Procedure procedure,
                   const Answer& answer, std::uint32_t refusal, const std::string& refused) {
    kvrpc::report(pool, operation, session.address(), procedure, answer.failure);
    if (answer.failure) { return kFailed; }
    if (answer.result == kDone) { return 0; }
    pool.setError(refusal, __LINE__, operation, "%s%s%d", session.address().c_str(), refused.c_str(), answer.result);
    return kFailed;
}

std::int32_t openSession(KvCErrorListPool& pool, const char* operation, const char* address, void** handle) {
    const auto session = std::make_shared<TransferSession>(address);
    if (const auto failure = session->connect()) {
        kvrpc::report(pool, operation, session->address(), 0, failure);
        return kFailed;
    }
    *handle = sessions().add(session);
    return 0;
}

std::int64_t putFile(KvCErrorListPool& pool, const char* operation, TransferSession& session,
                     const std::u16string& path, const std::string& directory, const std::string& name,
                     KvHIM_BytesCallback callback, void* context) {
    const std::string shownPath = host_system::utf8FromUtf16(path);
    host_system::InputFile file{path};
    if (!file.opened()) {
        pool.setError(kTransferSourceUnreadable, __LINE__, operation, "%s", shownPath.c_str());
        return kFailed;
    }
    return FileUpload{pool, session, file, shownPath, callback, context}.send(directory, name);
}

std::int32_t makeDirectory(KvCErrorListPool& pool, const char* operation, TransferSession& session,
                           const std::string& base, const std::string& name) {
    const Answer answer = session.call(kMakeDirectory, MakeDirectoryRequest{base, name});
    return judge(pool, operation, session, kMakeDirectory, answer, kTransferDirectoryRefused, base + '/' + name);
}

} // namespace
} // namespace file_transfer

using namespace file_transfer;

extern "C" {

std::int32_t KvHIM_createFTClientHandle(KvCErrorListPool& pool, void* device, void** handle) noexcept {
    static constexpr const char* kOperation = "KvHIM_createFTClientHandle";
    if (handle == nullptr) { return fail(pool, kOperation, kInvalidArgument); }
    *handle = nullptr;
    const char* const address = KvHIM_getAddressFromHandle(pool, device);
    if (address == nullptr) { return kFailed; } // told already
    return guarded(pool, kOperation, [&] { return openSession(pool, kOperation, address, handle); });
}

std::int32_t KvHIM_deleteFTClientHandle(KvCErrorListPool& pool, void* handle) noexcept {
    static constexpr const char* kOperation = "KvHIM_deleteFTClientHandle";
    return guarded(pool, kOperation,
                   [&] { return sessions().remove(handle) ? 0 : fail(pool, kOperation, kTransferHandleUnknown); });
}

std::int64_t KvHIM_putFileU(KvCErrorListPool& pool, void*, void* handle, const char16_t* path,
                            const char* targetDirectory, const char* targetName, KvHIM_BytesCallback callback,
                            void* context) noexcept {
    static constexpr const char* kOperation = "KvHIM_putFileU";
    if (path == nullptr || targetDirectory == nullptr || targetName == nullptr) {
        return fail(pool, kOperation, kInvalidArgument);
    }
    return guarded(pool, kOperation, [&]() -> std::int64_t {
        const Session session = sessions().find(handle);
        if (!session) { return fail(pool, kOperation, kTransferHandleUnknown); }
        return putFile(pool, kOperation, *session, path, targetDirectory, targetName, callback, context);
    });
}

std::int32_t KvHIM_makeDir(KvCErrorListPool& pool, void*, void* handle, const char* baseDirectory,
                           const char* name) noexcept {
    static constexpr const char* kOperation = "KvHIM_makeDir";
    if (baseDirectory == nullptr || name == nullptr) { return fail(pool, kOperation, kInvalidArgument); }
    return guarded(pool, kOperation, [&]() -> std::int32_t {
        const Session session = sessions().find(handle);
        if (!session) { return fail(pool, kOperation, kTransferHandleUnknown); }
        return makeDirectory(pool, kOperation, *session, baseDirectory, name);
    });
}

} // extern "C"

std::int32_t sendHostTime(KvCErrorListPool& pool, const std::string& address, const std::string& text) {
    static constexpr const char* kOperation = "sendHostTime";
    TransferSession session{address};
    const Answer answer = session.call(kSetTime, SetTimeRequest{text});
    return judge(pool, kOperation, session, kSetTime, answer, kTransferRefused, "set its time");
}
