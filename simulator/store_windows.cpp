// Everything is done by path, and each name on the way is looked at first: a link that is there is not followed, but one that
// is put there between the look and the use would be. The lock is the folder itself, opened in a way that the system grants
// once; it goes when the process does.
// A staged file is brought to the disk and closed before it is renamed, since an open one cannot be; renames wait for each
// other, since the system refuses one over a file that is just being replaced. Only opening throws (and a lack of memory).
#include "simulator/store.h"

#include <mutex>
#include <optional>
#include <system_error>
#include <utility>
#include <windows.h>

namespace simulated_target {
namespace {

using Path = std::filesystem::path;

struct HandleCloser {
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, HandleCloser>;

/// None when the text is not UTF-8.
std::optional<Path> toPath(const std::string& utf8) {
    try {
        return Path{std::u8string{utf8.begin(), utf8.end()}};
    } catch (const std::system_error&) { return {}; }
}

/// Whether the path is there and is no link of any kind.
bool is(const Path& path, bool directory) noexcept {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) { return false; }
    return ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) == directory;
}

enum class Missing { fails, isMade };

/// Walks name by name, so that no link is followed wherever it stands. None when the directory is not there.
std::optional<Path> findDirectory(const Path& root, const StorePath& path, Missing missing) {
    Path directory = root;
    for (const std::string& name : path) {
        const auto part = toPath(name);
        if (!part) { return {}; }
        directory /= *part;
        if (missing == Missing::isMade) { CreateDirectoryW(directory.c_str(), nullptr); }
        if (!is(directory, true)) { return {}; }
    }
    return directory;
}

std::system_error lastError(const char* what) {
    return {static_cast<int>(GetLastError()), std::system_category(), what};
}

/// Opens the folder itself in a way that the system grants once at a time. What is in it can be used as ever; only nothing
/// can be renamed into it, which a target does in folders below it alone.
Handle lockFolder(const Path& folder) {
    constexpr DWORD kFlags = FILE_FLAG_BACKUP_SEMANTICS; // since it is a folder
    const HANDLE opened =
        CreateFileW(folder.c_str(), FILE_ADD_FILE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, kFlags, nullptr);
    if (opened != INVALID_HANDLE_VALUE) { return Handle{opened}; }
    throw lastError(GetLastError() == ERROR_SHARING_VIOLATION ? kUsedByAnother : kNotWritable);
}

} // namespace

struct StagedFile::State {
    Handle file;
    Path stagePath;
    Path finalPath;
    bool committed = false;
};

StagedFile::StagedFile(std::unique_ptr<State> state) noexcept : state_(std::move(state)) {}

StagedFile::~StagedFile() {
    state_->file.reset();
    if (!state_->committed) { DeleteFileW(state_->stagePath.c_str()); }
}

bool StagedFile::append(std::span<const std::uint8_t> bytes) noexcept {
    constexpr std::size_t kMost = 1U << 30;
    while (!bytes.empty()) {
        const auto count = static_cast<DWORD>(bytes.size() < kMost ? bytes.size() : kMost);
        DWORD written = 0;
        if (WriteFile(state_->file.get(), bytes.data(), count, &written, nullptr) == 0 || written == 0) {
            return false;
        }
        bytes = bytes.subspan(written);
    }
    return true;
}

bool StagedFile::commit() noexcept {
    State& s = *state_;
    if (FlushFileBuffers(s.file.get()) == 0) { return false; }
    s.file.reset();
    static std::mutex moving; // the system refuses to replace a file that is just being replaced
    const std::lock_guard lock{moving};
    constexpr DWORD kFlags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    s.committed = MoveFileExW(s.stagePath.c_str(), s.finalPath.c_str(), kFlags) != 0;
    return s.committed;
}

struct Store::State {
    Path root;
    Handle lock;
};

Store::Store(const Path& root) {
    std::filesystem::create_directories(root);
    Handle lock = lockFolder(root);
    sweepStagedFiles(root);
    state_ = std::make_unique<State>(State{std::filesystem::absolute(root), std::move(lock)});
    if (!stage({}, kProbe)) { throw lastError(kNotWritable); }
}

Store::~Store() = default;

std::unique_ptr<StagedFile> Store::stage(const StorePath& directory, const std::string& name) const {
    const auto found = findDirectory(state_->root, directory, Missing::isMade);
    const auto finalName = toPath(name);
    if (!found || !finalName) { return nullptr; }
    Path stagePath;
    HANDLE file = INVALID_HANDLE_VALUE;
    do {
        stagePath = *found / nextStageName();
        file = CreateFileW(stagePath.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    } while (file == INVALID_HANDLE_VALUE && GetLastError() == ERROR_FILE_EXISTS); // another target's
    if (file == INVALID_HANDLE_VALUE) { return nullptr; }
    return std::make_unique<StagedFile>(
        std::make_unique<StagedFile::State>(StagedFile::State{Handle{file}, stagePath, *found / *finalName}));
}

bool Store::makeDirectory(const StorePath& directory) const {
    return findDirectory(state_->root, directory, Missing::isMade).has_value();
}

bool Store::remove(const StorePath& directory, const std::string& name) const {
    const auto found = findDirectory(state_->root, directory, Missing::fails);
    const auto file = toPath(name);
    if (!found || !file) { return !found; }
    std::error_code failure;
    std::filesystem::remove_all(*found / *file, failure);
    return !failure;
}

bool Store::holdsFile(const StorePath& directory, const std::string& name) const {
    const auto found = findDirectory(state_->root, directory, Missing::fails);
    const auto file = toPath(name);
    return found && file && is(*found / *file, false);
}

std::vector<std::string> Store::directoriesIn(const StorePath& directory) const {
    const auto found = findDirectory(state_->root, directory, Missing::fails);
    if (!found) { return {}; }
    std::vector<std::string> names;
    std::error_code failure;
    for (std::filesystem::directory_iterator entry{*found, failure}; !failure && entry != decltype(entry){};
         entry.increment(failure)) {
        const std::u8string name = entry->path().filename().u8string();
        if (is(entry->path(), true)) { names.emplace_back(name.begin(), name.end()); }
    }
    return names;
}

} // namespace simulated_target
