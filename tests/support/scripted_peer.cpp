#include "support/scripted_peer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>

namespace scripted_peer {
namespace {

/// Repeats what a signal interrupts.
template <class Operation>
auto uninterrupted(Operation operation) {
    for (;;) {
        const auto result = operation();
        if (result != -1 || errno != EINTR) { return result; }
    }
}

sockaddr_in loopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

} // namespace

Bytes words(std::initializer_list<std::uint32_t> values) {
    Bytes bytes;
    for (std::uint32_t value : values) {
        for (int shift = 24; shift >= 0; shift -= 8) {
            bytes.push_back(static_cast<std::uint8_t>(value >> shift));
        }
    }
    return bytes;
}

Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

std::uint32_t wordAt(const Bytes& bytes, std::size_t index) {
    std::uint32_t word = 0;
    for (std::size_t i = 4 * index; i < 4 * index + 4 && i < bytes.size(); ++i) {
        word = word << 8 | bytes[i];
    }
    return word;
}

Bytes fragment(const Bytes& bytes, bool last) {
    return words({static_cast<std::uint32_t>(bytes.size()) | (last ? 0x80000000U : 0U)}) + bytes;
}

Bytes reply(const Bytes& call, const Bytes& results) {
    return fragment(words({wordAt(call, 0), 1, 0, 0, 0, 0}) + results);
}

Wire::~Wire() { ::close(descriptor_); }

int Wire::connectTo(const std::string& address) {
    const int descriptor = ::socket(AF_INET, SOCK_STREAM, 0);
    const auto port = static_cast<std::uint16_t>(std::stoi(address.substr(address.find(':') + 1)));
    const sockaddr_in peer = loopback(port);
    if (::connect(descriptor, reinterpret_cast<const sockaddr*>(&peer), sizeof peer) != 0 && errno != EINTR) {
        throw std::runtime_error{"cannot connect to " + address};
    }
    return descriptor;
}

void Wire::send(const Bytes& bytes) const {
    for (std::size_t sent = 0; sent < bytes.size();) {
        const auto count =
            uninterrupted([&] { return ::send(descriptor_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL); });
        if (count <= 0) { return; }
        sent += static_cast<std::size_t>(count);
    }
}

Bytes Wire::receive(std::size_t count) const {
    Bytes bytes(count);
    std::size_t received = 0;
    while (received < count) {
        const auto got =
            uninterrupted([&] { return ::recv(descriptor_, bytes.data() + received, count - received, 0); });
        if (got <= 0) { break; }
        received += static_cast<std::size_t>(got);
    }
    bytes.resize(received);
    return bytes;
}

Bytes Wire::receiveRecord() const {
    const Bytes mark = receive(4);
    return mark.size() < 4 ? Bytes{} : receive(wordAt(mark, 0) & 0x7FFFFFFFU);
}

bool Wire::isReadable(std::chrono::milliseconds within) const {
    pollfd entry{descriptor_, POLLIN, 0};
    return ::poll(&entry, 1, static_cast<int>(within.count())) == 1;
}

void Wire::awaitEnd() const {
    pollfd entry{descriptor_, POLLRDHUP, 0};
    uninterrupted([&] { return ::poll(&entry, 1, -1); });
}

void Wire::reset() const {
    const linger atOnce{1, 0};
    ::setsockopt(descriptor_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
}

int listenOnLoopback(std::string& address, int backlog) {
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    const int smallBuffer = 4096;
    ::setsockopt(listener, SOL_SOCKET, SO_RCVBUF, &smallBuffer, sizeof smallBuffer);
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

std::string deadAddress() {
    std::string address;
    ::close(listenOnLoopback(address, 1));
    return address;
}

ScriptedPeer::ScriptedPeer(std::vector<Script> scripts)
    : listener_(listenOnLoopback(address_, 16)), thread_([this, played = std::move(scripts)] { play(played); }) {}

ScriptedPeer::~ScriptedPeer() {
    ending_ = true;
    ::shutdown(listener_, SHUT_RDWR);
    if (const int present = present_; present != -1) { ::shutdown(present, SHUT_RDWR); }
    thread_.join();
    ::close(listener_);
}

void ScriptedPeer::awaitClosed(int count) const {
    for (int closed = closed_; closed < count; closed = closed_) {
        closed_.wait(closed);
    }
}

void ScriptedPeer::play(const std::vector<Script>& scripts) {
    for (const Script& script : scripts) {
        const int descriptor = uninterrupted([&] { return ::accept(listener_, nullptr, nullptr); });
        if (descriptor == -1) { return; }
        present_ = descriptor;
        ++accepted_;
        if (ending_) { ::shutdown(descriptor, SHUT_RDWR); }
        {
            const Wire wire{descriptor};
            script(wire);
            present_ = -1;
        }
        ++closed_;
        closed_.notify_all();
    }
}

} // namespace scripted_peer
