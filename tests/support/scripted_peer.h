// A peer that plays a script per connection, byte by byte, on plain system sockets.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <thread>
#include <vector>

namespace scripted_peer {

using Bytes = std::vector<std::uint8_t>;

Bytes words(std::initializer_list<std::uint32_t> values);
Bytes operator+(Bytes left, const Bytes& right);
std::uint32_t wordAt(const Bytes& bytes, std::size_t index); // 0 behind the end

/// A fragment: its mark and the bytes.
Bytes fragment(const Bytes& bytes, bool last = true);

/// An accepted and successful reply to `call`, as one fragment.
Bytes reply(const Bytes& call, const Bytes& results);

/// One end of a connection; closes it when it ends.
class Wire {
public:
    explicit Wire(int descriptor) : descriptor_(descriptor) {}
    ~Wire();
    Wire(const Wire&) = delete;
    Wire& operator=(const Wire&) = delete;

    static int connectTo(const std::string& address);

    void send(const Bytes& bytes) const;
    Bytes receive(std::size_t count) const; // fewer at the end
    Bytes receiveRecord() const;            // of one fragment; empty at the end
    bool isReadable(std::chrono::milliseconds within) const;
    void awaitEnd() const; // until the other side is gone, without reading
    void reset() const;    // the other side sees an error when this one is closed

private:
    int descriptor_;
};

class ScriptedPeer {
public:
    using Script = std::function<void(const Wire&)>;

    /// The scripts are played one after the other, each on a connection of its own.
    explicit ScriptedPeer(std::vector<Script> scripts);
    ~ScriptedPeer();

    const std::string& address() const { return address_; }
    int accepted() const { return accepted_; }
    void awaitClosed(int count) const; // until so many connections were closed by this side

private:
    void play(const std::vector<Script>& scripts);

    std::string address_{};
    int listener_;
    std::atomic<int> accepted_{0};
    std::atomic<int> closed_{0};
    std::atomic<int> present_{-1};
    std::atomic<bool> ending_{false};
    std::thread thread_;
};

/// A listening socket on a loopback port of its own; with a small receive buffer for what it accepts.
int listenOnLoopback(std::string& address, int backlog);

/// An address where nobody listens.
std::string deadAddress();

} // namespace scripted_peer
