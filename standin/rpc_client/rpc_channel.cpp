// One thread at a time connects, with the lock released; the others wait for its attempt and share its end, good or bad.
// An attempt that had less time than connecting may take proves nothing when it fails: the next thread tries itself.
// The lock is never held while a connection is asked for anything, since that takes the connection's own lock.
// std::bad_alloc comes out before a byte of a request is sent, or while its reply is decoded.
#include "rpc_client/rpc_channel.h"

#include <algorithm>
#include <new>
#include <utility>

#include "rpc_wire/ipv4_endpoint.h"

namespace kvrpc {
namespace {

Failure failureOf(ConnectOutcome outcome, int systemError) noexcept {
    switch (outcome) {
    case ConnectOutcome::connected:
        return {};
    case ConnectOutcome::refused:
        return {Failure::Kind::connectionRefused};
    case ConnectOutcome::unreachable:
        return {Failure::Kind::unreachable};
    case ConnectOutcome::timedOut:
        return {Failure::Kind::connectTimedOut};
    case ConnectOutcome::failed:
        break;
    }
    return {Failure::Kind::connectFailed, systemError};
}

} // namespace

Channel::Channel(std::string address, const Limits& limits)
    : address_(std::move(address)), connectTimeout_(limits.connecting), callTimeout_(limits.call) {
    const auto endpoint = parseIpv4Endpoint(address_);
    if (!endpoint) { return; }
    ipAddress_ = endpoint->address;
    port_ = endpoint->port;
}

Failure Channel::connect(std::shared_ptr<Connection>& connection, Deadline deadline) {
    std::unique_lock lock{mutex_};
    for (;;) {
        const std::shared_ptr<Connection> present = latest_.connection;
        if (present) {
            lock.unlock();
            if (present->usable(deadline)) {
                connection = present;
                return {};
            }
            lock.lock();
            if (latest_.connection == present) { latest_.connection.reset(); }
        }
        if (latest_.connection) { continue; } // somebody else was faster
        if (!connecting_) { break; }
        const std::uint64_t awaited = attempts_;
        const bool over = attempted_.wait_until(lock, deadline, [&] { return attempts_ != awaited; });
        if (!over) { return {Failure::Kind::connectTimedOut}; }
        if (latest_.failure && !latest_.hurried) { return latest_.failure; } // whoever waited for it shares its end
    }
    connecting_ = true;
    lock.unlock();
    const Deadline latest = Clock::now() + connectTimeout_;
    Attempt attempt = open(std::min(deadline, latest));
    attempt.hurried = deadline < latest;
    lock.lock();
    connecting_ = false;
    ++attempts_;
    latest_ = std::move(attempt);
    attempted_.notify_all();
    connection = latest_.connection;
    return latest_.failure;
}

Channel::Attempt Channel::open(Deadline deadline) const noexcept {
    if (port_ == 0) { return {{}, {Failure::Kind::unusable}}; }
    auto outcome = ConnectOutcome::failed;
    int systemError = 0;
    Socket socket = Socket::connect(ipAddress_, port_, deadline, outcome, systemError);
    if (outcome != ConnectOutcome::connected) { return {{}, failureOf(outcome, systemError)}; }
    try {
        return {std::make_shared<Connection>(std::move(socket)), {}};
    } catch (const std::bad_alloc&) { return {{}, {Failure::Kind::unusable}}; }
}

Failure Channel::start(Call& call, std::shared_ptr<Connection>& connection, std::span<std::uint8_t> record,
                       Deadline deadline) {
    Connection::Sent sent;
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (const Failure failure = connect(connection, deadline)) { return failure; }
        call.moveTo(connection);
        sent = connection->send(call, record, deadline);
        if (sent.begun || sent.failure.kind == Failure::Kind::callTimedOut) { break; }
    }
    return sent.failure;
}

Failure Channel::call(std::span<std::uint8_t> record, XdrRoutine decode, void* result) {
    const Deadline until = deadline();
    Call call;
    std::shared_ptr<Connection> connection;
    if (const Failure failure = start(call, connection, record, until)) { return failure; }
    if (const Failure failure = connection->wait(call, until)) { return failure; }
    return readReply(call.reply(), decode, result);
}

Failure readReply(ByteSpan record, XdrRoutine decode, void* result) {
    const ReplyHead head = parseReply(record);
    const auto status = static_cast<std::int32_t>(head.status);
    if (head.kind == ReplyHead::Kind::malformed) { return {Failure::Kind::malformed}; }
    if (head.kind == ReplyHead::Kind::denied) { return {Failure::Kind::callDenied, status}; }
    if (head.status != static_cast<std::uint32_t>(AcceptStatus::success)) {
        return {Failure::Kind::callRefused, status};
    }
    Xdr xdr = Xdr::decoder(head.results);
    if (!decode(xdr, result)) { return {Failure::Kind::malformed}; }
    return {};
}

} // namespace kvrpc
