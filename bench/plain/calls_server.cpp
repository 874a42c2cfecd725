// A plain server of calls, a thread for each connection: bench_calls_server MICROSECONDS. It answers each call so long
// after it has come, all calls independently of each other. Prints its port, and ends when it is killed.
#include <chrono>
#include <cstdio>
#include <deque>
#include <exception>
#include <poll.h>
#include <string>
#include <sys/prctl.h>
#include <thread>
#include <vector>

#include "plain/messages.h"
#include "plain/stream.h"

namespace {

using Clock = std::chrono::steady_clock;
using plain::load;
using plain::Message;
using plain::Stream;

class Connection {
public:
    Connection(Stream stream, Clock::duration delay) : stream_(std::move(stream)), delay_(delay) {}

    void serve() {
        while (arrived() && take()) {
            if (delay_ == Clock::duration::zero()) { sendUntil(due_.size()); }
        }
    }

private:
    struct Due {
        Clock::time_point time;
        std::size_t end; // of its bytes in `answers_`
    };

    /// Sends what becomes due until something has arrived. At the end of the connection something has.
    bool arrived() {
        while (!due_.empty()) {
            const auto left = std::chrono::nanoseconds{due_.front().time - Clock::now()}.count();
            if (left > 0) {
                const timespec time{left / 1'000'000'000, left % 1'000'000'000};
                pollfd entry{stream_.handle(), POLLIN, 0};
                if (ppoll(&entry, 1, &time, nullptr) > 0) { return true; }
            }
            std::size_t count = 0;
            for (const auto now = Clock::now(); count < due_.size() && due_[count].time <= now;) {
                ++count;
            }
            sendUntil(count);
        }
        return true;
    }

    void sendUntil(std::size_t count) {
        if (count == 0) { return; }
        const std::size_t end = due_[count - 1].end;
        stream_.send(std::span{answers_}.first(end));
        answers_.erase(answers_.begin(), answers_.begin() + static_cast<std::ptrdiff_t>(end));
        due_.erase(due_.begin(), due_.begin() + static_cast<std::ptrdiff_t>(count));
        for (Due& each : due_) {
            each.end -= end;
        }
    }

    /// Takes in what has arrived. False at the end, and when it is no call of the one kind.
    bool take() {
        const std::size_t received = stream_.receive(std::span{buffer_}.subspan(filled_));
        if (received == 0) { return false; }
        filled_ += received;
        std::size_t taken = 0;
        for (; filled_ - taken >= plain::Request::kSize; taken += plain::Request::kSize) {
            const std::uint8_t* const request = buffer_.data() + taken;
            if (load(request) != plain::mark(15)) { return false; }
            answer(load(request + plain::kMarkSize), load(request + plain::kApplicationAt));
        }
        filled_ -= taken;
        std::memmove(buffer_.data(), buffer_.data() + taken, filled_);
        return true;
    }

    void answer(std::uint32_t xid, std::uint32_t applId) {
        switch (bench::outcomeOf(applId)) {
        case bench::Outcome::value:
            return put(plain::Reply{xid, bench::valueOf(applId)});
        case bench::Outcome::refused:
            return put(plain::Refusal{xid});
        default:
            return;
        }
    }

    template <std::size_t kWords>
    void put(const Message<kWords>& message) {
        answers_.insert(answers_.end(), message.bytes().begin(), message.bytes().end());
        due_.push_back({Clock::now() + delay_, answers_.size()});
    }

    const Stream stream_;
    const Clock::duration delay_;
    std::array<std::uint8_t, 1 << 14> buffer_{};
    std::size_t filled_ = 0;
    std::vector<std::uint8_t> answers_{};
    std::deque<Due> due_{};
};

void serve(Stream stream, Clock::duration delay) {
    try {
        Connection{std::move(stream), delay}.serve();
    } catch (const std::exception&) {} // the client has gone
}

} // namespace

int main(int count, char** arguments) try {
    const std::chrono::microseconds delay{count > 1 ? std::stol(arguments[1]) : 0};
    prctl(PR_SET_TIMERSLACK, 1UL); // nanosecond: so that it answers when it says
    const plain::Listener listener;
    std::printf("listening %d\n", listener.port());
    std::fflush(stdout);
    for (;;) {
        std::thread{[stream = listener.accept(), delay]() mutable { serve(std::move(stream), delay); }}.detach();
    }
} catch (const std::exception& failure) {
    std::fprintf(stderr, "bench_calls_server: %s\n", failure.what());
    return 1;
}
