// A peer that plays a script per connection, byte by byte, on plain system sockets.
#pragma once

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

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

inline sockaddr_in loopback(int port) {
    return {.sin_family = AF_INET,
            .sin_port = htons(static_cast<std::uint16_t>(port)),
            .sin_addr = {htonl(INADDR_LOOPBACK)},
            .sin_zero = {}};
}

/// One end of a connection; closes it when it ends. What was not read then makes the other side see an error.
class Wire {
public:
    explicit Wire(int descriptor) : descriptor_(descriptor) {}
    explicit Wire(const std::string& address) : Wire(::socket(AF_INET, SOCK_STREAM, 0)) {
        const sockaddr_in peer = loopback(std::stoi(address.substr(address.find(':') + 1)));
        if (::connect(descriptor_, reinterpret_cast<const sockaddr*>(&peer), sizeof peer) != 0) {
            throw std::runtime_error{"cannot connect to " + address};
        }
    }
    ~Wire() { ::close(descriptor_); }
    Wire(const Wire&) = delete;
    Wire& operator=(const Wire&) = delete;

    void send(const Bytes& bytes) const { ::send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL); }
    Bytes receive(std::size_t count) const { // fewer at the end
        Bytes bytes(count);
        const auto received = ::recv(descriptor_, bytes.data(), count, MSG_WAITALL);
        bytes.resize(received > 0 ? static_cast<std::size_t>(received) : 0);
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
    int descriptor_;
};

/// A listening socket on a loopback port of its own.
inline int listenOnLoopback(std::string& address, int backlog) {
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in local = loopback(0);
    socklen_t length = sizeof local;
    if (::bind(listener, reinterpret_cast<const sockaddr*>(&local), sizeof local) != 0 ||
        ::listen(listener, backlog) != 0 ||
        ::getsockname(listener, reinterpret_cast<sockaddr*>(&local), &length) != 0) {
        throw std::runtime_error{"cannot listen"};
    }
    address = "127.0.0.1:" + std::to_string(ntohs(local.sin_port));
    return listener;
}

class ScriptedPeer {
public:
    using Script = std::function<void(const Wire&)>;

    /// The scripts are played one after the other, each on a connection of its own. Each must end by the time that its
    /// peer is gone.
    explicit ScriptedPeer(std::vector<Script> scripts)
        : scripts_(std::move(scripts)), listener_(listenOnLoopback(address_, 16)), thread_([this] { play(); }) {}
    ~ScriptedPeer() {
        ::shutdown(listener_, SHUT_RDWR);
        thread_.join();
        ::close(listener_);
    }

    const std::string& address() const { return address_; }
    int accepted() const { return accepted_; }
    void awaitFirstClosed() const { closed_.wait(0); } // by this side

private:
    void play() {
        for (const Script& script : scripts_) {
            const int descriptor = ::accept(listener_, nullptr, nullptr);
            if (descriptor == -1) { return; }
            ++accepted_;
            script(Wire{descriptor});
            ++closed_;
            closed_.notify_all();
        }
    }

    const std::vector<Script> scripts_;
    std::string address_{};
    int listener_;
    std::atomic<int> accepted_{0};
    std::atomic<int> closed_{0};
    std::thread thread_;
};

} // namespace scripted_peer
