// Copying a typed value of the target into a caller's buffer.
#pragma once

#include <cstdint>

#include "frame/status.h"
#include "platform/error_lists.h"
#include "protocol/records.h"

namespace applman {

/// Copies the value of a reply as its parameter number asks, never beyond `size` bytes. Negated texts are restored in
/// the reply itself. `size` is set as the exported functions tell.
Status decodeParameterReturnValue(KvCErrorListPool& pool, std::uint32_t targetParamId, TApplManValueResult& reply,
                                  void* buffer, std::int32_t* size);

/// Writes IPv4 addresses (as they lie in memory in network order) as dotted texts with ";" between them; 0 writes nothing.
/// `size` becomes the bytes of the text with its terminating zero, also when it does not fit.
Status KvApplMan_decodeIpAddresses(KvCErrorListPool& pool, const std::uint32_t* addresses, std::uint32_t count,
                                   void* buffer, std::int32_t* size);

} // namespace applman
