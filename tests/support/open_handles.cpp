#include "support/open_handles.h"

#if defined(_WIN32)
#include <algorithm>
#include <cstdint>
#include <vector>

#include <windows.h>

#include <winternl.h>

std::size_t openHandles() {
    struct Handle {
        ULONG process;
        UCHAR type, flags;
        USHORT value;
        void* object;
        ULONG access;
    };
    constexpr auto kHandleInformation = static_cast<SYSTEM_INFORMATION_CLASS>(16);
    std::vector<std::uint64_t> buffer(1 << 18);
    if (NtQuerySystemInformation(kHandleInformation, buffer.data(), 8U << 18, nullptr) != 0) { return 0; }
    const auto* const handles = reinterpret_cast<const Handle*>(&buffer[1]);
    return static_cast<std::size_t>(
        std::count_if(handles, handles + static_cast<ULONG>(buffer[0]),
                      [](const Handle& handle) { return handle.process == GetCurrentProcessId(); }));
}

#else
#include <filesystem>
#include <iterator>

std::size_t openHandles() {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator{"/proc/self/fd"}, {}));
}

#endif
