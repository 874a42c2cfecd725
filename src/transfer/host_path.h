// Host paths: normalising, testing, sizes and times of what they name, and taking them apart.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace applman {

/// A path as the host gives it; empty for null. What is no UTF-8 in it leads nowhere.
std::u16string hostPathOf(const char* pathUtf8);

/// The full path, with the long-path prefix from 260 characters on; empty for null or when it cannot be resolved.
std::u16string normalizeHostPath(const char16_t* path);

/// Whether the path names an existing file (by its archive attribute) or, without `wantFile`, an existing directory.
bool isPathOfKind(const std::u16string& path, bool wantFile);

/// Bytes; 0 for what is not an existing file.
std::uint64_t getFileSize(const std::u16string& path);

/// Bytes of all files in a directory tree; 0 for what cannot be enumerated.
std::uint64_t getDirectorySize(const std::u16string& directory);

/// The part after the last backslash, and the part before it (a drive root keeps its backslash; empty without a
/// backslash). Both are cut to 258 bytes, never inside a character.
std::string extractFileName(std::string_view path);
std::string extractDirectory(std::string_view path);

/// Seconds since 1970-01-01 00:00 UTC; 0 when the file's status cannot be read.
std::int64_t getFileModificationTime(const std::string& pathUtf8);

/// "YYYY-MM-DD hh:mm:ss" in local time.
std::string formatLocalTime(std::int64_t time);

} // namespace applman
