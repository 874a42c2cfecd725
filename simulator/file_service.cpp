#include "simulator/file_service.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "file_transfer/file_transfer_protocol.h"
#include "simulator/procedure_row.h"

namespace simulated_target {
namespace {

using namespace file_transfer;

constexpr std::size_t kMostTransfers = 64; // of one connection at once

/// "YYYYMMDDhhmm.ss"; the year may have more digits.
bool isHostTime(std::string_view text) {
    constexpr std::size_t kSeconds = 3; // with the dot
    constexpr std::size_t kShortest = 15;
    constexpr std::size_t kLongest = 20;
    if (text.size() < kShortest || text.size() > kLongest) { return false; }
    const std::size_t dot = text.size() - kSeconds;
    return text[dot] == '.' && text.find_first_not_of("0123456789") == dot &&
           text.find_first_not_of("0123456789", dot + 1) == std::string_view::npos;
}

/// A file on its way. After a failure it holds no file any more.
struct Transfer {
    std::unique_ptr<StagedFile> file{};
    std::uint64_t size = 0;
    std::uint64_t written = 0;
};

Result openStage(const Store* store, const OpenRequest& request, Transfer& transfer) {
    const auto directory = parseStorePath(request.directory);
    if (!directory || !isStoreName(request.name)) { return kBadName; }
    if (store == nullptr) { return kStoreFailed; }
    transfer.file = store->stage(*directory, request.name);
    transfer.size = request.size;
    return transfer.file ? kDone : kStoreFailed;
}

Result append(const WriteRequest& request, Transfer& transfer) {
    if (!transfer.file) { return kEarlierFailure; }
    const bool next = request.offset == transfer.written;
    if (!next || request.bytes.size() > transfer.size - transfer.written) { return kBadOffset; }
    if (!transfer.file->append(request.bytes)) { return kStoreFailed; }
    transfer.written += request.bytes.size();
    return kDone;
}

Result finish(Transfer& transfer) {
    if (!transfer.file) { return kEarlierFailure; }
    if (transfer.written != transfer.size) { return kIncomplete; }
    return transfer.file->commit() ? kDone : kStoreFailed;
}

} // namespace

/// Used by the connection's thread alone.
class FileService::Connection {
public:
    explicit Connection(FileService& service) : service_(service) {}

    /// A number that is in use stands for the new transfer from now on, as after an abort: a host that has given up on a
    /// failed transfer need not say so.
    Reply open(const OpenRequest& request) {
        transfers_.erase(request.transfer);
        if (transfers_.size() >= kMostTransfers) { return {kStoreFailed}; }
        return {openStage(service_.store_, request, transfers_[request.transfer])};
    }

    Reply write(const WriteRequest& request) {
        const auto found = transfers_.find(request.transfer);
        if (found == transfers_.end()) { return {kNoSuchTransfer}; }
        const Result result = append(request, found->second);
        if (result != kDone) { found->second.file.reset(); }
        return {result};
    }

    Reply commit(const TransferRequest& request) {
        const auto transfer = transfers_.extract(request.transfer);
        return {transfer ? finish(transfer.mapped()) : kNoSuchTransfer};
    }

    Reply abort(const TransferRequest& request) {
        return {transfers_.erase(request.transfer) == 1 ? kDone : kNoSuchTransfer};
    }

    Reply makeDirectory(const MakeDirectoryRequest& request) {
        auto path = parseStorePath(request.base);
        if (!path || !isStoreName(request.name)) { return {kBadName}; }
        path->push_back(request.name);
        return {service_.store_ != nullptr && service_.store_->makeDirectory(*path) ? kDone : kStoreFailed};
    }

    Reply setTime(const SetTimeRequest& request) {
        if (!isHostTime(request.localTime)) { return {kBadName}; }
        service_.setHostTime(request.localTime);
        return {kDone};
    }

    template <auto kMember, class Request>
    static constexpr auto kServe = serveWith<Connection, kMember, Request>;

    kvrpc::RpcReply serve(const kvrpc::RpcCall& call);

private:
    FileService& service_;
    std::map<std::uint32_t, Transfer> transfers_{};
};

kvrpc::RpcReply FileService::Connection::serve(const kvrpc::RpcCall& call) {
    static constexpr ProcedureRow<Connection> kRows[] = {
        {kOpen, kServe<&Connection::open, OpenRequest>},
        {kWrite, kServe<&Connection::write, WriteRequest>},
        {kCommit, kServe<&Connection::commit, TransferRequest>},
        {kAbort, kServe<&Connection::abort, TransferRequest>},
        {kMakeDirectory, kServe<&Connection::makeDirectory, MakeDirectoryRequest>},
        {kSetTime, kServe<&Connection::setTime, SetTimeRequest>},
    };
    return serveFrom(kRows, *this, call.procedure, call.arguments);
}

FileService::FileService(const Store* store) : store_(store) {}
FileService::~FileService() = default;

kvrpc::RpcReply FileService::handle(const kvrpc::RpcCall& call) {
    kvrpc::RpcReply reply = connection(call.connection)->serve(call);
    reply.mayWait = call.procedure == kOpen || call.procedure == kWrite; // further steps of the transfer follow
    return reply;
}

std::shared_ptr<FileService::Connection> FileService::connection(std::uint64_t number) {
    const std::lock_guard lock{mutex_};
    auto& found = connections_[number];
    if (!found) { found = std::make_shared<Connection>(*this); }
    return found;
}

void FileService::connectionClosed(std::uint64_t connection) noexcept {
    std::shared_ptr<Connection> closed; // goes after the lock: it may have files to remove
    const std::lock_guard lock{mutex_};
    const auto found = connections_.find(connection);
    if (found == connections_.end()) { return; }
    closed = std::move(found->second);
    connections_.erase(found);
}

std::string FileService::hostTime() const {
    const std::lock_guard lock{mutex_};
    return hostTime_;
}

void FileService::setHostTime(const std::string& time) {
    const std::lock_guard lock{mutex_};
    hostTime_ = time;
}

} // namespace simulated_target
