// The bytes of a serialised error list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string_view>

#include "error_lists/error_list_access.h"

namespace error_list_codec {

/// How many bytes of `signature` are whole conversions of %s, %u, %d, %x.
std::size_t knownLength(std::string_view signature) noexcept;

/// The entries of a serialised list; none when the bytes are not exactly one whole list. An entry that would bring the
/// memory of the result above 8 MiB is left out. Throws std::bad_alloc.
std::optional<std::deque<KvErrorListEntry>> decode(std::span<const std::uint8_t> bytes);

} // namespace error_list_codec
