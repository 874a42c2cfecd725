// The error-handling library's own view of a list: entries with typed arguments, serialising.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/error_lists.h"

/// Of %s, %u or %x, %d. A text is never absent; that it could be makes copies safe for which there is no memory: of a
/// variant with a plain std::string, GCC 12's library would destroy what was never made.
using KvErrorListArgument = std::variant<std::optional<std::string>, std::uint32_t, std::int32_t>;

struct KvErrorListEntry {
    std::uint32_t code{};
    std::uint32_t line{};
    std::string operation{};
    std::optional<std::string> signature{}; // none when there are no arguments
    std::vector<KvErrorListArgument> arguments{};
};

struct KvErrorListAccess {
    KVPLATFORM_API static std::vector<KvErrorListEntry> entries(const KvCErrorList& list);

    /// The bytes that KvCErrorList::deSerialize reads: entry count, then per entry code, line, operation, signature
    /// (empty when none) and the arguments in signature order; all in XDR.
    KVPLATFORM_API static std::vector<std::uint8_t> serialize(const std::vector<KvErrorListEntry>& entries);

    /// What a list consists of (error_list_state.h), for this library only. Null when there was no memory for it.
    static KvCErrorList::State* state(const KvCErrorList& list) noexcept { return list.state_; }
};
