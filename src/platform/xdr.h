// XDR (RFC 4506): a cursor that encodes or decodes, and the primitives that record routines call field by field.
// A primitive returns false when the bytes end, a length cannot be, or a value is not allowed; the cursor then stops.
// A cursor that frees is for whole records only: it has no bytes, so the primitives return false.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <vector>

class Xdr {
public:
    static Xdr encoder(std::vector<std::uint8_t>& sink) { return Xdr{Op::encode, &sink, {}}; }
    static Xdr decoder(std::span<const std::uint8_t> source) { return Xdr{Op::decode, nullptr, source}; }
    static Xdr freer() { return Xdr{Op::free, nullptr, {}}; }

    bool encoding() const { return op_ == Op::encode; }
    bool decoding() const { return op_ == Op::decode; }
    bool freeing() const { return op_ == Op::free; }

    /// Bytes not yet decoded.
    std::size_t left() const { return source_.size(); }

    /// Takes `count` bytes off the source, or null when fewer are left.
    const std::uint8_t* take(std::size_t count) {
        if (count > source_.size()) { return nullptr; }
        const std::uint8_t* const bytes = source_.data();
        source_ = source_.subspan(count);
        return bytes;
    }

    void put(const void* bytes, std::size_t count) {
        const auto* const first = static_cast<const std::uint8_t*>(bytes);
        sink_->insert(sink_->end(), first, first + count);
    }

    /// Puts zeros, which the caller may set: they stand where the result tells until something else is put.
    std::uint8_t* putZeros(std::size_t count) {
        if (count > room()) { return putZerosMoving(count); }
        sink_->insert(sink_->end(), count, 0);
        return sink_->data() + sink_->size() - count;
    }

    /// Has room for a block before its parts are put.
    void reserve(std::size_t count) {
        if (count > room()) { makeRoom(count); }
    }

private:
    enum class Op { encode, decode, free };
    Xdr(Op op, std::vector<std::uint8_t>* sink, std::span<const std::uint8_t> source)
        : op_(op), sink_(sink), source_(source) {}

    /// What the sink takes without moving. Written as the vector itself asks it, so that the compiler sees that an
    /// insertion behind this question moves nothing, and leaves the moving out of every primitive.
    std::size_t room() const {
        const std::uint8_t* const limit = sink_->data() + sink_->capacity();
        return static_cast<std::size_t>(limit - (sink_->data() + sink_->size()));
    }

    [[gnu::noinline]] std::uint8_t* putZerosMoving(std::size_t count) {
        makeRoom(count);
        return putZeros(count);
    }

    /// A little more than asked for, so that what follows a large block does not move it again.
    [[gnu::noinline]] void makeRoom(std::size_t count) {
        constexpr std::size_t kMore = 64;
        sink_->reserve(std::max(2 * sink_->size(), sink_->size() + count + kMore));
    }

    Op op_;
    std::vector<std::uint8_t>* sink_;
    std::span<const std::uint8_t> source_;
};

/// A whole record's routine, as the RPC client takes it: encodes, decodes or frees the record. It must not throw.
using XdrRoutine = bool (*)(Xdr& xdr, void* record);

/// A word with its bytes in the order of the wire, and back.
constexpr std::uint32_t xdr_swapped(std::uint32_t word) {
    if constexpr (std::endian::native == std::endian::big) { return word; }
    return word >> 24 | (word >> 8 & 0xFF00U) | (word << 8 & 0xFF0000U) | word << 24;
}

/// A word from and to its 4 bytes on the wire.
inline std::uint32_t xdr_word_at(const std::uint8_t* bytes) {
    std::uint32_t word;
    std::memcpy(&word, bytes, 4);
    return xdr_swapped(word);
}
inline void xdr_set_word_at(std::uint8_t* bytes, std::uint32_t word) {
    word = xdr_swapped(word);
    std::memcpy(bytes, &word, 4);
}

/// Words one after the other, moved as one block: all of them or none.
template <class... Words>
bool xdr_words(Xdr& x, Words&... words) {
    constexpr std::size_t kBytes = 4 * sizeof...(words);
    if (x.encoding()) {
        std::uint8_t* to = x.putZeros(kBytes);
        ((xdr_set_word_at(to, words), to += 4), ...);
        return true;
    }
    const std::uint8_t* from = x.take(kBytes);
    if (from == nullptr) { return false; }
    ((words = xdr_word_at(from), from += 4), ...);
    return true;
}

inline bool xdr_u_int(Xdr& x, std::uint32_t& value) { return xdr_words(x, value); }

inline bool xdr_int(Xdr& x, std::int32_t& value) {
    auto bits = static_cast<std::uint32_t>(value);
    const bool done = xdr_u_int(x, bits);
    value = static_cast<std::int32_t>(bits);
    return done;
}

inline bool xdr_enum(Xdr& x, std::int32_t& value) { return xdr_int(x, value); }

/// One character, as a 4-byte integer.
inline bool xdr_char(Xdr& x, char& value) {
    auto wide = static_cast<std::int32_t>(value);
    const bool done = xdr_int(x, wide);
    value = static_cast<char>(wide);
    return done;
}

inline bool xdr_u_quad_t(Xdr& x, std::uint64_t& value) {
    auto high = static_cast<std::uint32_t>(value >> 32);
    auto low = static_cast<std::uint32_t>(value);
    if (!xdr_words(x, high, low)) { return false; }
    value = std::uint64_t{high} << 32 | low;
    return true;
}

inline bool xdr_quad_t(Xdr& x, std::int64_t& value) {
    auto bits = static_cast<std::uint64_t>(value);
    const bool done = xdr_u_quad_t(x, bits);
    value = static_cast<std::int64_t>(bits);
    return done;
}

inline bool xdr_double(Xdr& x, double& value) {
    auto bits = std::bit_cast<std::uint64_t>(value);
    const bool done = xdr_u_quad_t(x, bits);
    value = std::bit_cast<double>(bits);
    return done;
}

/// A length and that many bytes, padded with zeros to a multiple of 4; padding of any value is accepted.
template <class Bytes>
bool xdr_counted_bytes(Xdr& x, Bytes& value) {
    if (x.encoding() && value.size() > 0xFFFFFFFFU) { return false; }
    auto length = static_cast<std::uint32_t>(value.size());
    if (x.encoding()) { x.reserve(4 + value.size() + 3); }
    if (!xdr_u_int(x, length)) { return false; }
    const std::size_t padding = (4 - length % 4) % 4;
    if (x.encoding()) {
        x.put(value.data(), length);
        if (padding != 0) { x.putZeros(padding); }
        return true;
    }
    if (std::uint64_t{length} + padding > x.left()) { return false; }
    using Element = typename Bytes::value_type; // a text takes in characters faster than bytes
    const auto* const bytes = reinterpret_cast<const Element*>(x.take(length));
    value.assign(bytes, bytes + length);
    return x.take(padding) != nullptr;
}

inline bool xdr_string(Xdr& x, std::string& value) { return xdr_counted_bytes(x, value); }
inline bool xdr_bytes(Xdr& x, std::vector<std::uint8_t>& value) { return xdr_counted_bytes(x, value); }

/// A text that may be absent in the record. Encoded it is the empty text; what was decoded is never absent.
inline bool xdr_string(Xdr& x, std::optional<std::string>& value) {
    if (x.encoding() && !value) {
        std::string empty;
        return xdr_string(x, empty);
    }
    if (!value) { value.emplace(); }
    return xdr_string(x, *value);
}

/// A count and that many elements of `least` bytes or more. A count is never believed beyond what the bytes left could
/// hold.
template <class Element, class Routine>
bool xdr_array(Xdr& x, std::vector<Element>& values, Routine element, std::size_t least = 4) {
    if (x.encoding() && values.size() > 0xFFFFFFFFU) { return false; }
    auto count = static_cast<std::uint32_t>(values.size());
    if (!xdr_u_int(x, count)) { return false; }
    if (x.decoding()) {
        if (count > x.left() / least) { return false; }
        values.clear();
        values.resize(count);
    }
    for (Element& value : values) {
        if (!element(x, value)) { return false; }
    }
    return true;
}

/// An array of words, moved as one block.
inline bool xdr_array(Xdr& x, std::vector<std::uint32_t>& words) {
    if (x.encoding() && words.size() > 0xFFFFFFFFU) { return false; }
    auto count = static_cast<std::uint32_t>(words.size());
    if (!xdr_u_int(x, count)) { return false; }
    if (x.encoding()) {
        std::uint8_t* to = x.putZeros(4 * words.size());
        for (const std::uint32_t word : words) {
            xdr_set_word_at(to, word);
            to += 4;
        }
        return true;
    }
    if (count > x.left() / 4) { return false; }
    const std::uint8_t* from = x.take(std::size_t{4} * count);
    words.resize(count);
    for (std::uint32_t& word : words) {
        word = xdr_word_at(from);
        from += 4;
    }
    return true;
}

/// A fixed number of elements, no count.
template <class Elements, class Routine>
bool xdr_vector(Xdr& x, Elements& values, Routine element) {
    for (auto& value : values) {
        if (!element(x, value)) { return false; }
    }
    return true;
}

/// A flag, and the record when it is present.
template <class Record, class Routine>
bool xdr_pointer(Xdr& x, std::optional<Record>& value, Routine record) {
    std::uint32_t present = value ? 1U : 0U;
    if (!xdr_u_int(x, present) || present > 1) { return false; }
    if (present == 0) {
        value.reset();
        return true;
    }
    if (!value) { value.emplace(); }
    return record(x, *value);
}
