// The application states: numbered one way by the target, another way at the exported functions.
#pragma once

#include <cstdint>

#include "platform/error_lists.h"

namespace applman {

/// What a state becomes that the other numbering does not know; a message is added then.
inline constexpr std::int32_t kUnknownState = -210;

std::int32_t getExternApplState(KvCErrorListPool& pool, std::uint32_t targetState);
std::int32_t getInternalApplState(KvCErrorListPool& pool, std::uint32_t externState);

} // namespace applman
