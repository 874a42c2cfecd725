// The bytes of one call, GET_PARAM, and of its replies, put together by hand (docs/protocol.md).
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "harness/answers.h"

namespace plain {

inline constexpr std::uint32_t kLastFragment = 0x80000000U;
inline constexpr std::size_t kMarkSize = 4;

inline void store(std::uint8_t* bytes, std::uint32_t value) {
    value = __builtin_bswap32(value);
    std::memcpy(bytes, &value, sizeof value);
}
inline std::uint32_t load(const std::uint8_t* bytes) {
    std::uint32_t value = 0;
    std::memcpy(&value, bytes, sizeof value);
    return __builtin_bswap32(value);
}

template <std::size_t kWords>
class Message {
public:
    static constexpr std::size_t kSize = 4 * kWords;

    explicit Message(const std::array<std::uint32_t, kWords>& words) {
        for (std::size_t i = 0; i < kWords; ++i) {
            set(i, words[i]);
        }
    }
    void set(std::size_t index, std::uint32_t value) { store(bytes_.data() + 4 * index, value); }
    std::span<const std::uint8_t> bytes() const { return bytes_; }

private:
    std::array<std::uint8_t, kSize> bytes_{};
};

constexpr std::uint32_t mark(std::size_t words) { return kLastFragment | static_cast<std::uint32_t>(4 * (words - 1)); }

/// Mark, xid, call, RPC version, program, version, procedure, credential, verifier; mode, access, application, parameter.
struct Request : Message<15> {
    Request() : Message({mark(15), 0, 0, 2, 0x20004B56, 2, 10, 0, 0, 0, 0, 1, 16, 0, 20}) {}
    void setXid(std::uint32_t xid) { set(1, xid); }
    void setApplication(std::uint32_t applId) { set(13, applId); }
};
inline constexpr std::size_t kApplicationAt = 4 * 13; // in a request

/// Mark, xid, reply, accepted, verifier, success; result, tag, word, no error list.
struct Reply : Message<11> {
    Reply(std::uint32_t xid, std::uint32_t value) : Message({mark(11), xid, 1, 0, 0, 0, 0, 0, 0, value, 0}) {}
};

/// With the accept status "system error".
struct Refusal : Message<7> {
    explicit Refusal(std::uint32_t xid) : Message({mark(7), xid, 1, 0, 0, 0, 5}) {}
};

/// What a reply, from its mark on, says to the call of an xid.
inline bench::Outcome readReply(const std::uint8_t* reply, std::uint32_t xid, std::uint32_t& value) {
    const bool whole = load(reply) == mark(11) && load(reply + 4) == xid && load(reply + 8) == 1 &&
                       load(reply + 12) == 0 && load(reply + 24) == 0 && load(reply + 28) == 0 && load(reply + 32) == 0;
    if (!whole) { return bench::Outcome::failed; }
    value = load(reply + 36);
    return bench::Outcome::value;
}

} // namespace plain
