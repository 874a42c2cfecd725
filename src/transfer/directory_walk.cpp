#include "transfer/directory_walk.h"

#include <algorithm>
#include <utility>

namespace applman {

bool DirectoryWalk::passed(const host_system::DirectoryIdentity& identity) const {
    return std::any_of(way_.begin(), way_.end(),
                       [&](const Level& level) { return level.entries.identity() == identity; });
}

bool DirectoryWalk::enter(std::u16string directory) {
    host_system::DirectoryEnumeration entries{directory};
    if (!entries.opened() || (entries.identity() && passed(*entries.identity()))) { return false; }
    way_.push_back({std::move(directory), std::move(entries)});
    return true;
}

} // namespace applman
