// The RPC program of the command channel. Clients are given an address only, so its numbers belong to the platform.
#pragma once

#include <cstdint>

namespace applman {

inline constexpr std::uint32_t kApplManProgram = 0x20004B56;
inline constexpr std::uint32_t kApplManVersion = 2;

} // namespace applman
