// Leader and followers. Of the calls that wait for a reply one, the leader, reads the socket; the others, the followers,
// sleep until they are woken.
// - Whoever finds that nobody reads is the leader: in `wait` until its own reply has come, in `send` only while the socket
//   takes nothing (the peer may take nothing itself before its replies are taken), in `usable` for what has arrived.
// - The leader reads one record with the lock released, then gives it, under the lock, to the call of its xid and wakes
//   that one. A record that nobody waits for any more is dropped.
// - Whoever stops reading appoints: it wakes one follower, which finds that nobody reads. Each of the three ways above ends
//   with `appointReader`; without it the followers would sleep until their deadlines.
// - The reader belongs to whoever set `reading_`, the sending half of the socket to whoever set `writing_`; the lock guards
//   all the rest. It is never held while the socket is waited for, and no other lock is taken under it.
// - The first failure stays, and wakes everybody. std::bad_alloc comes out of `send` only, before a byte is sent; a reply
//   for which there is no memory breaks the connection, since the stream has then lost its place.
#include "rpc_client/rpc_connection.h"

#include <algorithm>
#include <new>
#include <utility>

namespace kvrpc {
namespace {

constexpr std::uint32_t kFirstXid = 0xFFFFFFF0U; // so that the counter's wrap is nothing rare
constexpr Deadline::duration kWriteSlice = std::chrono::milliseconds{50};

bool isOver(Deadline deadline) noexcept { return Clock::now() >= deadline; }

/// Makes a flag true for as long as it lives. The flag is changed under the lock, which is held again afterwards.
class Turn {
public:
    Turn(std::unique_lock<std::mutex>& lock, bool& flag, std::condition_variable* next = nullptr) noexcept
        : lock_(lock), flag_(flag), next_(next) {
        flag_ = true;
    }
    ~Turn() {
        if (!lock_.owns_lock()) { lock_.lock(); }
        flag_ = false;
        if (next_ != nullptr) { next_->notify_one(); }
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

private:
    std::unique_lock<std::mutex>& lock_;
    bool& flag_;
    std::condition_variable* next_;
};

} // namespace

Call::~Call() { connection_->forget(*this); }

Connection::Connection(Socket socket) noexcept
    : socket_(std::move(socket)), nextXid_(kFirstXid), reader_(kLargestRecord) {}

bool Connection::usable(Deadline deadline) {
    Lock lock{mutex_};
    if (reading_ || failure_) { return !failure_; } // whoever reads learns of the end by himself
    do {
        takeRecord(lock, Clock::now());
    } while (!failure_ && !reading_ && !isOver(deadline) && socket_.wait({.toRead = true}, Clock::now()).toRead);
    appointReader();
    return !failure_;
}

Connection::Sent Connection::send(Call& call, std::span<std::uint8_t> record, Deadline deadline) {
    Lock lock{mutex_};
    const bool mayWrite = mayWrite_.wait_until(lock, deadline, [this] { return !writing_ || failure_; });
    if (failure_) { return {failure_}; }
    if (!mayWrite) { return {{Failure::Kind::callTimedOut}}; }

    std::size_t sent = 0;
    Io outcome = Io::failed;
    {
        const Turn turn{lock, writing_, &mayWrite_};
        enroll(call);
        setXid(record, call.xid_);
        lock.unlock();
        outcome = write(record, deadline, sent);
    }
    if (outcome == Io::done) { return {{}, true}; }
    const auto kind = outcome == Io::timedOut ? Failure::Kind::callTimedOut : Failure::Kind::lost;
    if (sent > 0 || outcome != Io::timedOut) { fail(Failure::Kind::lost); }
    return {{kind}, sent > 0};
}

void Connection::enroll(Call& call) {
    while (pending_.contains(nextXid_)) {
        ++nextXid_;
    }
    pending_.emplace(nextXid_, &call);
    call.xid_ = nextXid_++;
    call.pending_ = true;
}

void Connection::forget(Call& call) noexcept {
    const Lock lock{mutex_};
    if (call.pending_) { pending_.erase(call.xid_); }
    call.pending_ = false;
}

Io Connection::write(ByteSpan record, Deadline deadline, std::size_t& sent) {
    while (sent < record.size()) {
        const IoResult result = socket_.send(record.subspan(sent));
        if (result.io == Io::failed) { return Io::failed; }
        sent += result.count;
        if (sent == record.size()) { break; }
        if (isOver(deadline)) { return Io::timedOut; }
        if (result.io == Io::wouldBlock) { waitToWrite(deadline); }
    }
    return Io::done;
}

/// Reads as well when nobody does, because the other side may take nothing before its own replies are taken.
void Connection::waitToWrite(Deadline deadline) {
    const Deadline slice = std::min(deadline, Clock::now() + kWriteSlice);
    Lock lock{mutex_};
    if (reading_ || failure_) {
        lock.unlock();
        socket_.wait({.toWrite = true}, slice);
        return;
    }
    bool toRead = false;
    {
        const Turn turn{lock, reading_};
        lock.unlock();
        toRead = socket_.wait({.toRead = true, .toWrite = true}, slice).toRead;
    }
    if (toRead) { takeRecord(lock, Clock::now()); }
    appointReader();
}

Failure Connection::wait(Call& call, Deadline deadline) {
    Lock lock{mutex_};
    while (!call.answered_ && !failure_) {
        if (reading_) {
            call.waiting_ = true;
            call.woken_.wait_until(lock, deadline);
            call.waiting_ = false;
        } else {
            takeRecord(lock, deadline);
        }
        if (!call.answered_ && isOver(deadline)) { break; }
    }
    appointReader();
    if (call.answered_) { return {}; }
    if (failure_) { return failure_; }
    return {Failure::Kind::callTimedOut};
}

/// With nobody reading. Reads one record with the lock released, and delivers it.
RecordReader::Outcome Connection::takeRecord(Lock& lock, Deadline deadline) {
    Bytes record;
    auto outcome = RecordReader::Outcome::malformed;
    auto kind = Failure::Kind::malformed;
    {
        const Turn turn{lock, reading_};
        lock.unlock();
        try {
            outcome = reader_.read(socket_, deadline, record);
        } catch (const std::bad_alloc&) { kind = Failure::Kind::unusable; }
    }
    switch (outcome) {
    case RecordReader::Outcome::record:
        deliver(std::move(record));
        break;
    case RecordReader::Outcome::timedOut:
        break;
    case RecordReader::Outcome::malformed:
        fail(kind);
        break;
    case RecordReader::Outcome::ended:
    case RecordReader::Outcome::failed:
        fail(Failure::Kind::lost);
        break;
    }
    return outcome;
}

void Connection::deliver(Bytes record) noexcept {
    const auto kind = kindOf(record);
    if (!kind) { return fail(Failure::Kind::malformed); }
    const auto found = kind->reply ? pending_.find(kind->xid) : pending_.end();
    if (found == pending_.end()) { return; } // late, twice, or nobody's
    Call& call = *found->second;
    pending_.erase(found);
    call.pending_ = false;
    call.reply_ = std::move(record);
    call.answered_ = true;
    call.woken_.notify_one();
}

/// Wakes one of those who wait, when nobody reads.
void Connection::appointReader() noexcept {
    if (reading_) { return; }
    const auto waiting =
        std::find_if(pending_.begin(), pending_.end(), [](const auto& entry) { return entry.second->waiting_; });
    if (waiting != pending_.end()) { waiting->second->woken_.notify_one(); }
}

void Connection::drop() noexcept {
    const Lock lock{mutex_};
    fail(Failure::Kind::lost);
}

/// The first failure stays. Whoever waits for this connection in any way is woken.
void Connection::fail(Failure::Kind kind) noexcept {
    if (failure_) { return; }
    failure_ = {kind};
    socket_.abandon();
    for (const auto& [xid, call] : pending_) {
        call->woken_.notify_one();
    }
    mayWrite_.notify_all();
}

} // namespace kvrpc
