#include "progress_line.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <string_view>

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

constexpr std::size_t kLongestName = 28; // bytes, so that the line fits a terminal
constexpr const char* kClearToEnd = "\033[K";

bool standardOutputIsTerminal() {
#if defined(_WIN32)
    return _isatty(_fileno(stdout)) != 0;
#else
    return isatty(STDOUT_FILENO) == 1;
#endif
}

bool continuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xc0) == 0x80; }

std::string shortened(std::string_view name) {
    if (name.size() <= kLongestName) return std::string(name);
    std::size_t end = kLongestName;
    while (end > 0 && continuesCharacter(name[end]))
        --end;
    return std::string(name.substr(0, end)) + "...";
}

std::string bar(double fraction) {
    constexpr std::size_t kWidth = 12;
    const auto done = static_cast<std::size_t>(fraction * kWidth);
    return '[' + std::string(done, '#') + std::string(kWidth - done, ' ') + ']';
}

std::string percent(double fraction) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%5.1f %%", fraction * 100.0);
    return text.data();
}

int tenthOf(double fraction) { return static_cast<int>(fraction * 10.0); }

} // namespace

ProgressLine::ProgressLine() : terminal_(standardOutputIsTerminal()) {}

ProgressLine::~ProgressLine() { end(); }

void ProgressLine::show(const kvapplman::Progress& progress) {
    if (progress.fileName.empty()) return;

    const std::string heading = "  phase " + std::to_string(progress.phase) + " of " +
                                std::to_string(progress.phaseCount) + " " + std::string(progress.phaseName) + "  " +
                                shortened(progress.fileName);
    if (heading != heading_) endLine();
    heading_ = heading;
    fraction_ = progress.fraction;
    if (terminal_ || tenthOf(fraction_) > printedTenth_) print(fraction_);
}

void ProgressLine::complete() {
    fraction_ = 1.0;
    const bool shown = !terminal_ && printedTenth_ == tenthOf(fraction_);
    if (shown) heading_.clear();
    end();
}

void ProgressLine::end() {
    if (!heading_.empty()) print(fraction_);
    endLine();
    heading_.clear();
}

void ProgressLine::endLine() {
    if (!terminal_ || line_.empty()) return;
    std::puts("");
    line_.clear();
}

void ProgressLine::print(double fraction) {
    const std::string line = heading_ + "  " + (terminal_ ? bar(fraction) + " " : "") + percent(fraction);
    if (line == line_) return;
    if (terminal_) std::printf("\r%s%s", line.c_str(), kClearToEnd);
    else std::puts(line.c_str());
    std::fflush(stdout);
    line_ = line;
    printedTenth_ = tenthOf(fraction);
}
