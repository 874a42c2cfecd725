// A target marks a parameter that it does not know with a code of its own; some such refusals are tolerated.
#pragma once

#include <cstdint>

#include "platform/error_lists.h"

namespace applman {

/// True when any entry of the pool, also one from before the request, has the target's code for such a parameter.
bool hasUnsupportedParamCode(const KvCErrorListPool& pool);

/// Turns the refusal of a parameter that a target may do without into 0 and empties the whole pool, when the target has
/// said that it does not know the parameter.
void acceptUnsupportedParamResult(KvCErrorListPool& pool, std::int32_t& result, std::uint32_t applId,
                                  std::uint32_t targetParamId);

} // namespace applman
