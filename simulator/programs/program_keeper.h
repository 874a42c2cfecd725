// The process that keeps one program: it starts it, is told what to do with it, and kills it with all that it has started
// when nobody is there any more to tell it. Linux only.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include <sched.h>
#include <sys/types.h>

#include "platform/xdr.h"
#include "simulator/descriptor.h"

namespace simulated_target {

/// What is to be started. Travels as XDR.
struct KeeperStart {
    std::string file{}; // in the folder; the first argument as well
    std::vector<std::string> arguments{};
    std::vector<std::string> environment{};
    std::vector<std::uint32_t> cpus{}; // on which it may run, by the system's numbers
};
bool xdr_record(Xdr& x, KeeperStart& start);

struct KeeperDescriptors {
    Descriptor socket{}; // SOCK_SEQPACKET: takes orders, sends reports; its other end is the one who is there
    Descriptor folder{}; // in which the program works
    Descriptor output{}; // to which it prints
};

struct KeeperTimes {
    std::chrono::milliseconds step;
    std::chrono::milliseconds grace;
};

/// To and from a keeper, as they lie in memory: both sides are one program.
struct KeeperOrder {
    enum class Kind : std::uint32_t { goOn, pause, step, stop, kill, crash, bind };
    Kind kind{};
    cpu_set_t cpus{}; // to bind to
};
struct KeeperReport {
    enum class Kind : std::uint32_t { started, notStarted, done, ended };
    enum class Obstacle : std::uint32_t { fork, folder, cores, execution };
    Kind kind{};
    Obstacle obstacle{};                // of notStarted, with
    std::int32_t error{};               // errno
    std::int32_t waitStatus{};          // of ended, as waitpid tells it
    pid_t program{};                    // of started
    pid_t keeper{};                     // likewise
    std::int64_t cpuTimeMicroseconds{}; // of ended
};

/// Does not throw; when it cannot be sent nobody is there.
void sendReport(const Descriptor& socket, const KeeperReport& report) noexcept;

cpu_set_t cpuSetOf(const std::vector<std::uint32_t>& cpus) noexcept;

/// What this process is from now on. It has one thread, and leads a session without a terminal.
[[noreturn]] void keepProgram(const KeeperStart& start, KeeperDescriptors descriptors, const KeeperTimes& times);

/// Blocks SIGCHLD. Result: a descriptor that can be read when a child has changed its state.
Descriptor watchChildren() noexcept;

/// Takes what can be read there.
void forgetNews(const Descriptor& children) noexcept;

} // namespace simulated_target
