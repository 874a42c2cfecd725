// What the library needs of the operating system: host paths, file status, directory enumeration, text encodings, calendar
// time, thread cancellation. Host paths are UTF-16 with backslashes on every system; one source each for POSIX and Windows.
#pragma once

#include <cstdint>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace host_system {

inline constexpr std::uint32_t kDirectoryAttribute = 0x10;
inline constexpr std::uint32_t kArchiveAttribute = 0x20;
inline constexpr std::uint32_t kNoMoreFiles = 18; // the error code of an enumeration that reached its end

/// What separates the names of a path as users write it.
#if defined(_WIN32)
inline constexpr std::string_view kPathSeparators = "\\";
#else
inline constexpr std::string_view kPathSeparators = "\\/";
#endif

/// The absolute form of a path, without "." and "..". None for an empty path or one that cannot be resolved.
std::optional<std::u16string> fullPath(const std::u16string& path);

/// Attribute bits of what the path names (links are followed); none when it names nothing. On POSIX a regular file has
/// the archive attribute and a directory the directory attribute; anything else has neither.
std::optional<std::uint32_t> attributes(const std::u16string& path);

struct FileStatus {
    std::uint64_t size = 0;    // bytes
    std::int64_t modified = 0; // seconds since 1970-01-01 00:00 UTC
};
std::optional<FileStatus> fileStatus(const std::u16string& path);

/// What tells one directory from another, whatever path leads to it.
struct DirectoryIdentity {
    std::uint64_t volume = 0;
    std::uint64_t file = 0;
    bool operator==(const DirectoryIdentity&) const = default;
};

struct DirectoryEntry {
    std::uint32_t attributes = 0; // of what a link leads to
    std::u16string name;
    std::uint64_t size = 0;
};

/// Walks the entries of one directory in the order in which the system delivers them, "." and ".." among them.
class DirectoryEnumeration {
public:
    explicit DirectoryEnumeration(const std::u16string& directory);
    ~DirectoryEnumeration();
    DirectoryEnumeration(DirectoryEnumeration&&) noexcept;
    DirectoryEnumeration& operator=(DirectoryEnumeration&&) noexcept;

    /// False when the directory cannot be enumerated.
    bool opened() const { return state_ != nullptr; }

    /// Of the directory that is enumerated; none when the system does not tell.
    const std::optional<DirectoryIdentity>& identity() const { return identity_; }

    /// The next entry, once it has opened; none at the end and after an error, which lastError tells apart.
    std::optional<DirectoryEntry> next();

    /// The system's error code once `next` gave none; kNoMoreFiles at the regular end.
    std::uint32_t lastError() const { return lastError_; }

private:
    struct State;
    std::unique_ptr<State> state_;
    std::optional<DirectoryIdentity> identity_{};
    std::uint32_t lastError_ = 0;
};

/// A host file that is read from start to end.
class InputFile {
public:
    explicit InputFile(const std::u16string& path);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// False when the path names no regular file or cannot be opened. Nothing but a regular file is ever opened blocking.
    bool opened() const { return handle_ != -1; }
    std::uint64_t size() const { return size_; } // when it was opened

    /// Reads up to `count` bytes; 0 at the end, none after an error.
    std::optional<std::size_t> read(void* buffer, std::size_t count);

private:
    std::intptr_t handle_ = -1;
    std::uint64_t size_ = 0;
};

/// In place of what a host path cannot hold. A lone surrogate is in no name, so that a path with one leads nowhere.
inline constexpr char16_t kLeadsNowhere = 0xDC00;

/// A host path as a user writes it; what is no UTF-8 leads nowhere.
std::u16string pathFromUtf8(std::string_view path);

/// Text encodings; what cannot be converted becomes U+FFFD.
std::u16string utf16FromUtf8(std::string_view text);
std::string utf8FromUtf16(std::u16string_view text);

std::int64_t currentTime(); // seconds since 1970-01-01 00:00 UTC

/// Calendar time, safe for any number of threads; a time that the system cannot break down yields that of 0.
std::tm utcTime(std::int64_t time);
std::tm localTime(std::int64_t time);

/// Seconds since 1970-01-01 00:00 UTC of a local calendar time; -1 when it has none.
std::int64_t timeFromLocal(std::tm local);

/// Keeps the calling thread from being cancelled while it lives (POSIX; nothing on Windows).
class CancellationOff {
public:
    CancellationOff() noexcept;
    ~CancellationOff();
    CancellationOff(const CancellationOff&) = delete;
    CancellationOff& operator=(const CancellationOff&) = delete;

private:
    int previous_ = 0;
};

} // namespace host_system
