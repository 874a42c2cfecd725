// Copying a typed value of the target into a caller's buffer.
#pragma once

#include <cstdint>
#include <cstring>

#include "frame/status.h"
#include "platform/error_lists.h"
#include "protocol/records.h"

namespace applman {

/// Where a caller wants a value. What fits is decided by the size before the call: the caller may change it meanwhile, or
/// keep it in the buffer itself.
struct CallerBuffer {
    CallerBuffer(void* buffer, std::int32_t* inOutSize)
        : bytes(buffer), size(inOutSize), capacity(inOutSize == nullptr ? 0 : *inOutSize) {}

    bool isMissing() const { return capacity >= 1 && bytes == nullptr; }
    void clear() const {
        if (capacity > 0) { std::memset(bytes, 0, static_cast<std::size_t>(capacity)); }
    }

    void* bytes;
    std::int32_t* size;    // only written from here on
    std::int32_t capacity; // bytes; a negative one holds nothing
};

/// Copies the value of a reply as its parameter number asks, never beyond the capacity. Negated texts are restored in
/// the reply itself. The size is set as the exported functions tell.
Status decodeParameterReturnValue(KvCErrorListPool& pool, std::uint32_t targetParamId, TApplManValueResult& reply,
                                  const CallerBuffer& to);

/// Writes IPv4 addresses (as they lie in memory in network order) as dotted texts with ";" between them; 0 writes nothing.
/// The size becomes the bytes of the text with its terminating zero, also when it does not fit.
Status KvApplMan_decodeIpAddresses(KvCErrorListPool& pool, const std::uint32_t* addresses, std::uint32_t count,
                                   const CallerBuffer& to);

} // namespace applman
