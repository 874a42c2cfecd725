// What a program prints: kept in log files of bounded size in its folder, and handed on line by line. Neither has a lock:
// the watch of the programs alone uses them. POSIX only.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "simulator/descriptor.h"

namespace simulated_target {

inline constexpr const char* kProgramLog = "output.log";
inline constexpr const char* kEarlierProgramLog = "output.old.log"; // what the log was when it was full, or at a start

/// The latest output, in two files that hold half of `mostBytes` each. What cannot be written is dropped. Whatever the
/// program puts under these names: each file is a new one.
class ProgramLog {
public:
    ProgramLog(Descriptor folder, std::uint64_t mostBytes);

    void append(std::string_view bytes) noexcept;

private:
    void turnOver() noexcept;

    Descriptor folder_;
    Descriptor file_{};
    const std::uint64_t most_; // of one file
    std::uint64_t size_ = 0;
};

/// Lines without their ends; control characters become question marks, and a long line becomes several. After `mostBytes`
/// of them there is a last one that says so.
class LineReader {
public:
    using Take = std::function<void(std::string_view line)>;
    LineReader(std::uint64_t mostBytes, Take take) : left_(mostBytes), take_(std::move(take)) {}

    void append(std::string_view bytes);
    void end(); // takes what has no end of line

private:
    void hand(std::string_view part);

    std::uint64_t left_;
    Take take_;
    std::string line_{};
};

} // namespace simulated_target
