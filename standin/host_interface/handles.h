// Handles: opaque values that are looked up and never followed, so that one that names nothing does no harm.
#pragma once

#include <functional>
#include <map>

namespace host_interface {

/// A value that no other handle of this process has or had, of whatever kind.
void* newHandle() noexcept;

/// What the handles of one kind name. Objects stay where they are until they are erased.
template <class Object>
using HandleTable = std::map<void*, Object, std::less<>>;

/// The object that a handle names, or null.
template <class Object>
Object* find(HandleTable<Object>& table, void* handle) noexcept {
    const auto found = table.find(handle);
    return found == table.end() ? nullptr : &found->second;
}

} // namespace host_interface
