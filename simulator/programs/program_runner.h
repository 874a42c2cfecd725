// Running the programs that hosts load: what the application manager needs for it. There is a runner for Linux only; a
// target without one only stores what is loaded.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simulated_target {

class Store;

struct RunOptions {
    bool run = false;
    bool asRoot = false;
    std::chrono::milliseconds step{10};    // for which a step lets a program run, at least
    std::chrono::milliseconds grace{2000}; // from the request to end until it is killed
    std::uint32_t mostPrograms = 32;       // at once
    std::uint32_t logSize = 1024;          // of one program's log, in KiB
};

/// A line that a program has printed, or what became of it. Called by a thread of the runner; must not throw.
enum class ProgramNews : std::uint8_t { output, event };
using ProgramSink = std::function<void(std::uint32_t applId, ProgramNews news, std::string_view line)>;

struct ProgramStart {
    std::uint32_t applId = 0;
    std::string directory{};                // in the store, where the file lies and the program works
    std::string name{};                     // of the file
    std::vector<std::string> arguments{};   // behind the name
    std::vector<std::string> environment{}; // all of it, NAME=VALUE
    std::vector<std::uint32_t> cores{};     // from 1; none = all
};

enum class ProgramOrder : std::uint8_t { goOn, pause, step, stop, kill };

struct ProgramStatus {
    bool busy = false;                       // the start, or the last order, is not yet carried out
    std::optional<std::string> notStarted{}; // why
    std::optional<std::string> end{};        // of one that has ended: "exit code 3", "signal 11 (SEGV)"
    bool endWasOrdered = false;
    std::int32_t pid = 0; // 0 while it is being started
};

struct ProgramUsage {
    std::vector<std::uint32_t> cores{};  // on which it may run
    std::chrono::microseconds cpuTime{}; // of the program and of what it has started
};

/// A program that was started. May be used by several threads at once.
class Program {
public:
    virtual ~Program() = default; // has it killed, with all that it has started

    /// Returns at once. Only `kill` may be ordered while the program is busy.
    virtual void order(ProgramOrder order) = 0;
    /// Kills the program alone, as if somebody else did it.
    virtual void crash() = 0;
    virtual void bindTo(const std::vector<std::uint32_t>& cores) = 0;
    virtual ProgramStatus status() const = 0;
    virtual ProgramUsage usage() const = 0; // asks the system
};

/// May be used by several threads at once.
class ProgramRunner {
public:
    virtual ~ProgramRunner() = default; // waits until none of its programs lives

    /// Throws std::system_error when nothing in the store can be executed.
    virtual void examine(const Store& store) const = 0;

    /// Why a file in the store is no program. What is one is made executable.
    virtual std::optional<std::string> refusalOf(const Store& store, const std::string& directory,
                                                 const std::string& name) const = 0;

    /// Returns at once; the status tells how the start went.
    virtual std::shared_ptr<Program> start(const Store& store, const ProgramStart& start) = 0;

    /// Those of this machine that programs may use; they are numbered from 1.
    virtual std::uint32_t coreCount() const = 0;
};

/// Why programs cannot be run here and now, to be shown to the user; none when they can.
std::optional<std::string> whyNotRun(const RunOptions& options);

/// To be called while the process has one thread. Throws std::system_error.
std::shared_ptr<ProgramRunner> makeProgramRunner(const RunOptions& options, ProgramSink sink);

/// "process 1| LINE" what it prints, "process 1: LINE" what became of it.
std::string newsText(std::uint32_t applId, ProgramNews news, std::string_view line);

/// Writes that to standard error.
void printProgramNews(std::uint32_t applId, ProgramNews news, std::string_view line);

} // namespace simulated_target
