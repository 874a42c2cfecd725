// Loading and unloading the shared library: what it registers goes with it, and nothing is left behind.
#include <algorithm>
#include <memory>

#include <gtest/gtest.h>

#include "KvApplicationManagerAP.h"
#include "support/pool.h"

#if defined(_WIN32)
#include <windows.h>

#include <tlhelp32.h>
#include <winternl.h>
#else
#include <dlfcn.h>
#include <filesystem>
#include <iterator>
#endif

namespace {

using FreeApplInfoList = decltype(&KvApplMan_freeApplInfoList);

#if defined(_WIN32)

struct Unloader {
    using pointer = HMODULE;
    void operator()(HMODULE library) const { EXPECT_NE(FreeLibrary(library), 0); }
};
std::unique_ptr<HMODULE, Unloader> load() { return std::unique_ptr<HMODULE, Unloader>{LoadLibraryA(LIBRARY)}; }
void* find(HMODULE library, const char* name) { return reinterpret_cast<void*>(GetProcAddress(library, name)); }

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
    EXPECT_EQ(NtQuerySystemInformation(kHandleInformation, buffer.data(), 8U << 18, nullptr), 0);
    const auto* const handles = reinterpret_cast<const Handle*>(&buffer[1]);
    return static_cast<std::size_t>(
        std::count_if(handles, handles + static_cast<ULONG>(buffer[0]),
                      [](const Handle& handle) { return handle.process == GetCurrentProcessId(); }));
}

std::size_t threads() {
    const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 thread{};
    thread.dwSize = sizeof thread;
    std::size_t count = 0;
    for (BOOL more = Thread32First(all, &thread); more != 0; more = Thread32Next(all, &thread)) {
        count += thread.th32OwnerProcessID == GetCurrentProcessId() ? 1U : 0U;
    }
    CloseHandle(all);
    return count;
}

TEST(Library, TellsItsVersion) {
    const auto library = load();
    const HRSRC resource = FindResourceW(library.get(), MAKEINTRESOURCEW(VS_VERSION_INFO), MAKEINTRESOURCEW(16));
    ASSERT_NE(resource, nullptr);
    const auto* const words = static_cast<const DWORD*>(LockResource(LoadResource(library.get(), resource)));
    const auto* const fixed = reinterpret_cast<const VS_FIXEDFILEINFO*>(words + 10); // behind L"VS_VERSION_INFO"
    EXPECT_EQ(fixed->dwSignature, 0xFEEF04BDU);
    EXPECT_EQ(fixed->dwProductVersionMS, DWORD{MAJOR_VERSION} << 16 | MINOR_VERSION);
}

#else

struct Unloader {
    void operator()(void* library) const { EXPECT_EQ(dlclose(library), 0); }
};
std::unique_ptr<void, Unloader> load() { return std::unique_ptr<void, Unloader>{dlopen(LIBRARY, RTLD_NOW)}; }
void* find(void* library, const char* name) { return dlsym(library, name); }

std::size_t entries(const char* folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator{folder}, {}));
}
std::size_t openHandles() { return entries("/proc/self/fd"); }
std::size_t threads() { return entries("/proc/self/task"); }

#endif

/// Whether the platform has a text for one of the library's messages.
bool isRegistered() {
    Pool pool;
    KvPlatform_addEntry(pool, 0x12500004);
    return pool.text(0).find("is not registered") == std::string::npos;
}

TEST(Library, LeavesNothingBehindHoweverOftenItIsLoaded) {
    load().reset(); // what the system keeps for good from the first time on
    const std::size_t handlesBefore = openHandles();
    const std::size_t threadsBefore = threads();
    EXPECT_GT(handlesBefore, 0U);
    for (int round = 0; round < 1000; ++round) {
        const auto library = load();
        ASSERT_TRUE(library);
        const auto freeList = reinterpret_cast<FreeApplInfoList>(find(library.get(), "KvApplMan_freeApplInfoList"));
        ASSERT_NE(freeList, nullptr);
        KvTApplicationInfo* list = nullptr;
        std::uint32_t count = 0;
        freeList(&list, &count);
    }
    EXPECT_EQ(openHandles(), handlesBefore);
    EXPECT_EQ(threads(), threadsBefore);
}

TEST(Library, ItsMessagesHaveTextsAsLongAsItIsLoaded) {
    EXPECT_FALSE(isRegistered());
    {
        const auto library = load();
        EXPECT_TRUE(isRegistered());
    }
    EXPECT_FALSE(isRegistered());
}

} // namespace
