// Everything is done through descriptors, from the root's down and name by name, with O_NOFOLLOW: a link is never followed,
// not even one that is put there meanwhile. The root's descriptor bears the lock on the folder, so it goes when the process
// does, however that ends.
// A staged file is brought to the disk, renamed, and the directory brought to the disk, in this order: at every moment the
// final name shows the old file or the whole new one. Whoever staged it removes it unless it was committed; what a killed
// target has left is swept when the store is opened, behind the lock. The system makes renames and removals safe between
// threads, so there is no lock of ours; of two commits to one name the later stays.
// Only opening throws (and a lack of memory); after a failure errno tells why.
#include "simulator/store.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <optional>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "simulator/descriptor.h"

namespace simulated_target {
namespace {

constexpr int kDirectoryFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
constexpr mode_t kDirectoryMode = 0755;
constexpr mode_t kFileMode = 0644;

/// Makes a directory, so that it is on the disk when a file in it is.
bool makeDirectoryAt(const Descriptor& parent, const std::string& name) noexcept {
    if (mkdirat(parent.number(), name.c_str(), kDirectoryMode) == 0) { return fsync(parent.number()) == 0; }
    return errno == EEXIST;
}

enum class Missing { fails, isMade };

Descriptor openDirectoryAt(const Descriptor& parent, const std::string& name) noexcept {
    return Descriptor{openat(parent.number(), name.c_str(), kDirectoryFlags)};
}

/// The whole way in one step. None also where the system knows no such step, or may not take it.
Descriptor openWay(const Descriptor& root, const StorePath& path) {
    std::string way = ".";
    for (const std::string& name : path) {
        way += '/' + name;
    }
    open_how how{};
    how.flags = kDirectoryFlags;
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS;
    return Descriptor{static_cast<int>(syscall(SYS_openat2, root.number(), way.c_str(), &how, sizeof how))};
}

/// Walks name by name where one step does not do. Either way no link is followed, wherever it stands and whenever it was
/// put there.
Descriptor openDirectory(const Descriptor& root, const StorePath& path, Missing missing) {
    Descriptor directory = openWay(root, path);
    if (directory.valid()) { return directory; }
    directory = openDirectoryAt(root, ".");
    for (const std::string& name : path) {
        if (!directory.valid()) { break; }
        if (missing == Missing::isMade && !makeDirectoryAt(directory, name)) { return Descriptor{}; }
        directory = openDirectoryAt(directory, name);
    }
    return directory;
}

struct CloseListing {
    void operator()(DIR* listing) const noexcept { closedir(listing); }
};

/// The names in a directory but "." and "..".
std::optional<std::vector<std::string>> namesIn(const Descriptor& directory) {
    const int listed = openat(directory.number(), ".", kDirectoryFlags);
    const std::unique_ptr<DIR, CloseListing> listing{fdopendir(listed)};
    if (!listing) {
        const Descriptor closed{listed};
        return {};
    }
    std::vector<std::string> names;
    while (const dirent* const entry = readdir(listing.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") { names.emplace_back(name); }
    }
    return names;
}

/// Each level holds a descriptor, so a tree that is too deep for them is a failure like any other.
bool removeAt(const Descriptor& parent, const std::string& name) {
    if (unlinkat(parent.number(), name.c_str(), 0) == 0 || errno == ENOENT) { return true; }
    const Descriptor directory{openat(parent.number(), name.c_str(), kDirectoryFlags)};
    if (!directory.valid()) { return false; }
    const auto names = namesIn(directory);
    const bool emptied = names && std::all_of(names->begin(), names->end(),
                                              [&](const std::string& child) { return removeAt(directory, child); });
    return emptied && unlinkat(parent.number(), name.c_str(), AT_REMOVEDIR) == 0;
}

} // namespace

struct StagedFile::State {
    Descriptor directory;
    Descriptor file;
    std::string stageName;
    std::string finalName;
    bool committed = false;
};

StagedFile::StagedFile(std::unique_ptr<State> state) noexcept : state_(std::move(state)) {}

StagedFile::~StagedFile() {
    if (!state_->committed) { unlinkat(state_->directory.number(), state_->stageName.c_str(), 0); }
}

bool StagedFile::append(std::span<const std::uint8_t> bytes) noexcept {
    while (!bytes.empty()) {
        const ssize_t written = write(state_->file.number(), bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) { continue; }
        if (written <= 0) { return false; }
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

bool StagedFile::commit() noexcept {
    State& s = *state_;
    if (fsync(s.file.number()) != 0) { return false; }
    const int directory = s.directory.number();
    s.committed = renameat(directory, s.stageName.c_str(), directory, s.finalName.c_str()) == 0;
    return s.committed && fsync(directory) == 0;
}

struct Store::State {
    Descriptor root; // bears the lock
};

Store::Store(const std::filesystem::path& root) {
    std::filesystem::create_directories(root);
    Descriptor opened{open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    if (!opened.valid()) { throw std::system_error{errno, std::generic_category(), "it cannot be opened"}; }
    if (flock(opened.number(), LOCK_EX | LOCK_NB) != 0) {
        const char* const why = errno == EWOULDBLOCK ? kUsedByAnother : "it cannot be locked";
        throw std::system_error{errno, std::generic_category(), why};
    }
    sweepStagedFiles(root);
    state_ = std::make_unique<State>(State{std::move(opened)});
    if (!stage({}, kProbe)) { throw std::system_error{errno, std::generic_category(), kNotWritable}; }
}

Store::~Store() = default;

std::unique_ptr<StagedFile> Store::stage(const StorePath& directory, const std::string& name) const {
    Descriptor opened = openDirectory(state_->root, directory, Missing::isMade);
    if (!opened.valid()) { return nullptr; }
    std::string stageName;
    Descriptor file;
    do {
        stageName = nextStageName();
        constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
        file = Descriptor{openat(opened.number(), stageName.c_str(), kFlags, kFileMode)};
    } while (!file.valid() && errno == EEXIST); // another target's
    if (!file.valid()) { return nullptr; }
    return std::make_unique<StagedFile>(
        std::make_unique<StagedFile::State>(StagedFile::State{std::move(opened), std::move(file), stageName, name}));
}

bool Store::makeDirectory(const StorePath& directory) const {
    return openDirectory(state_->root, directory, Missing::isMade).valid();
}

bool Store::remove(const StorePath& directory, const std::string& name) const {
    const Descriptor opened = openDirectory(state_->root, directory, Missing::fails);
    return opened.valid() ? removeAt(opened, name) : errno == ENOENT;
}

bool Store::holdsFile(const StorePath& directory, const std::string& name) const {
    const Descriptor opened = openDirectory(state_->root, directory, Missing::fails);
    struct stat status {};
    return opened.valid() && fstatat(opened.number(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISREG(status.st_mode);
}

std::vector<std::string> Store::directoriesIn(const StorePath& directory) const {
    const Descriptor opened = openDirectory(state_->root, directory, Missing::fails);
    if (!opened.valid()) { return {}; }
    std::vector<std::string> names;
    for (std::string& name : namesIn(opened).value_or(std::vector<std::string>{})) {
        struct stat status {};
        const bool isDirectory =
            fstatat(opened.number(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode);
        if (isDirectory && isStoreName(name)) { names.push_back(std::move(name)); }
    }
    return names;
}

Descriptor Store::descriptorOf(const StorePath& directory) const {
    return openDirectory(state_->root, directory, Missing::fails);
}

} // namespace simulated_target
