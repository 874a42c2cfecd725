// A blocking TCP connection, as plainly as it can be used. What fails throws.
#pragma once

#include <arpa/inet.h>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <span>
#include <string>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace plain {

[[noreturn]] inline void fail(const char* what) { throw std::system_error{errno, std::generic_category(), what}; }

/// "a.b.c.d:port"
inline sockaddr_in endpoint(const std::string& text) {
    const std::size_t colon = text.find(':');
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(std::stoul(text.substr(colon + 1))));
    inet_pton(AF_INET, text.substr(0, colon).c_str(), &address.sin_addr);
    return address;
}

class Stream {
public:
    explicit Stream(int handle) : handle_(handle) {
        const int on = 1;
        setsockopt(handle_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    }
    explicit Stream(const std::string& address) : Stream(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        const sockaddr_in peer = endpoint(address);
        if (connect(handle_, reinterpret_cast<const sockaddr*>(&peer), sizeof peer) != 0) { fail("connect"); }
    }
    ~Stream() {
        if (handle_ >= 0) { close(handle_); }
    }
    Stream(Stream&& other) noexcept : handle_(std::exchange(other.handle_, -1)) {}
    Stream& operator=(Stream&&) = delete;

    int handle() const { return handle_; }

    void send(std::span<const std::uint8_t> bytes) const {
        while (!bytes.empty()) {
            const ssize_t sent = ::send(handle_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (sent < 0) { fail("send"); }
            bytes = bytes.subspan(static_cast<std::size_t>(sent));
        }
    }

    /// What has arrived; waits for the first byte. Nothing at the end.
    std::size_t receive(std::span<std::uint8_t> buffer) const {
        const ssize_t received = recv(handle_, buffer.data(), buffer.size(), 0);
        if (received < 0) { fail("recv"); }
        return static_cast<std::size_t>(received);
    }

    /// False at the end of the connection.
    bool receiveAll(std::span<std::uint8_t> buffer) const {
        while (!buffer.empty()) {
            const std::size_t received = receive(buffer);
            if (received == 0) { return false; }
            buffer = buffer.subspan(received);
        }
        return true;
    }

private:
    int handle_;
};

/// Listens on every loopback address, on a port of the system's choice.
class Listener {
public:
    Listener() : handle_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        constexpr char kLoopback[] = "lo";
        constexpr int kBacklog = 4096;
        sockaddr_in any{};
        any.sin_family = AF_INET;
        if (setsockopt(handle_, SOL_SOCKET, SO_BINDTODEVICE, kLoopback, sizeof kLoopback) != 0) { fail("loopback"); }
        if (bind(handle_, reinterpret_cast<const sockaddr*>(&any), sizeof any) != 0) { fail("bind"); }
        if (listen(handle_, kBacklog) != 0) { fail("listen"); }
    }
    ~Listener() { close(handle_); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    int port() const {
        sockaddr_in address{};
        socklen_t size = sizeof address;
        if (getsockname(handle_, reinterpret_cast<sockaddr*>(&address), &size) != 0) { fail("getsockname"); }
        return ntohs(address.sin_port);
    }

    Stream accept() const {
        const int handle = ::accept(handle_, nullptr, nullptr);
        if (handle < 0) { fail("accept"); }
        return Stream{handle};
    }

private:
    int handle_;
};

} // namespace plain
