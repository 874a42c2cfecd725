// Where the fields of a reply lie, and replies that refuse: for a target that misbehaves on purpose.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "rpc_wire/rpc_message.h"

namespace simulated_target {

enum class ReplyField : std::uint8_t { text, bytes, array, tag, errorList, result };

/// The offset in a reply's results of the first such field: of its length, its count or its tag. None when the reply has
/// no such field, or is not what the procedure replies.
std::optional<std::size_t> findField(std::uint32_t program, std::uint32_t procedure, kvrpc::ByteSpan results,
                                     ReplyField wanted);

/// The results with which a procedure refuses: result -1, this error list, and nothing else. Empty for a procedure that
/// does not exist.
std::vector<std::uint8_t> refusalResults(std::uint32_t program, std::uint32_t procedure,
                                         std::vector<std::uint8_t> errorList);

} // namespace simulated_target
