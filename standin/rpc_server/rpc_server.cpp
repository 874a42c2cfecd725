// One thread accepts, one per connection reads calls and answers them in order. A connection's thread closes its socket and
// says that it is finished, under the lock, so that whoever drops connections meets no socket that is closed; the accepting
// thread, or `stop`, joins it later. The lock is never held while a service is called or a thread is joined.
// What a service throws becomes the answer systemError; a lack of memory for a call or an answer ends that connection.
#include "rpc_server/rpc_server.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <list>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/xdr.h"
#include "rpc_wire/record_reader.h"
#include "rpc_wire/socket.h"

namespace kvrpc {
namespace {

// Waiting is cut into slices, because not every system wakes it when another thread shuts a socket down.
constexpr Deadline::duration kSlice = std::chrono::milliseconds{250};
constexpr Deadline::duration kExhaustionPause = std::chrono::milliseconds{50};

struct ServedConnection {
    ServedConnection(Socket accepted, std::uint64_t number, Clock::duration longest)
        : socket(std::move(accepted)), id(number), peer(socket.peer()), recordTime(longest) {}

    Socket socket;
    const std::uint64_t id;
    const std::string peer;
    const Clock::duration recordTime;
    std::atomic<bool> dropped{false};
    std::atomic<bool> finished{false};
    std::thread thread{};
};

/// The next call, however long it takes to begin. None when the connection is over.
std::optional<Bytes> readCall(const ServedConnection& connection, RecordReader& reader) {
    Bytes record;
    std::optional<Deadline> whole; // until when the record has to be complete, once it has begun
    while (!connection.dropped) {
        const Deadline slice = Clock::now() + kSlice;
        const auto outcome = reader.read(connection.socket, whole ? std::min(*whole, slice) : slice, record);
        if (outcome == RecordReader::Outcome::record) { return record; }
        if (outcome != RecordReader::Outcome::timedOut) { break; }
        if (!reader.midRecord()) { continue; }
        if (!whole) { whole = slice - kSlice + connection.recordTime; }
        if (Clock::now() >= *whole) { break; }
    }
    return {};
}

bool writeReply(const ServedConnection& connection, ByteSpan record) {
    const Deadline deadline = Clock::now() + connection.recordTime;
    while (!record.empty() && !connection.dropped && Clock::now() < deadline) {
        const IoResult sent = connection.socket.send(record);
        if (sent.io == Io::failed) { return false; }
        record = record.subspan(sent.count);
        if (sent.io == Io::wouldBlock) {
            connection.socket.wait({.toWrite = true}, std::min(deadline, Clock::now() + kSlice));
        }
    }
    return record.empty();
}

RpcReply ask(RpcService& service, const ServedConnection& connection, const CallHead& head) noexcept {
    try {
        return service.handle(
            {connection.id, head.program, head.version, head.procedure, head.arguments, connection.peer});
    } catch (...) {
        RpcReply reply;
        reply.status = AcceptStatus::systemError;
        return reply;
    }
}

Bytes encodeReply(std::uint32_t xid, const RpcReply& reply) {
    if (reply.status == AcceptStatus::programMismatch) {
        return versionMismatchReply(xid, reply.lowestVersion, reply.highestVersion);
    }
    Bytes record = acceptedReply(xid, reply.status);
    if (reply.status == AcceptStatus::success) {
        record.insert(record.end(), reply.results.begin(), reply.results.end());
    }
    return record;
}

/// Until the connection is over.
void readNoMore(const ServedConnection& connection) {
    while (!connection.dropped && !connection.socket.wait({}, Clock::now() + kSlice).toRead) {}
}

/// False when the connection is to be closed.
bool deliver(const ServedConnection& connection, const Delivery& delivery) {
    const bool written = writeReply(connection, delivery.bytes);
    if (delivery.afterwards) { delivery.afterwards(); }
    if (delivery.then == Delivery::Then::readNoMore) { readNoMore(connection); }
    if (delivery.then == Delivery::Then::reset) { connection.socket.discardAtClose(); }
    return written && delivery.then == Delivery::Then::readOn;
}

/// Answers the calls of one connection.
class Conversation {
public:
    Conversation(RpcService& service, const ServedConnection& connection)
        : service_(service), connection_(connection) {}

    /// Ends with the connection. Throws std::bad_alloc.
    void run() {
        while (const auto record = readCall(connection_, reader_)) {
            if (!answer(*record)) { return; }
        }
    }

private:
    /// False when the connection is to be closed: what is no call at all closes it, a call that cannot be accepted is
    /// answered.
    bool answer(ByteSpan record) {
        const auto head = parseCall(record);
        if (!head) { return false; }
        if (head->denial) { return send({deniedReply(head->xid, *head->denial)}, {}); }
        const RpcReply served = ask(service_, connection_, *head);
        return send({encodeReply(head->xid, served)}, served);
    }

    bool send(Delivery delivery, const RpcReply& served) {
        if (!seal(delivery.bytes)) { return false; }
        if (served.shape) { served.shape(delivery); }
        if (!waiting_.empty()) {
            waiting_.insert(waiting_.end(), delivery.bytes.begin(), delivery.bytes.end());
            delivery.bytes = std::exchange(waiting_, {});
        }
        const bool plain = delivery.then == Delivery::Then::readOn && !delivery.afterwards;
        if (!served.mayWait || !plain || !reader_.holdsRecord()) { return deliver(connection_, delivery); }
        waiting_ = std::move(delivery.bytes);
        return true;
    }

    RpcService& service_;
    const ServedConnection& connection_;
    RecordReader reader_{kLargestRecord};
    Bytes waiting_{}; // answers that go out with the next one
};

/// Ends with the connection.
void serve(RpcService& service, const ServedConnection& connection) noexcept {
    try {
        Conversation{service, connection}.run();
    } catch (...) {} // no memory for what it sent
    service.connectionClosed(connection.id);
}

} // namespace

struct RpcServer::State {
    State(RpcService& served, Clock::duration longest) : service(served), recordTime(longest) {}

    void accept() noexcept;
    void admit(Socket socket);
    void pause() noexcept;
    void reap() noexcept;
    void dropAll() noexcept;

    RpcService& service;
    const Clock::duration recordTime;
    Socket listener{};
    std::thread acceptor{};
    std::atomic<std::uint64_t> accepted{0};
    std::mutex mutex{}; // guards what follows, and every connection's socket against being closed
    std::condition_variable stopped{};
    bool stopping = false;
    std::list<ServedConnection> connections{};
};

/// Runs until the server stops.
void RpcServer::State::accept() noexcept {
    for (;;) {
        const bool waiting = listener.wait({.toRead = true}, Clock::now() + kSlice).toRead;
        {
            const std::lock_guard lock{mutex};
            if (stopping) { return; }
        }
        reap();
        if (!waiting) { continue; }
        auto outcome = AcceptOutcome::none;
        Socket socket = listener.accept(outcome);
        if (outcome == AcceptOutcome::exhausted) { pause(); }
        if (outcome != AcceptOutcome::accepted) { continue; }
        try {
            admit(std::move(socket));
        } catch (...) { pause(); } // no thread or no memory: this one is turned away
    }
}

void RpcServer::State::admit(Socket socket) {
    const std::lock_guard lock{mutex};
    if (stopping) { return; }
    ServedConnection& connection = connections.emplace_back(std::move(socket), ++accepted, recordTime);
    try {
        connection.thread = std::thread{[this, &connection] {
            serve(service, connection);
            const std::lock_guard closing{mutex};
            connection.socket.close();
            connection.finished = true;
        }};
    } catch (...) {
        connections.pop_back();
        throw;
    }
}

/// Gives the system time to recover.
void RpcServer::State::pause() noexcept {
    std::unique_lock lock{mutex};
    stopped.wait_for(lock, kExhaustionPause, [this] { return stopping; });
}

/// Takes the threads away that have ended.
void RpcServer::State::reap() noexcept {
    std::list<ServedConnection> finished;
    {
        const std::lock_guard lock{mutex};
        for (auto each = connections.begin(); each != connections.end();) {
            const auto present = each++;
            if (present->finished) { finished.splice(finished.end(), connections, present); }
        }
    }
    for (ServedConnection& connection : finished) {
        connection.thread.join();
    }
}

void RpcServer::State::dropAll() noexcept {
    for (ServedConnection& connection : connections) {
        connection.dropped = true;
        if (connection.socket.valid()) { connection.socket.shutdown(); }
    }
}

RpcServer::RpcServer(RpcService& service, Clock::duration recordTime)
    : state_(std::make_unique<State>(service, recordTime)) {}

RpcServer::~RpcServer() { stop(); }

std::string RpcServer::start(const std::string& host, std::uint16_t port) {
    stop();
    state_->listener = Socket::listen(host, port);
    state_->stopping = false;
    state_->acceptor = std::thread{[state = state_.get()] { state->accept(); }};
    return host + ':' + std::to_string(state_->listener.localPort());
}

void RpcServer::stop() noexcept {
    {
        const std::lock_guard lock{state_->mutex};
        state_->stopping = true;
        state_->dropAll();
        if (state_->listener.valid()) { state_->listener.shutdown(); }
    }
    state_->stopped.notify_all();
    if (state_->acceptor.joinable()) { state_->acceptor.join(); }
    state_->listener.close();
    for (ServedConnection& connection : state_->connections) { // nobody adds one any more
        connection.thread.join();
    }
    state_->connections.clear();
}

void RpcServer::dropConnections() noexcept {
    const std::lock_guard lock{state_->mutex};
    state_->dropAll();
}

std::uint64_t RpcServer::acceptedConnections() const noexcept { return state_->accepted; }

std::map<std::uint64_t, std::string> RpcServer::connections() const {
    const std::lock_guard lock{state_->mutex};
    std::map<std::uint64_t, std::string> peers;
    for (const ServedConnection& connection : state_->connections) {
        if (!connection.finished) { peers.emplace(connection.id, connection.peer); }
    }
    return peers;
}

} // namespace kvrpc
