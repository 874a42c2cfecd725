#include "transfer/host_path.h"

#include <ctime>
#include <string_view>

#include "platform/host_system.h"
#include "transfer/directory_walk.h"

namespace applman {
namespace {

constexpr std::size_t kLongPathLength = 260;
constexpr std::u16string_view kLongPathPrefix = u"\\\\?\\";
constexpr std::u16string_view kNetworkStart = u"\\\\";
constexpr std::size_t kAnnouncedNameLimit = 258; // bytes

std::string cutToLimit(std::string_view text) {
    if (text.size() <= kAnnouncedNameLimit) { return std::string{text}; }
    std::size_t length = kAnnouncedNameLimit;
    while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) {
        --length; // the next byte continues a character
    }
    return std::string{text.substr(0, length)};
}

} // namespace

std::u16string hostPathOf(const char* pathUtf8) {
    return pathUtf8 == nullptr ? u"" : host_system::pathFromUtf8(pathUtf8);
}

std::u16string normalizeHostPath(const char16_t* path) {
    if (path == nullptr) { return {}; }
    std::u16string full = host_system::fullPath(path).value_or(u"");
    if (full.size() < kLongPathLength || full.starts_with(kLongPathPrefix)) { return full; }
    const std::u16string prefix{kLongPathPrefix};
    return full.starts_with(kNetworkStart) ? prefix + u"UNC\\" + full.substr(kNetworkStart.size()) : prefix + full;
}

bool isPathOfKind(const std::u16string& path, bool wantFile) {
    if (path.empty()) { return false; }
    const std::uint32_t wanted = wantFile ? host_system::kArchiveAttribute : host_system::kDirectoryAttribute;
    return (host_system::attributes(path).value_or(0) & wanted) != 0;
}

std::uint64_t getFileSize(const std::u16string& path) {
    if (!isPathOfKind(path, true)) { return 0; }
    return host_system::fileStatus(path).value_or(host_system::FileStatus{}).size;
}

std::uint64_t getDirectorySize(const std::u16string& directory) {
    DirectoryWalk walk;
    if (directory.empty() || !walk.enter(directory)) { return 0; }
    std::uint64_t sum = 0;
    while (!walk.ended()) {
        const auto entry = walk.next();
        if (!entry) {
            walk.leave();
        } else if (!isDirectory(*entry)) {
            sum += entry->size;
        } else if (!isSelfOrParent(*entry)) {
            static_cast<void>(walk.enter(walk.pathOf(*entry))); // what cannot be entered counts 0
        }
    }
    return sum;
}

std::string extractFileName(std::string_view path) {
    return cutToLimit(path.substr(path.rfind('\\') + 1)); // npos + 1 is the start
}

std::string extractDirectory(std::string_view path) {
    const std::size_t last = path.rfind('\\');
    if (last == path.npos) { return {}; }
    const bool driveRoot = last > 0 && path[last - 1] == ':';
    return cutToLimit(path.substr(0, driveRoot ? last + 1 : last));
}

std::int64_t getFileModificationTime(const std::string& pathUtf8) {
    return host_system::fileStatus(host_system::utf16FromUtf8(pathUtf8)).value_or(host_system::FileStatus{}).modified;
}

std::string formatLocalTime(std::int64_t time) {
    const std::tm local = host_system::localTime(time);
    char text[32] = {};
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local); // digits only, so no locale matters
    return text;
}

} // namespace applman
