// Leader and followers. Of the calls that wait for a reply one, the leader, reads the socket; the others, the followers,
// let others run for a moment and then sleep until they are woken.
// - Whoever finds that nobody reads is the leader: in `wait` until its own reply has come, in `send` only while the socket
//   takes nothing (the peer may take nothing itself before its replies are taken), in `usable` for what has arrived.
// - The leader reads with the lock released. Under the lock it gives each whole record that has come to the call of its
//   xid, and wakes that one if it sleeps. A record that nobody waits for any more is dropped.
// - Whoever stops reading appoints: it wakes one sleeping follower, which finds that nobody reads. Each of the three ways
//   above ends with `appointReader`; without it the followers would sleep until their deadlines. One that is awake looks.
// - The reader belongs to whoever set `reading_`, the sending half of the socket to whoever set `writing_`; the lock guards
//   all the rest. It is never held while the socket is waited for, and no other lock is taken under it.
// - The first failure stays, and wakes everybody. std::bad_alloc comes out of `send` only, before a byte is sent; a reply
//   for which there is no memory breaks the connection, since the stream has then lost its place.
#include "rpc_client/rpc_connection.h"

#include <algorithm>
#include <new>
#include <thread>
#include <utility>

namespace kvrpc {
namespace {

constexpr std::uint32_t kFirstXid = 0xFFFFFFF0U; // so that the counter's wrap is nothing rare
constexpr Deadline::duration kWriteSlice = std::chrono::milliseconds{50};

/// How often others are let run before a thread sleeps for what somebody else is about to do. With one processor that would only
/// bring the target on after every single request; those who sleep are served many at once there.
const int turnsAwake = std::thread::hardware_concurrency() > 1 ? 4 : 0;

/// For how many turns of reading a connection counts as shared after two calls were under way at the same time.
const int turnsShared = std::thread::hardware_concurrency() > 1 ? 16 : 0;

bool isOver(Deadline deadline) noexcept { return Clock::now() >= deadline; }

/// Nobody has to be woken for what ends meanwhile.
template <class Lasts>
void stayAwakeWhile(Lasts lasts) noexcept {
    for (int turns = 0; turns < turnsAwake && lasts(); ++turns) {
        std::this_thread::yield();
    }
}

/// Makes a flag true for as long as it lives. The flag is changed under the lock, which is held again afterwards.
class Turn {
public:
    Turn(std::unique_lock<std::mutex>& lock, std::atomic<bool>& flag, std::condition_variable* next = nullptr) noexcept
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
    std::atomic<bool>& flag_;
    std::condition_variable* next_;
};

} // namespace

void Call::moveTo(std::shared_ptr<Connection> connection) noexcept {
    if (connection_) { connection_->forget(*this); }
    connection_ = std::move(connection);
}

Connection::Connection(Socket socket) noexcept
    : socket_(std::move(socket)), nextXid_(kFirstXid), reader_(kLargestRecord) {}

bool Connection::usable(Deadline deadline) {
    Lock lock{mutex_};
    if (reading_ || failure_) { return !failure_; } // whoever reads learns of the end by himself
    while (!failure_ && !reading_ && !isOver(deadline) && socket_.wait({.toRead = true}, Clock::now()).toRead) {
        takeRecords(lock, Clock::now());
    }
    appointReader();
    return !failure_;
}

Connection::Sent Connection::send(Call& call, std::span<std::uint8_t> record, Deadline deadline) {
    stayAwakeWhile([this] { return writing_.load(); });
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
    const auto isTaken = [this](const Call* other) { return other->xid_ == nextXid_; };
    while (std::any_of(pending_.begin(), pending_.end(), isTaken)) {
        ++nextXid_;
    }
    pending_.push_back(&call);
    call.xid_ = nextXid_++;
    if (pending_.size() > 1) { sharedFor_ = turnsShared; }
}

void Connection::forget(Call& call) noexcept {
    const Lock lock{mutex_};
    std::erase(pending_, &call);
    spare_.giveBack(call.reply_);
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
    if (toRead) { takeRecords(lock, Clock::now()); }
    appointReader();
}

Failure Connection::wait(Call& call, Deadline deadline) {
    stayAwakeWhile([&] { return reading_ && !call.answered_; });
    if (call.answered_) { return {}; }
    Lock lock{mutex_};
    while (!call.answered_ && !failure_) {
        if (reading_) {
            call.waiting_ = true;
            call.woken_.wait_until(lock, deadline);
            call.waiting_ = false;
        } else {
            takeRecords(lock, deadline);
        }
        if (!call.answered_ && isOver(deadline)) { break; }
    }
    appointReader();
    if (call.answered_) { return {}; }
    if (failure_) { return failure_; }
    return {Failure::Kind::callTimedOut};
}

/// With nobody reading. Waits for a record with the lock released, then delivers it and what came along with it.
void Connection::takeRecords(Lock& lock, Deadline deadline) {
    Bytes record = spare_.take();
    auto outcome = RecordReader::Outcome::malformed;
    auto kind = Failure::Kind::malformed;
    try {
        {
            const Turn turn{lock, reading_};
            const bool shared = sharedFor_ > 0 && sharedFor_-- > 0;
            lock.unlock();
            if (shared) { std::this_thread::yield(); } // others send first, and are served by the same turn
            outcome = reader_.read(socket_, deadline, record);
        }
        while (outcome == RecordReader::Outcome::record) {
            deliver(record);
            outcome = failure_ ? RecordReader::Outcome::failed : reader_.take(record);
        }
    } catch (const std::bad_alloc&) {
        outcome = RecordReader::Outcome::malformed;
        kind = Failure::Kind::unusable;
    }
    spare_.giveBack(record);
    if (outcome == RecordReader::Outcome::malformed) { return fail(kind); }
    if (outcome != RecordReader::Outcome::timedOut) { fail(Failure::Kind::lost); }
}

/// Leaves another record to be filled in its place.
void Connection::deliver(Bytes& record) noexcept {
    const auto kind = kindOf(record);
    if (!kind) { return fail(Failure::Kind::malformed); }
    const auto found = std::find_if(pending_.begin(), pending_.end(),
                                    [&](const Call* call) { return kind->reply && call->xid_ == kind->xid; });
    if (found == pending_.end()) { return; } // late, twice, or nobody's
    Call& call = **found;
    pending_.erase(found);
    call.reply_ = std::exchange(record, spare_.take());
    call.answered_ = true;
    if (call.waiting_) { call.woken_.notify_one(); }
}

/// Wakes one of those who wait, when nobody reads.
void Connection::appointReader() noexcept {
    if (reading_) { return; }
    const auto waiting =
        std::find_if(pending_.begin(), pending_.end(), [](const Call* call) { return call->waiting_; });
    if (waiting != pending_.end()) { (*waiting)->woken_.notify_one(); }
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
    for (Call* const call : pending_) {
        call->woken_.notify_one();
    }
    mayWrite_.notify_all();
}

} // namespace kvrpc
