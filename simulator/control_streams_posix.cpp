#include "simulator/control_streams.h"

#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace simulated_target {
namespace {

constexpr mode_t kForTheUser = 0600;

[[noreturn]] void fail(const std::string& path) {
    throw std::system_error{errno, std::generic_category(), "the control socket " + path};
}

sockaddr_un addressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        fail(path);
    }
    std::memcpy(address.sun_path, path.data(), path.size());
    return address;
}

int openSocket() noexcept { return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0); }

/// Whether nobody listens at a socket any more.
bool isLeft(const sockaddr_un& address) noexcept {
    const int caller = openSocket();
    const bool refused =
        connect(caller, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 && errno == ECONNREFUSED;
    close(caller);
    return refused;
}

} // namespace

ControlStreams standardStreams() noexcept { return {STDIN_FILENO, STDOUT_FILENO}; }

std::size_t readSome(ControlStreams streams, std::span<char> buffer) noexcept {
    ssize_t count = 0;
    do {
        count = read(static_cast<int>(streams.in), buffer.data(), buffer.size());
    } while (count < 0 && errno == EINTR);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

bool writeAll(ControlStreams streams, std::string_view bytes) noexcept {
    while (!bytes.empty()) {
        const ssize_t count = write(static_cast<int>(streams.out), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) { continue; }
        if (count <= 0) { return false; }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

std::intptr_t listenAt(const std::string& path) {
    const sockaddr_un address = addressOf(path);
    struct stat status {};
    const bool isSocket = lstat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode);
    if (isSocket && isLeft(address)) { unlink(path.c_str()); }
    const int listener = openSocket();
    if (listener == -1 || bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        chmod(path.c_str(), kForTheUser) != 0 || listen(listener, SOMAXCONN) != 0) {
        const int error = errno;
        close(listener);
        errno = error;
        fail(path);
    }
    return listener;
}

void takeCallers(std::intptr_t listener, const std::function<void(ControlStreams)>& converse) noexcept {
    for (;;) {
        const int caller = accept4(static_cast<int>(listener), nullptr, nullptr, SOCK_CLOEXEC);
        if (caller == -1) {
            sleep(errno == EINTR || errno == ECONNABORTED ? 0 : 1); // the system is short of something
            continue;
        }
        try {
            std::thread{[converse, caller] {
                converse({caller, caller});
                close(caller);
            }}.detach();
        } catch (const std::exception&) { close(caller); }
    }
}

} // namespace simulated_target
