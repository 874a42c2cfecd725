// Open, the writes and commit go out up to eight ahead of their replies, which are taken in order. All of them go over the
// connection of the open: only the open may connect anew, since a target forgets a transfer with its connection.
// A target that refuses a step is told to abort, and the connection stays in use when it says that it did. After every
// other failure, and when memory runs out anywhere, the destructor drops the connection; that makes the target discard
// what it received, so that nothing half sent ever gets its final name.
#include "file_transfer/file_upload.h"

#include <algorithm>
#include <utility>

#include "error_lists/platform_messages.h"

namespace file_transfer {
namespace {

constexpr std::uint64_t kChunk = 256U << 10; // bytes of one write
constexpr std::size_t kMostInFlight = 8;     // steps sent and not yet answered
constexpr const char* kOperation = "KvHIM_putFileU";

const char* nameOf(Procedure procedure) noexcept {
    switch (procedure) {
    case kOpen:
        return "create the file";
    case kWrite:
        return "store the content";
    default:
        return "complete the file";
    }
}

} // namespace

FileUpload::FileUpload(KvCErrorListPool& pool, TransferSession& session, host_system::InputFile& file, std::string path,
                       KvHIM_BytesCallback callback, void* context)
    : pool_(pool), session_(session), file_(file), path_(std::move(path)), callback_(callback), context_(context),
      size_(file.size()), transfer_(session.nextTransfer()) {
    chunk_.transfer = transfer_;
}

/// A lost connection makes the target discard what it received.
FileUpload::~FileUpload() {
    if (!finished_ && connection_) { connection_->drop(); }
}

std::int64_t FileUpload::send(const std::string& directory, const std::string& name) {
    const bool sent = sendStep(kOpen, 0, encodeCall(kOpen, OpenRequest{transfer_, size_, directory, name})) &&
                      sendContent() && sendStep(kCommit, size_, encodeCall(kCommit, TransferRequest{transfer_})) &&
                      awaitAll();
    if (!sent) { return -1; }
    finished_ = true;
    return static_cast<std::int64_t>(size_);
}

bool FileUpload::sendContent() {
    while (chunk_.offset < size_) {
        const std::uint64_t count = std::min(kChunk, size_ - chunk_.offset);
        if (!readChunk(static_cast<std::size_t>(count))) {
            abort();
            return false;
        }
        const std::uint64_t end = chunk_.offset + count;
        if (!sendStep(kWrite, end, encodeCall(kWrite, chunk_))) { return false; }
        chunk_.offset = end;
    }
    return true;
}

/// What was announced is sent, neither less nor more.
bool FileUpload::readChunk(std::size_t count) {
    chunk_.bytes.resize(count);
    for (std::size_t filled = 0; filled < count;) {
        const auto read = file_.read(chunk_.bytes.data() + filled, count - filled);
        if (!read || *read == 0) {
            const auto code =
                read ? platform_messages::kTransferSourceChanged : platform_messages::kTransferSourceUnreadable;
            pool_.setError(code, __LINE__, kOperation, "%s", path_.c_str());
            return false;
        }
        filled += *read;
    }
    return true;
}

bool FileUpload::sendStep(Procedure procedure, std::uint64_t bytes, kvrpc::Bytes record) {
    if (inFlight_.size() == kMostInFlight && !awaitOldest()) { return false; }
    const kvrpc::Deadline deadline = session_.channel().deadline();
    std::unique_ptr<kvrpc::Call> call;
    kvrpc::Failure failure;
    if (procedure == kOpen) {
        failure = session_.channel().start(call, connection_, record, deadline);
    } else {
        call = std::make_unique<kvrpc::Call>(connection_); // a transfer cannot move to another connection
        failure = connection_->send(*call, record, deadline).failure;
    }
    if (failure) { return broken(procedure, failure); }
    inFlight_.push_back({procedure, bytes, std::move(call)});
    return true;
}

bool FileUpload::awaitOldest() {
    const Step step = std::move(inFlight_.front());
    inFlight_.pop_front();
    if (const auto failure = connection_->wait(*step.call, session_.channel().deadline())) {
        return broken(step.procedure, failure);
    }
    const Answer answer = readAnswer(step.call->reply());
    if (answer.failure) { return broken(step.procedure, answer.failure); }
    if (answer.result != kDone) {
        pool_.setError(platform_messages::kTransferRefused, __LINE__, kOperation, "%s%s%d", session_.address().c_str(),
                       nameOf(step.procedure), answer.result);
        abort();
        return false;
    }
    tellProgress(step.bytes);
    return true;
}

bool FileUpload::awaitAll() {
    while (!inFlight_.empty()) {
        if (!awaitOldest()) { return false; }
    }
    return true;
}

/// A callback that throws is not called again.
void FileUpload::tellProgress(std::uint64_t bytes) noexcept {
    if (callback_ == nullptr || bytes == told_) { return; }
    told_ = bytes;
    try {
        callback_(bytes, context_);
    } catch (...) { callback_ = nullptr; }
}

bool FileUpload::broken(Procedure procedure, const kvrpc::Failure& failure) {
    kvrpc::report(pool_, kOperation, session_.address(), procedure, failure);
    return false;
}

/// Makes the target discard what it received. The connection remains in use only when the target says so.
void FileUpload::abort() {
    kvrpc::Bytes record = encodeCall(kAbort, TransferRequest{transfer_});
    const kvrpc::Deadline deadline = session_.channel().deadline();
    kvrpc::Call call{connection_};
    finished_ = !connection_->send(call, record, deadline).failure && !connection_->wait(call, deadline);
}

} // namespace file_transfer
