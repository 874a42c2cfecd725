// The operating system's services on POSIX: paths arrive as UTF-16 with backslashes and are opened as UTF-8 with slashes.
#include "platform/host_system.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

namespace host_system {
namespace {

constexpr std::u16string_view kLongPrefix = u"\\\\?\\";
constexpr std::u16string_view kLongNetworkPrefix = u"\\\\?\\UNC\\";

template <class Call>
auto retried(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) {
        result = call();
    }
    return result;
}

class Descriptor {
public:
    explicit Descriptor(int value) : value_(value) {}
    ~Descriptor() {
        if (value_ >= 0) { ::close(value_); }
    }
    Descriptor(Descriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    int get() const { return value_; }
    int release() { return std::exchange(value_, -1); }

private:
    int value_;
};

std::string withoutLongPrefix(std::u16string_view path) {
    if (path.starts_with(kLongNetworkPrefix)) { return "//" + utf8FromUtf16(path.substr(kLongNetworkPrefix.size())); }
    if (path.starts_with(kLongPrefix)) { path.remove_prefix(kLongPrefix.size()); }
    return utf8FromUtf16(path);
}

/// Where a path leads: a directory, and the rest of the path from there, short enough for the system.
struct Location {
    Descriptor base{AT_FDCWD};
    std::string name;
};

/// Whatever is asked of a location fails when the path leads nowhere, since it has no name then, and when a directory
/// cannot be reached, since the base is closed then.
Location locate(const std::u16string& path) {
    if (utf16FromUtf8(utf8FromUtf16(path)) != path) { return {}; }
    Location at{.name = withoutLongPrefix(path)};
    std::replace(at.name.begin(), at.name.end(), '\\', '/');
    while (at.name.size() >= PATH_MAX) {
        const std::size_t cut = at.name.rfind('/', PATH_MAX - 1);
        if (cut == std::string::npos || cut == 0) { return at; }
        const std::string step = at.name.substr(0, cut);
        at.base = Descriptor{::openat(at.base.get(), step.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)};
        at.name.erase(0, std::min(at.name.find_first_not_of('/', cut), at.name.size()));
    }
    return at;
}

std::optional<struct stat> statusOf(int base, const char* name) {
    struct stat status {};
    if (::fstatat(base, name, &status, 0) != 0) { return {}; }
    return status;
}

std::optional<struct stat> statusOf(const std::u16string& path) {
    const Location at = locate(path);
    return statusOf(at.base.get(), at.name.c_str());
}

Descriptor openFor(const std::u16string& path, int flags) {
    const Location at = locate(path);
    return Descriptor{retried([&] { return ::openat(at.base.get(), at.name.c_str(), flags | O_CLOEXEC); })};
}

std::uint32_t attributesOf(const struct stat& status) {
    if (S_ISDIR(status.st_mode)) { return kDirectoryAttribute; }
    return S_ISREG(status.st_mode) ? kArchiveAttribute : 0;
}

std::uint64_t sizeOf(const struct stat& status) { return static_cast<std::uint64_t>(status.st_size); }

/// The parts between backslashes; a backslash at the end yields an empty last one.
std::vector<std::u16string_view> partsOf(std::u16string_view path) {
    std::vector<std::u16string_view> parts;
    for (std::size_t end = path.find(u'\\'); end != path.npos; end = path.find(u'\\')) {
        parts.push_back(path.substr(0, end));
        path.remove_prefix(end + 1);
    }
    parts.push_back(path);
    return parts;
}

/// Resolves "." and ".." of an absolute path. The first `rooted` names cannot be left upwards.
std::u16string resolved(std::u16string_view path, std::size_t rooted) {
    std::vector<std::u16string_view> names;
    for (const std::u16string_view part : partsOf(path)) {
        if (part == u".." && names.size() > rooted) { names.pop_back(); }
        if (!part.empty() && part != u"." && part != u"..") { names.push_back(part); }
    }
    std::u16string result;
    for (const std::u16string_view name : names) {
        (result += u'\\') += name;
    }
    if (result.empty() || path.ends_with(u'\\')) { result += u'\\'; }
    return result;
}

std::u16string withBackslashes(std::u16string path) {
    std::replace(path.begin(), path.end(), u'/', u'\\');
    return path;
}

/// A path or name of the system as a host path, which cannot hold a backslash within a name.
std::u16string hostPathFrom(const std::string& native) {
    std::u16string path = pathFromUtf8(native);
    std::replace(path.begin(), path.end(), u'\\', kLeadsNowhere);
    return withBackslashes(std::move(path));
}

std::optional<std::u16string> workingDirectory() {
    std::error_code failure;
    const std::filesystem::path directory = std::filesystem::current_path(failure);
    if (failure || !directory.is_absolute()) { return {}; }
    return hostPathFrom(directory.native());
}

/// Only what the host wrote as two backslashes marks a server.
bool isNetworkPath(std::u16string_view path) {
    return path.starts_with(u"\\\\") && path.substr(2, 1).find_first_of(u"\\/") == path.npos;
}

} // namespace

std::optional<std::u16string> fullPath(const std::u16string& path) {
    if (path.empty()) { return {}; }
    if (path.starts_with(kLongPrefix)) { return path; }
    const std::u16string given = withBackslashes(path);
    if (isNetworkPath(path)) { return u'\\' + resolved(given, 2); } // \\server\share is the root
    if (given.starts_with(u'\\')) { return resolved(given, 0); }
    const std::optional<std::u16string> directory = workingDirectory();
    if (!directory) { return {}; }
    return resolved(*directory + u'\\' + given, 0);
}

std::optional<std::uint32_t> attributes(const std::u16string& path) {
    const auto status = statusOf(path);
    if (!status) { return {}; }
    return attributesOf(*status);
}

std::optional<FileStatus> fileStatus(const std::u16string& path) {
    const auto status = statusOf(path);
    if (!status) { return {}; }
    return FileStatus{.size = sizeOf(*status), .modified = status->st_mtime};
}

/// All entries are read at once: a walk would otherwise hold one descriptor for each level of a deep tree.
struct DirectoryEnumeration::State {
    std::vector<DirectoryEntry> entries;
    std::size_t delivered = 0;
    std::uint32_t error = kNoMoreFiles;
};

namespace {

struct CloseDirectory {
    void operator()(DIR* directory) const { ::closedir(directory); }
};
using OpenDirectory = std::unique_ptr<DIR, CloseDirectory>;

OpenDirectory openDirectory(const std::u16string& path) {
    Descriptor descriptor = openFor(path, O_RDONLY | O_DIRECTORY);
    OpenDirectory directory{::fdopendir(descriptor.get())};
    if (directory) { descriptor.release(); }
    return directory;
}

std::optional<DirectoryIdentity> identityOf(DIR* directory) {
    struct stat status {};
    if (::fstat(::dirfd(directory), &status) != 0) { return {}; }
    return DirectoryIdentity{.volume = status.st_dev, .file = status.st_ino};
}

DirectoryEntry entryOf(DIR* directory, const std::string& name) {
    DirectoryEntry entry{.name = hostPathFrom(name)};
    const auto status = statusOf(::dirfd(directory), name.c_str());
    if (name == "." || name == "..") {
        entry.attributes = kDirectoryAttribute;
    } else if (status) {
        entry.attributes = attributesOf(*status);
        entry.size = sizeOf(*status);
    }
    return entry;
}

} // namespace

DirectoryEnumeration::DirectoryEnumeration(const std::u16string& directory) {
    const OpenDirectory opened = openDirectory(directory);
    if (!opened) { return; }
    state_ = std::make_unique<State>();
    identity_ = identityOf(opened.get());
    errno = 0;
    while (const dirent* const entry = ::readdir(opened.get())) {
        state_->entries.push_back(entryOf(opened.get(), entry->d_name));
        errno = 0;
    }
    if (errno != 0) { state_->error = static_cast<std::uint32_t>(errno); }
}

DirectoryEnumeration::~DirectoryEnumeration() = default;
DirectoryEnumeration::DirectoryEnumeration(DirectoryEnumeration&&) noexcept = default;
DirectoryEnumeration& DirectoryEnumeration::operator=(DirectoryEnumeration&&) noexcept = default;

std::optional<DirectoryEntry> DirectoryEnumeration::next() {
    if (state_->delivered < state_->entries.size()) { return std::move(state_->entries[state_->delivered++]); }
    lastError_ = state_->error;
    return {};
}

InputFile::InputFile(const std::u16string& path) {
    if (attributes(path) != kArchiveAttribute) { return; } // opening alone would already disturb a device
    Descriptor descriptor = openFor(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    struct stat status {};
    if (::fstat(descriptor.get(), &status) != 0 || !S_ISREG(status.st_mode)) { return; }
    size_ = sizeOf(status);
    handle_ = descriptor.release();
}

InputFile::~InputFile() {
    if (opened()) { ::close(static_cast<int>(handle_)); }
}

std::optional<std::size_t> InputFile::read(void* buffer, std::size_t count) {
    const ssize_t got = retried([&] { return ::read(static_cast<int>(handle_), buffer, count); });
    if (got < 0) { return {}; }
    return static_cast<std::size_t>(got);
}

std::int64_t currentTime() { return std::time(nullptr); }

std::tm utcTime(std::int64_t time) {
    const std::time_t seconds = time;
    std::tm result{};
    return ::gmtime_r(&seconds, &result) != nullptr ? result : utcTime(0);
}

std::tm localTime(std::int64_t time) {
    const std::time_t seconds = time;
    std::tm result{};
    ::tzset(); // localtime_r alone may keep the zone that TZ named before
    return ::localtime_r(&seconds, &result) != nullptr ? result : localTime(0);
}

std::int64_t timeFromLocal(std::tm local) { return std::mktime(&local); }

CancellationOff::CancellationOff() noexcept { ::pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &previous_); }
CancellationOff::~CancellationOff() { ::pthread_setcancelstate(previous_, &previous_); }

} // namespace host_system
