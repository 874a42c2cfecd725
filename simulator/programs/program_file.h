// What the first bytes of a file tell of it: whether the system could execute it.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace simulated_target {

inline constexpr std::size_t kProgramHeadSize = 20; // bytes that tell

/// Why a file that begins like this is no program: neither an ELF file for the machine of `own`, which is the head of an
/// ELF file that runs here, nor a script that names its interpreter. None when it is one.
std::optional<std::string> whyNoProgram(std::span<const std::uint8_t> head, std::span<const std::uint8_t> own);

} // namespace simulated_target
