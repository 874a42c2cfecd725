// The operating system's services on Windows: paths go to the wide functions as they are.
#include "platform/host_system.h"

#include <algorithm>
#include <utility>

#include <windows.h>

namespace host_system {
namespace {

static_assert(sizeof(wchar_t) == sizeof(char16_t));
static_assert(kDirectoryAttribute == FILE_ATTRIBUTE_DIRECTORY);
static_assert(kArchiveAttribute == FILE_ATTRIBUTE_ARCHIVE);
static_assert(kNoMoreFiles == ERROR_NO_MORE_FILES);

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

const wchar_t* wide(const std::u16string& text) { return reinterpret_cast<const wchar_t*>(text.c_str()); }

std::uint64_t joined(DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; }

struct CloseFile {
    using pointer = HANDLE;
    void operator()(HANDLE file) const { ::CloseHandle(file); }
};
using File = std::unique_ptr<HANDLE, CloseFile>;

/// Null when it cannot be opened.
File openFile(const std::u16string& path, DWORD access, DWORD flags) {
    const HANDLE file = ::CreateFileW(wide(path), access, kShareAll, nullptr, OPEN_EXISTING, flags, nullptr);
    return File{file == INVALID_HANDLE_VALUE ? nullptr : file};
}

/// What the path leads to, after every link.
std::optional<BY_HANDLE_FILE_INFORMATION> informationBehindLinks(const std::u16string& path) {
    const File file = openFile(path, FILE_READ_ATTRIBUTES, FILE_FLAG_BACKUP_SEMANTICS);
    BY_HANDLE_FILE_INFORMATION information{};
    if (!file || ::GetFileInformationByHandle(file.get(), &information) == 0) { return {}; }
    return information;
}

struct Status {
    DWORD attributes = 0;
    std::uint64_t size = 0;
    FILETIME modified{};
};

std::optional<Status> statusBehindLinks(const std::u16string& path) {
    const auto information = informationBehindLinks(path);
    if (!information) { return {}; }
    return Status{information->dwFileAttributes, joined(information->nFileSizeHigh, information->nFileSizeLow),
                  information->ftLastWriteTime};
}

std::optional<Status> statusOf(const std::u16string& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (::GetFileAttributesExW(wide(path), GetFileExInfoStandard, &data) == 0) { return {}; }
    if ((data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) { return statusBehindLinks(path); }
    return Status{data.dwFileAttributes, joined(data.nFileSizeHigh, data.nFileSizeLow), data.ftLastWriteTime};
}

/// A file time counts 100 ns since 1601-01-01 00:00 UTC.
std::int64_t secondsSince1970(const FILETIME& time) {
    constexpr std::int64_t kTicksPerSecond = 10'000'000;
    constexpr std::int64_t kSecondsFrom1601To1970 = 11'644'473'600;
    const auto ticks = static_cast<std::int64_t>(joined(time.dwHighDateTime, time.dwLowDateTime));
    return ticks / kTicksPerSecond - kSecondsFrom1601To1970;
}

} // namespace

std::optional<std::u16string> fullPath(const std::u16string& path) {
    std::u16string result(MAX_PATH, u'\0');
    for (;;) {
        const auto capacity = static_cast<DWORD>(result.size());
        const DWORD length =
            ::GetFullPathNameW(wide(path), capacity, reinterpret_cast<wchar_t*>(result.data()), nullptr);
        if (length == 0) { return {}; }
        result.resize(length); // with the terminator when it did not fit, without when it did
        if (length < capacity) { return result; }
    }
}

std::optional<std::uint32_t> attributes(const std::u16string& path) {
    const auto status = statusOf(path);
    if (!status) { return {}; }
    return status->attributes;
}

std::optional<FileStatus> fileStatus(const std::u16string& path) {
    const auto status = statusOf(path);
    if (!status) { return {}; }
    return FileStatus{.size = status->size, .modified = secondsSince1970(status->modified)};
}

struct DirectoryEnumeration::State {
    explicit State(std::u16string path) : directory(std::move(path)) {
        search = ::FindFirstFileW(wide(directory + u"\\*"), &found);
    }
    ~State() {
        if (search != INVALID_HANDLE_VALUE) { ::FindClose(search); }
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    DirectoryEntry entry() const {
        const wchar_t* const end = std::find(std::begin(found.cFileName), std::end(found.cFileName), L'\0');
        DirectoryEntry result{.attributes = found.dwFileAttributes,
                              .name = std::u16string(std::begin(found.cFileName), end),
                              .size = joined(found.nFileSizeHigh, found.nFileSizeLow)};
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
            const Status status = statusBehindLinks(directory + u'\\' + result.name).value_or(Status{});
            result.attributes = status.attributes;
            result.size = status.size;
        }
        return result;
    }

    std::u16string directory;
    WIN32_FIND_DATAW found{};
    HANDLE search = INVALID_HANDLE_VALUE;
    bool first = true; // opening has found the first entry already
};

namespace {

std::optional<DirectoryIdentity> identityOf(const std::u16string& directory) {
    const auto information = informationBehindLinks(directory);
    if (!information) { return {}; }
    return DirectoryIdentity{.volume = information->dwVolumeSerialNumber,
                             .file = joined(information->nFileIndexHigh, information->nFileIndexLow)};
}

} // namespace

DirectoryEnumeration::DirectoryEnumeration(const std::u16string& directory)
    : state_(std::make_unique<State>(directory)), identity_(identityOf(directory)) {
    if (state_->search == INVALID_HANDLE_VALUE) { state_.reset(); }
}

DirectoryEnumeration::~DirectoryEnumeration() = default;
DirectoryEnumeration::DirectoryEnumeration(DirectoryEnumeration&&) noexcept = default;
DirectoryEnumeration& DirectoryEnumeration::operator=(DirectoryEnumeration&&) noexcept = default;

std::optional<DirectoryEntry> DirectoryEnumeration::next() {
    if (!std::exchange(state_->first, false) && ::FindNextFileW(state_->search, &state_->found) == 0) {
        lastError_ = ::GetLastError();
        return {};
    }
    return state_->entry();
}

InputFile::InputFile(const std::u16string& path) {
    File file = openFile(path, GENERIC_READ, FILE_FLAG_SEQUENTIAL_SCAN);
    LARGE_INTEGER size{};
    if (!file || ::GetFileType(file.get()) != FILE_TYPE_DISK || ::GetFileSizeEx(file.get(), &size) == 0) { return; }
    size_ = static_cast<std::uint64_t>(size.QuadPart);
    handle_ = reinterpret_cast<std::intptr_t>(file.release());
}

InputFile::~InputFile() {
    if (opened()) { ::CloseHandle(reinterpret_cast<HANDLE>(handle_)); }
}

std::optional<std::size_t> InputFile::read(void* buffer, std::size_t count) {
    constexpr std::size_t kLargestRead = 1U << 30;
    DWORD got = 0;
    const auto wanted = static_cast<DWORD>(std::min(count, kLargestRead));
    if (::ReadFile(reinterpret_cast<HANDLE>(handle_), buffer, wanted, &got, nullptr) == 0) { return {}; }
    return got;
}

std::int64_t currentTime() { return ::_time64(nullptr); }

std::tm utcTime(std::int64_t time) {
    std::tm result{};
    return ::_gmtime64_s(&result, &time) == 0 ? result : utcTime(0);
}

std::tm localTime(std::int64_t time) {
    std::tm result{};
    return ::_localtime64_s(&result, &time) == 0 ? result : localTime(0);
}

std::int64_t timeFromLocal(std::tm local) { return ::_mktime64(&local); }

CancellationOff::CancellationOff() noexcept = default;
CancellationOff::~CancellationOff() = default;

} // namespace host_system
