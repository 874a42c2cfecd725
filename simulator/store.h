// A target's store: a folder of the machine that the target runs on. Nothing outside it is created, read or removed, and
// no symbolic link in it is followed.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "simulator/store_path.h"

namespace simulated_target {

class Descriptor;

/// A file that is being written beside its final name. Unless it was committed it is removed with this object.
class StagedFile {
public:
    struct State;
    explicit StagedFile(std::unique_ptr<State> state) noexcept;
    ~StagedFile();
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;

    bool append(std::span<const std::uint8_t> bytes) noexcept;

    /// Brings the bytes to the disk and gives the file its final name; a file of that name is replaced as a whole.
    bool commit() noexcept;

private:
    std::unique_ptr<State> state_;
};

/// May be used by several threads at once.
class Store {
public:
    /// Makes the folder if need be, locks it for as long as the store is open, and removes what broken transfers have
    /// left in it. Throws std::system_error when it cannot, when another store is open there, in whatever process, and
    /// when nothing can be written.
    explicit Store(const std::filesystem::path& root);
    ~Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    /// Begins a file; makes the directories that are missing. Null when the store cannot.
    std::unique_ptr<StagedFile> stage(const StorePath& directory, const std::string& name) const;

    /// Makes a directory and those above it. One that is there already is made.
    bool makeDirectory(const StorePath& directory) const;

    /// Removes a file, or a directory with all that is in it. One that is not there is removed.
    bool remove(const StorePath& directory, const std::string& name) const;

    bool holdsFile(const StorePath& directory, const std::string& name) const;

    /// The names of the directories in a directory; none when that is not there.
    std::vector<std::string> directoriesIn(const StorePath& directory) const;

    /// A directory, of an empty path the root; none when it is not there, as errno tells. POSIX only.
    Descriptor descriptorOf(const StorePath& directory) const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

// Why a store cannot be opened.
inline constexpr const char* kUsedByAnother = "another target uses it";
inline constexpr const char* kNotWritable = "nothing can be written there";

inline constexpr const char* kProbe = "probe"; // a name to begin a file with that is never committed

/// Removes the files below `root` that bear the stage prefix. For whoever has locked it: it cannot tell whose they are.
void sweepStagedFiles(const std::filesystem::path& root);

/// A name for a file that is being written, new in this process.
std::string nextStageName();

} // namespace simulated_target
