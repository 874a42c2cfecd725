#include "simulator/programs/program_file.h"

#include <algorithm>
#include <string_view>

namespace simulated_target {
namespace {

// An ELF file's head: magic bytes, class, byte order, 10 other bytes, type, machine.
constexpr std::string_view kMagic = "\177ELF";
constexpr std::size_t kClassOffset = 4;
constexpr std::size_t kFormatSize = 2; // class and byte order
constexpr std::size_t kTypeOffset = 16;
constexpr std::size_t kMachineOffset = 18;
constexpr int kExecutableFile = 2;
constexpr int kSharedObject = 3; // programs that may lie anywhere in memory are such

bool begins(std::span<const std::uint8_t> head, std::string_view text) {
    return head.size() >= text.size() && std::equal(text.begin(), text.end(), head.begin());
}

bool sameAt(std::span<const std::uint8_t> a, std::span<const std::uint8_t> b, std::size_t offset, std::size_t size) {
    return std::ranges::equal(a.subspan(offset, size), b.subspan(offset, size));
}

} // namespace

std::optional<std::string> whyNoProgram(std::span<const std::uint8_t> head, std::span<const std::uint8_t> own) {
    if (begins(head, "#!")) { return {}; }
    if (!begins(head, kMagic) || head.size() < kProgramHeadSize) {
        return "it is neither an ELF file nor begins with #!";
    }
    if (!sameAt(head, own, kClassOffset, kFormatSize) || !sameAt(head, own, kMachineOffset, 2)) {
        return "it is an ELF file for another machine";
    }
    const int type = head[kTypeOffset] + head[kTypeOffset + 1]; // one of the bytes is 0
    if (type != kExecutableFile && type != kSharedObject) { return "it is an ELF file, but no program"; }
    return {};
}

} // namespace simulated_target
