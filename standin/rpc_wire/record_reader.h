// Puts records together out of the fragments of a TCP stream (record marking).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "rpc_wire/socket.h"

namespace kvrpc {

inline constexpr std::size_t kMarkSize = 4;                 // in front of every fragment
inline constexpr std::uint32_t kLastFragment = 0x80000000U; // flag in a mark, beside the fragment's length
inline constexpr std::size_t kLargestRecord = 256U << 20;   // bytes

class RecordReader {
public:
    enum class Outcome : std::uint8_t { record, timedOut, ended, failed, malformed };

    /// Memory grows with what arrives only, never with what a mark announces. A record beyond `limit` is malformed.
    explicit RecordReader(std::size_t limit) noexcept : limit_(limit) {}

    /// The next whole record. After `timedOut` a later call goes on where this one stopped; after `ended`, `failed` and
    /// `malformed` the stream is of no more use. Throws std::bad_alloc, then it is of no more use either.
    /// The memory that `record` has is used.
    Outcome read(const Socket& socket, Deadline deadline, std::vector<std::uint8_t>& record);

    /// The same of what was received already: `timedOut` when there is no whole record in it.
    Outcome take(std::vector<std::uint8_t>& record);

    /// A record has begun and is not whole.
    bool midRecord() const noexcept { return markBytes_ > 0 || emptyFragments_ > 0 || !record_.empty(); }

    /// Another record has been received already, whole and in one fragment.
    bool holdsRecord() const noexcept;

private:
    enum class Progress : std::uint8_t { partial, whole, malformed };
    Progress consume();

    std::size_t limit_;
    std::array<std::uint8_t, 65536> buffer_;
    std::size_t begin_ = 0; // of what is received and not consumed
    std::size_t end_ = 0;
    std::vector<std::uint8_t> record_{};
    std::uint32_t mark_ = 0;
    std::size_t markBytes_ = 0;
    std::uint32_t fragmentLeft_ = 0;
    std::uint32_t emptyFragments_ = 0;
};

} // namespace kvrpc
