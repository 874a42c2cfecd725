// The registered message tables, and the texts of messages and arguments.
#pragma once

#include <cstddef>
#include <string>

#include "error_lists/error_list_access.h"

namespace message_tables {

/// False when the table is none, or there is no memory to remember it.
bool add(const KvResText& table) noexcept;

/// False when no such table is registered.
bool remove(const KvResText& table) noexcept;

/// The message of an entry, with the arguments in place of %1 to %5. Throws std::bad_alloc.
std::string render(const KvErrorListEntry& entry);

/// An argument as a message shows it. `index` is below the number of arguments. Throws std::bad_alloc.
std::string argumentText(const KvErrorListEntry& entry, std::size_t index);

} // namespace message_tables
