#include "simulator/programs/program_output.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>

namespace simulated_target {
namespace {

constexpr std::size_t kLongestLine = 1000; // bytes

bool isControl(char letter) {
    constexpr char kDelete = 127;
    return (static_cast<unsigned char>(letter) < 0x20 && letter != '\t') || letter == kDelete;
}

} // namespace

ProgramLog::ProgramLog(Descriptor folder, std::uint64_t mostBytes)
    : folder_(std::move(folder)), most_(std::max<std::uint64_t>(mostBytes / 2, 1)) {
    turnOver();
}

void ProgramLog::turnOver() noexcept {
    constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    constexpr mode_t kMode = 0644;
    renameat(folder_.number(), kProgramLog, folder_.number(), kEarlierProgramLog);
    file_ = Descriptor{openat(folder_.number(), kProgramLog, kFlags, kMode)};
    size_ = 0;
}

void ProgramLog::append(std::string_view bytes) noexcept {
    while (!bytes.empty()) {
        if (size_ == most_) { turnOver(); }
        const std::size_t part = std::min<std::uint64_t>(bytes.size(), most_ - size_);
        const ssize_t written = write(file_.number(), bytes.data(), part);
        if (written < 0 && errno == EINTR) { continue; }
        if (written <= 0) { return; }
        size_ += static_cast<std::uint64_t>(written);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

void LineReader::append(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t end = bytes.find('\n');
        const std::size_t room = kLongestLine - line_.size();
        const std::size_t part = std::min({end, bytes.size(), room});
        line_ += bytes.substr(0, part);
        bytes.remove_prefix(part);
        const bool ended = !bytes.empty() && bytes.front() == '\n';
        if (ended) { bytes.remove_prefix(1); }
        if (ended || line_.size() == kLongestLine) { hand(std::exchange(line_, {})); }
    }
}

void LineReader::end() {
    if (!line_.empty()) { hand(std::exchange(line_, {})); }
}

void LineReader::hand(std::string_view part) {
    if (left_ == 0) { return; }
    std::string line{part.ends_with('\r') ? part.substr(0, part.size() - 1) : part};
    std::ranges::replace_if(line, isControl, '?');
    const bool last = line.size() + 1 >= left_;
    left_ -= last ? left_ : line.size() + 1;
    take_(line);
    if (last) { take_("(what follows stands in its log only)"); }
}

} // namespace simulated_target
