// Who kills what. The target's end of the control socket is the runner's life: when that is closed, however the target went,
// the runner takes no further request and ends once its keepers have, each of which sees the same at its own socket. A
// keeper that was killed leaves its program, which the system kills then, and what that has started, which becomes the
// runner's, since it is the subreaper: what is its child and no keeper is killed.
// A request is one message with three descriptors; they are the keeper's, and the runner keeps none. It is forked before
// there is a thread, so memory may be asked for. A lack of it ends the runner: what runs stays with its keepers, and each
// further start fails.
#include "simulator/programs/runner_process.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <poll.h>
#include <set>
#include <span>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

#include "simulator/programs/process_tree.h"

namespace simulated_target {
namespace {

constexpr std::size_t kMostBytes = 128 * 1024; // of a request: arguments and environment
constexpr std::size_t kDescriptorCount = 3;
constexpr std::size_t kRightsSize = CMSG_SPACE(kDescriptorCount * sizeof(int));

/// A message of one request and the descriptors that belong to it.
struct RequestMessage {
    RequestMessage(void* bytes, std::size_t size) : part{bytes, size} {
        header.msg_iov = &part;
        header.msg_iovlen = 1;
        header.msg_control = rights;
        header.msg_controllen = sizeof rights;
    }
    RequestMessage(const RequestMessage&) = delete;
    RequestMessage& operator=(const RequestMessage&) = delete;

    iovec part;
    alignas(cmsghdr) char rights[kRightsSize] = {};
    msghdr header{};
};

// --- the runner

class Runner {
public:
    Runner(Descriptor control, const KeeperTimes& times)
        : control_(std::move(control)), times_(times), children_(watchChildren()) {}

    void run() {
        for (;;) {
            pollfd news[] = {{control_.number(), POLLIN, 0}, {children_.number(), POLLIN, 0}};
            poll(news, std::size(news), -1);
            forgetNews(children_);
            reap(WNOHANG);
            if (news[0].revents != 0 && !takeRequest()) { break; }
        }
        while (reap(0)) {}
    }

private:
    /// False when nobody is there any more.
    bool takeRequest() {
        std::vector<std::uint8_t> bytes(kMostBytes);
        RequestMessage message{bytes.data(), bytes.size()};
        const ssize_t size = recvmsg(control_.number(), &message.header, MSG_CMSG_CLOEXEC | MSG_DONTWAIT);
        if (size < 0) { return errno == EAGAIN || errno == EINTR; }
        if (size == 0) { return false; }
        const cmsghdr* const rights = CMSG_FIRSTHDR(&message.header);
        if (rights == nullptr || rights->cmsg_len != CMSG_LEN(kDescriptorCount * sizeof(int))) { return true; }
        int numbers[kDescriptorCount] = {};
        std::memcpy(numbers, CMSG_DATA(rights), sizeof numbers);
        KeeperDescriptors descriptors{Descriptor{numbers[0]}, Descriptor{numbers[1]}, Descriptor{numbers[2]}};
        KeeperStart start;
        Xdr xdr = Xdr::decoder(std::span{bytes}.first(static_cast<std::size_t>(size)));
        if (xdr_record(xdr, start)) { startKeeper(start, std::move(descriptors)); }
        return true;
    }

    void startKeeper(const KeeperStart& start, KeeperDescriptors descriptors) {
        const pid_t keeper = fork();
        if (keeper == 0) {
            control_ = Descriptor{};
            children_ = Descriptor{};
            keepProgram(start, std::move(descriptors), times_);
        }
        if (keeper < 0) {
            sendReport(
                descriptors.socket,
                {.kind = KeeperReport::Kind::notStarted, .obstacle = KeeperReport::Obstacle::fork, .error = errno});
        } else {
            keepers_.insert(keeper);
        }
    }

    /// Reaps children, and kills what a keeper that was killed has left behind. False when there are no children any more.
    bool reap(int options) {
        pid_t ended = 0;
        while ((ended = waitpid(-1, nullptr, options)) > 0) {
            keepers_.erase(ended);
            killStrays();
        }
        return ended == 0 || errno == EINTR;
    }

    void killStrays() const {
        for (const TreeProcess& process : processesBelow(getpid())) {
            if (process.parent == getpid() && !keepers_.contains(process.pid)) { kill(process.pid, SIGKILL); }
        }
    }

    Descriptor control_;
    const KeeperTimes times_;
    Descriptor children_;
    std::set<pid_t> keepers_{};
};

/// Leaves the target's session, its signals and its descriptors behind, all but this one and standard error.
void leaveTarget(int control) {
    setsid();
    prctl(PR_SET_NAME, "kv-runner");
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) {
        std::signal(number, SIG_IGN); // it ends when the target has
    }
    std::signal(SIGCHLD, SIG_DFL);
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(nothing, STDIN_FILENO);
    dup2(nothing, STDOUT_FILENO);
    constexpr unsigned int kFirst = STDERR_FILENO + 1;
    const auto kept = static_cast<unsigned int>(control);
    if (kept > kFirst) { close_range(kFirst, kept - 1, 0); }
    close_range(kept + 1, ~0U, 0);
}

} // namespace

RunnerProcess::RunnerProcess(const KeeperTimes& times) {
    int ends[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) {
        throw std::system_error{errno, std::generic_category(), "the runner's socket"};
    }
    control_ = Descriptor{ends[0]};
    Descriptor other{ends[1]};
    process_ = fork();
    if (process_ < 0) { throw std::system_error{errno, std::generic_category(), "the runner"}; }
    if (process_ == 0) {
        leaveTarget(other.number());
        Runner{std::move(other), times}.run();
        _exit(EXIT_SUCCESS);
    }
}

RunnerProcess::~RunnerProcess() {
    control_ = Descriptor{};
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {}
}

int RunnerProcess::start(KeeperStart start, const KeeperDescriptors& descriptors) const {
    std::vector<std::uint8_t> bytes;
    Xdr xdr = Xdr::encoder(bytes);
    xdr_record(xdr, start);
    if (bytes.size() > kMostBytes) { return E2BIG; }
    RequestMessage message{bytes.data(), bytes.size()};
    const int numbers[kDescriptorCount] = {descriptors.socket.number(), descriptors.folder.number(),
                                           descriptors.output.number()};
    cmsghdr* const rights = CMSG_FIRSTHDR(&message.header);
    rights->cmsg_level = SOL_SOCKET;
    rights->cmsg_type = SCM_RIGHTS;
    rights->cmsg_len = CMSG_LEN(sizeof numbers);
    std::memcpy(CMSG_DATA(rights), numbers, sizeof numbers);
    const bool sent = sendmsg(control_.number(), &message.header, MSG_NOSIGNAL | MSG_DONTWAIT) >= 0;
    return sent ? 0 : errno;
}

} // namespace simulated_target
