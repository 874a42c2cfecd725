#include "rpc_wire/socket.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <system_error>

#include "rpc_wire/ipv4_endpoint.h"

#ifdef _WIN32
#include <mutex>

#include <winsock2.h>
#else
#include <arpa/inet.h>
#include <cerrno>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace kvrpc {
namespace {

constexpr std::size_t kMostAtOnce = 1 << 20; // so that deadlines are looked at now and then
constexpr Deadline::duration kConnectSlice = std::chrono::milliseconds{50};
constexpr Deadline::duration kReceiveSlice = std::chrono::milliseconds{200};

#ifdef _WIN32

using Handle = SOCKET;
using AddressLength = int;
using ByteCount = int;
using PollEntry = WSAPOLLFD;
constexpr int kSendAtOnce = 0;
constexpr int kReceiveAtOnce = 0;
constexpr bool kReceiveMayWait = false;
constexpr int kInterrupted = WSAEINTR;

int lastError() noexcept { return WSAGetLastError(); }
bool isWouldBlock(int error) noexcept { return error == WSAEWOULDBLOCK; }
bool isConnecting(int error) noexcept { return error == WSAEWOULDBLOCK || error == WSAEINPROGRESS; }
bool isExhausted(int error) noexcept { return error == WSAEMFILE || error == WSAENOBUFS; }
int poll(PollEntry* entries, unsigned long count, int milliseconds) noexcept {
    return WSAPoll(entries, count, milliseconds);
}
void closeHandle(Handle handle) noexcept { closesocket(handle); }

// The system keeps the count of uses, but the end of the last one may take sockets along that a new one has just opened.
std::mutex counting;

bool beginUse() noexcept {
    const std::lock_guard lock{counting};
    WSADATA data;
    return WSAStartup(MAKEWORD(2, 2), &data) == 0;
}
void endUse() noexcept {
    const std::lock_guard lock{counting};
    WSACleanup();
}

// No operation waits here, since the choice is the socket's and cannot be made anew by each operation.
bool makeNonBlocking(Handle handle) noexcept {
    u_long on = 1;
    return ioctlsocket(handle, static_cast<long>(FIONBIO), &on) == 0;
}
bool limitReceiving(Handle handle) noexcept { return makeNonBlocking(handle); }
bool limitConnecting(Handle, Deadline) noexcept { return true; }

Handle openHandle() noexcept {
    return WSASocketW(AF_INET, SOCK_STREAM, IPPROTO_TCP, nullptr, 0, WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
}
Handle acceptHandle(Handle listener) noexcept {
    const Handle handle = ::accept(listener, nullptr, nullptr);
    if (handle != INVALID_SOCKET) { SetHandleInformation(reinterpret_cast<HANDLE>(handle), HANDLE_FLAG_INHERIT, 0); }
    return handle;
}

ConnectOutcome outcomeOf(int error) noexcept {
    switch (error) {
    case WSAECONNREFUSED:
        return ConnectOutcome::refused;
    case WSAETIMEDOUT:
        return ConnectOutcome::timedOut;
    case WSAEHOSTUNREACH:
    case WSAENETUNREACH:
    case WSAENETDOWN:
    case WSAEADDRNOTAVAIL:
        return ConnectOutcome::unreachable;
    default:
        return ConnectOutcome::failed;
    }
}

#else

using Handle = int;
using AddressLength = socklen_t;
using ByteCount = std::size_t;
using PollEntry = pollfd;
constexpr int kSendAtOnce = MSG_NOSIGNAL | MSG_DONTWAIT;
constexpr int kReceiveAtOnce = MSG_DONTWAIT;
constexpr bool kReceiveMayWait = true; // until `limitReceiving` ends it
constexpr int kInterrupted = EINTR;

int lastError() noexcept { return errno; }
bool isWouldBlock(int error) noexcept { return error == EAGAIN || error == EWOULDBLOCK; }
bool isConnecting(int error) noexcept { return error == EINPROGRESS || error == EINTR; }
bool isExhausted(int error) noexcept {
    return error == EMFILE || error == ENFILE || error == ENOBUFS || error == ENOMEM;
}
void closeHandle(Handle handle) noexcept { ::close(handle); }
bool beginUse() noexcept { return true; }
void endUse() noexcept {}

// A connection's operations wait unless they are told not to, and the system ends a wait by itself.
bool makeNonBlocking(Handle handle) noexcept {
    const int flags = ::fcntl(handle, F_GETFL);
    return flags != -1 && ::fcntl(handle, F_SETFL, flags | O_NONBLOCK) != -1;
}
bool limitTime(Handle handle, int option, Deadline::duration longest) noexcept {
    const auto time = std::chrono::ceil<std::chrono::microseconds>(longest).count();
    const timeval value{0, static_cast<suseconds_t>(std::max<decltype(time)>(time, 1))}; // 0 would be for ever
    return ::setsockopt(handle, SOL_SOCKET, option, &value, sizeof value) == 0;
}
bool limitReceiving(Handle handle) noexcept { return limitTime(handle, SO_RCVTIMEO, kReceiveSlice); }
bool limitConnecting(Handle handle, Deadline deadline) noexcept {
    return limitTime(handle, SO_SNDTIMEO, std::min(kConnectSlice, deadline - Clock::now()));
}

Handle openHandle() noexcept { return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, IPPROTO_TCP); }
Handle acceptHandle(Handle listener) noexcept { return ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC); }

ConnectOutcome outcomeOf(int error) noexcept {
    switch (error) {
    case ECONNREFUSED:
        return ConnectOutcome::refused;
    case ETIMEDOUT:
        return ConnectOutcome::timedOut;
    case EHOSTUNREACH:
    case EHOSTDOWN:
    case ENETUNREACH:
    case ENETDOWN:
    case EADDRNOTAVAIL:
        return ConnectOutcome::unreachable;
    default:
        return ConnectOutcome::failed;
    }
}

#endif

/// Counts a use of the system's sockets for as long as it lives.
struct Use {
    Use() noexcept : begun(beginUse()) {}
    ~Use() {
        if (begun) { endUse(); }
    }
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;
    bool begun;
};

Handle handleOf(std::intptr_t handle) noexcept { return static_cast<Handle>(handle); }

template <class Value>
bool setOption(Handle handle, int level, int option, Value value) noexcept {
    return ::setsockopt(handle, level, option, reinterpret_cast<const char*>(&value), sizeof value) == 0;
}

sockaddr_in socketAddress(std::uint32_t address, std::uint16_t port) noexcept {
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_port = htons(port);
    result.sin_addr.s_addr = address;
    return result;
}

/// Rounded up, so that waiting for less than a millisecond does not spin.
int millisecondsUntil(Deadline deadline) noexcept {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    using Count = decltype(left);
    return static_cast<int>(std::clamp<Count>(left, 0, std::numeric_limits<int>::max()));
}

/// The error that an attempt to connect ended with; 0 when there is none (yet).
int pendingError(Handle handle) noexcept {
    int error = 0;
    AddressLength length = sizeof error;
    if (::getsockopt(handle, SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&error), &length) != 0) {
        return lastError();
    }
    return error;
}

/// The two directions of a connection that carries requests and replies as soon as they are written, and that the system
/// gives up by itself when the other side no longer acknowledges anything.
void tune(Handle handle) noexcept {
    setOption(handle, IPPROTO_TCP, TCP_NODELAY, 1);
#ifdef TCP_USER_TIMEOUT
    setOption(handle, IPPROTO_TCP, TCP_USER_TIMEOUT, 10'000U); // milliseconds, below the call timeout
#endif
}

} // namespace

Socket::Socket(std::intptr_t handle) noexcept : handle_(handle) {
    if (valid()) { beginUse(); }
}

Socket& Socket::operator=(Socket&& other) noexcept {
    if (this != &other) {
        close();
        handle_ = std::exchange(other.handle_, kNone);
    }
    return *this;
}

void Socket::close() noexcept {
    if (!valid()) { return; }
    closeHandle(handleOf(std::exchange(handle_, kNone)));
    endUse();
}

Socket Socket::open(int& systemError) noexcept {
    const Use use;
    Socket socket{static_cast<std::intptr_t>(openHandle())};
    if (!socket.valid()) { systemError = lastError(); }
    return socket;
}

Socket Socket::connect(std::uint32_t address, std::uint16_t port, Deadline deadline, ConnectOutcome& outcome,
                       int& systemError) noexcept {
    outcome = ConnectOutcome::failed;
    Socket socket = open(systemError);
    if (!socket.valid()) { return socket; }
    if (!limitReceiving(handleOf(socket.handle_)) || !limitConnecting(handleOf(socket.handle_), deadline)) {
        systemError = lastError();
        return {};
    }
    tune(handleOf(socket.handle_));

    const sockaddr_in peer = socketAddress(address, port);
    const bool atOnce = ::connect(handleOf(socket.handle_), reinterpret_cast<const sockaddr*>(&peer), sizeof peer) == 0;
    int error = atOnce ? 0 : lastError();
    if (isConnecting(error)) {
        bool writable = false;
        do {
            // In slices, because not every system wakes a poll when connecting fails.
            const Deadline slice = std::min(deadline, Clock::now() + kConnectSlice);
            writable = socket.wait({.toWrite = true}, slice).toWrite;
            error = pendingError(handleOf(socket.handle_));
        } while (!writable && error == 0 && Clock::now() < deadline);
        if (!writable && error == 0) {
            outcome = ConnectOutcome::timedOut;
            return {};
        }
    }
    if (error != 0) {
        systemError = error;
        outcome = outcomeOf(error);
        return {};
    }
    if (socket.connectedToItself(port)) {
        outcome = ConnectOutcome::refused;
        return {};
    }
    outcome = ConnectOutcome::connected;
    return socket;
}

// A port out of the range that the system also gives to clients can be met by one's own when nobody listens there.
bool Socket::connectedToItself(std::uint16_t port) const noexcept {
    sockaddr_in local{};
    sockaddr_in peer{};
    AddressLength localLength = sizeof local;
    AddressLength peerLength = sizeof peer;
    return ::getsockname(handleOf(handle_), reinterpret_cast<sockaddr*>(&local), &localLength) == 0 &&
           local.sin_port == htons(port) &&
           ::getpeername(handleOf(handle_), reinterpret_cast<sockaddr*>(&peer), &peerLength) == 0 &&
           local.sin_addr.s_addr == peer.sin_addr.s_addr;
}

Socket Socket::listen(const std::string& host, std::uint16_t port) {
    const auto cannot = [&](int error) -> std::system_error {
        return {error, std::system_category(), "cannot listen on " + host + ':' + std::to_string(port)};
    };
    const auto address = parseIpv4Address(host);
    if (!address) {
        throw std::system_error{std::make_error_code(std::errc::invalid_argument), "not an IPv4 address: " + host};
    }
    int error = 0;
    Socket socket = open(error);
    if (!socket.valid()) { throw cannot(error); }
#ifdef _WIN32
    setOption(handleOf(socket.handle_), SOL_SOCKET, SO_EXCLUSIVEADDRUSE, 1);
#else
    setOption(handleOf(socket.handle_), SOL_SOCKET, SO_REUSEADDR, 1); // a port is free again as soon as it is let go
#endif
    const sockaddr_in local = socketAddress(*address, port);
    if (!makeNonBlocking(handleOf(socket.handle_)) ||
        ::bind(handleOf(socket.handle_), reinterpret_cast<const sockaddr*>(&local), sizeof local) != 0 ||
        ::listen(handleOf(socket.handle_), SOMAXCONN) != 0) {
        throw cannot(lastError());
    }
    return socket;
}

std::uint16_t Socket::localPort() const noexcept {
    sockaddr_in local{};
    AddressLength length = sizeof local;
    if (::getsockname(handleOf(handle_), reinterpret_cast<sockaddr*>(&local), &length) != 0) { return 0; }
    return ntohs(local.sin_port);
}

std::string Socket::peer() const {
    sockaddr_in other{};
    AddressLength length = sizeof other;
    if (::getpeername(handleOf(handle_), reinterpret_cast<sockaddr*>(&other), &length) != 0) { return {}; }
    std::string text;
    for (const std::uint8_t part : std::bit_cast<std::array<std::uint8_t, 4>>(other.sin_addr)) {
        text += (text.empty() ? "" : ".") + std::to_string(part);
    }
    return text + ':' + std::to_string(ntohs(other.sin_port));
}

Socket Socket::accept(AcceptOutcome& outcome) const noexcept {
    Socket socket{static_cast<std::intptr_t>(acceptHandle(handleOf(handle_)))};
    if (!socket.valid()) {
        outcome = isExhausted(lastError()) ? AcceptOutcome::exhausted : AcceptOutcome::none;
        return socket;
    }
    outcome = AcceptOutcome::none;
    if (!limitReceiving(handleOf(socket.handle_))) { return {}; }
    tune(handleOf(socket.handle_));
    outcome = AcceptOutcome::accepted;
    return socket;
}

Socket::Interest Socket::wait(Interest interest, Deadline deadline) const noexcept {
    PollEntry entry{};
    entry.fd = handleOf(handle_);
    entry.events = static_cast<short>((interest.toRead ? POLLIN : 0) | (interest.toWrite ? POLLOUT : 0));
    int ready = 0;
    do {
        ready = poll(&entry, 1, millisecondsUntil(deadline));
    } while (ready < 0 && lastError() == kInterrupted);
    if (ready == 0) { return {}; }
    if (ready < 0 || (entry.revents & (POLLERR | POLLHUP | POLLNVAL)) != 0) { return {true, true}; }
    return {(entry.revents & POLLIN) != 0, (entry.revents & POLLOUT) != 0};
}

IoResult Socket::send(std::span<const std::uint8_t> bytes) const noexcept {
    const auto* const first = reinterpret_cast<const char*>(bytes.data());
    const auto count = static_cast<ByteCount>(std::min(bytes.size(), kMostAtOnce));
    for (;;) {
        const auto sent = ::send(handleOf(handle_), first, count, kSendAtOnce);
        if (sent >= 0) { return {Io::done, static_cast<std::size_t>(sent)}; }
        const int error = lastError();
        if (isWouldBlock(error)) { return {Io::wouldBlock}; }
        if (error != kInterrupted) { return {Io::failed}; }
    }
}

IoResult Socket::receive(std::span<std::uint8_t> buffer, Deadline deadline) const noexcept {
    auto* const first = reinterpret_cast<char*>(buffer.data());
    const auto count = static_cast<ByteCount>(std::min(buffer.size(), kMostAtOnce));
    for (;;) {
        const bool patient = kReceiveMayWait && deadline - Clock::now() > kReceiveSlice;
        const auto received = ::recv(handleOf(handle_), first, count, patient ? 0 : kReceiveAtOnce);
        if (received > 0) { return {Io::done, static_cast<std::size_t>(received)}; }
        if (received == 0) { return {Io::ended}; }
        const int error = lastError();
        if (error == kInterrupted || (patient && isWouldBlock(error))) { continue; }
        if (!isWouldBlock(error)) { return {Io::failed}; }
        if (Clock::now() >= deadline || !wait({.toRead = true}, deadline).toRead) { return {Io::timedOut}; }
    }
}

void Socket::discardAtClose() const noexcept { setOption(handleOf(handle_), SOL_SOCKET, SO_LINGER, linger{1, 0}); }

void Socket::abandon() const noexcept {
    discardAtClose();
    shutdown();
}

void Socket::shutdown() const noexcept {
#ifdef _WIN32
    ::shutdown(handleOf(handle_), SD_BOTH);
#else
    ::shutdown(handleOf(handle_), SHUT_RDWR);
#endif
}

} // namespace kvrpc
