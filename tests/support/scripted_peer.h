// A peer that plays a script per connection, byte by byte.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "rpc_wire/ipv4_endpoint.h"
#include "rpc_wire/socket.h"

namespace scripted_peer {

using Bytes = std::vector<std::uint8_t>;

inline Bytes words(std::initializer_list<std::uint32_t> values) {
    Bytes bytes;
    for (const std::uint32_t value : values) {
        for (int shift = 24; shift >= 0; shift -= 8) {
            bytes.push_back(static_cast<std::uint8_t>(value >> shift));
        }
    }
    return bytes;
}

inline Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

/// 0 behind the end.
inline std::uint32_t wordAt(const Bytes& bytes, std::size_t index) {
    std::uint32_t word = 0;
    for (std::size_t i = 4 * index; i < 4 * index + 4 && i < bytes.size(); ++i) {
        word = word << 8 | bytes[i];
    }
    return word;
}

/// A fragment: its mark and the bytes.
inline Bytes fragment(const Bytes& bytes, bool last = true) {
    return words({static_cast<std::uint32_t>(bytes.size()) | (last ? 0x80000000U : 0U)}) + bytes;
}

/// An accepted and successful reply to `call`, as one fragment.
inline Bytes reply(const Bytes& call, const Bytes& results) {
    return fragment(words({wordAt(call, 0), 1, 0, 0, 0, 0}) + results);
}

/// One end of a connection; closes it when it ends. What was not read then makes the other side see an error.
class Wire {
public:
    explicit Wire(kvrpc::Socket socket) : socket_(std::move(socket)) {}
    explicit Wire(const std::string& address) : Wire(connected(address)) {}

    void send(const Bytes& bytes) const { // as much as the other side takes
        for (std::span<const std::uint8_t> rest{bytes}; !rest.empty();) {
            const kvrpc::IoResult sent = socket_.send(rest);
            if (sent.io == kvrpc::Io::failed) { return; }
            if (sent.io == kvrpc::Io::wouldBlock) { socket_.wait({.toWrite = true}, kNever); }
            rest = rest.subspan(sent.count);
        }
    }
    Bytes receive(std::size_t count) const { // fewer at the end
        Bytes bytes(count);
        std::size_t received = 0;
        while (received < count) {
            const kvrpc::IoResult got = socket_.receive(std::span{bytes}.subspan(received), kNever);
            if (got.io != kvrpc::Io::done) { break; }
            received += got.count;
        }
        bytes.resize(received);
        return bytes;
    }
    Bytes receiveRecord() const { // of one fragment; empty at the end
        const Bytes mark = receive(4);
        return receive(wordAt(mark, 0) & 0x7FFFFFFFU);
    }
    void awaitEnd() const { // reads what comes before
        while (!receive(1).empty()) {}
    }

private:
    static constexpr kvrpc::Deadline kNever = kvrpc::Deadline::max();

    static kvrpc::Socket connected(const std::string& address) {
        const auto endpoint = kvrpc::parseIpv4Endpoint(address).value();
        auto outcome = kvrpc::ConnectOutcome::failed;
        int error = 0;
        return kvrpc::Socket::connect(endpoint.address, endpoint.port, kNever, outcome, error);
    }

    kvrpc::Socket socket_;
};

class ScriptedPeer {
public:
    using Script = std::function<void(const Wire&)>;

    /// The scripts are played one after the other, each on a connection of its own. Each must end by the time that its
    /// peer is gone.
    explicit ScriptedPeer(std::vector<Script> scripts) : scripts_(std::move(scripts)), thread_([this] { play(); }) {}
    ~ScriptedPeer() {
        ended_ = true;
        thread_.join();
    }

    const std::string& address() const { return address_; }
    int accepted() const { return accepted_; }
    void awaitFirstClosed() const { closed_.wait(0); } // by this side

private:
    void play() {
        for (const Script& script : scripts_) {
            auto outcome = kvrpc::AcceptOutcome::none;
            kvrpc::Socket socket;
            while (outcome != kvrpc::AcceptOutcome::accepted) {
                if (ended_) { return; }
                listener_.wait({.toRead = true}, kvrpc::Clock::now() + std::chrono::milliseconds{20});
                socket = listener_.accept(outcome);
            }
            ++accepted_;
            script(Wire{std::move(socket)});
            ++closed_;
            closed_.notify_all();
        }
    }

    const std::vector<Script> scripts_;
    const kvrpc::Socket listener_ = kvrpc::Socket::listen("127.0.0.1", 0);
    const std::string address_ = "127.0.0.1:" + std::to_string(listener_.localPort());
    std::atomic<bool> ended_{false};
    std::atomic<int> accepted_{0};
    std::atomic<int> closed_{0};
    std::thread thread_;
};

} // namespace scripted_peer
