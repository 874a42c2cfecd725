// Calls of several threads over one plain connection, by hand.
#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <semaphore>
#include <string>
#include <thread>

#include "plain/messages.h"
#include "plain/stream.h"

namespace plain {

/// Each caller has a slot, whose number is the xid of its calls. A thread of its own receives as much as there is, puts
/// each reply into its slot and wakes the caller. Callers send under a mutex. No deadlines, no refusals, no connecting anew.
class Multiplexer {
    struct Slot {
        std::array<std::uint8_t, Reply::kSize> reply{};
        std::binary_semaphore answered{0};
    };

public:
    explicit Multiplexer(const std::string& address) : stream_(address), reader_([this] { readReplies(); }) {}
    ~Multiplexer() {
        shutdown(stream_.handle(), SHUT_RDWR);
        reader_.join();
    }
    Multiplexer(const Multiplexer&) = delete;
    Multiplexer& operator=(const Multiplexer&) = delete;

    class Caller {
    public:
        explicit Caller(Multiplexer& client) : client_(client), slot_(client.next_++ % kSlots) {
            request_.setXid(slot_);
        }

        bench::Outcome read(std::uint32_t applId, std::uint32_t& value) {
            request_.setApplication(applId);
            {
                const std::lock_guard lock{client_.sending_};
                client_.stream_.send(request_.bytes());
            }
            Slot& slot = client_.slots_[slot_];
            slot.answered.acquire();
            return readReply(slot.reply.data(), slot_, value);
        }

    private:
        Multiplexer& client_;
        const std::uint32_t slot_;
        Request request_{};
    };

private:
    static constexpr std::size_t kSlots = 64;

    void readReplies() {
        std::array<std::uint8_t, 1 << 14> buffer{};
        std::size_t filled = 0;
        while (const std::size_t received = stream_.receive(std::span{buffer}.subspan(filled))) {
            filled += received;
            std::size_t taken = 0;
            for (; filled - taken >= Reply::kSize; taken += Reply::kSize) {
                const std::uint8_t* const reply = buffer.data() + taken;
                Slot& slot = slots_[load(reply + kMarkSize) % kSlots];
                std::memcpy(slot.reply.data(), reply, Reply::kSize);
                slot.answered.release();
            }
            filled -= taken;
            std::memmove(buffer.data(), buffer.data() + taken, filled);
        }
    }

    Stream stream_;
    std::mutex sending_{};
    std::atomic<std::uint32_t> next_{0};
    std::array<Slot, kSlots> slots_{};
    std::thread reader_;
};

} // namespace plain
