// The way through a directory tree. It lies on the heap, so that the depth of a tree is no matter of stack size. Each level
// keeps its directory open until it is left, by which a link back to one is found.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/host_system.h"

namespace applman {

class DirectoryWalk {
public:
    /// Goes into a directory. False when it cannot be enumerated; nor can one that is on the way here already, to which
    /// a link led back.
    [[nodiscard]] bool enter(std::u16string directory);

    /// Goes back to the directory from which the innermost one was entered.
    void leave() { way_.pop_back(); }

    bool ended() const { return way_.empty(); }

    /// The innermost directory, its next entry, and why there was none.
    const std::u16string& directory() const { return way_.back().path; }
    std::optional<host_system::DirectoryEntry> next() { return way_.back().entries.next(); }
    std::uint32_t lastError() const { return way_.back().entries.lastError(); }

    /// The path of an entry of the innermost directory, as it is joined.
    std::u16string pathOf(const host_system::DirectoryEntry& entry) const { return directory() + u'\\' + entry.name; }

private:
    struct Level {
        std::u16string path;
        host_system::DirectoryEnumeration entries;
    };

    bool passed(const host_system::DirectoryIdentity& identity) const;

    std::vector<Level> way_;
};

inline bool isDirectory(const host_system::DirectoryEntry& entry) {
    return (entry.attributes & host_system::kDirectoryAttribute) != 0;
}

/// "." or "..".
inline bool isSelfOrParent(const host_system::DirectoryEntry& entry) {
    return entry.name == u"." || entry.name == u"..";
}

} // namespace applman
