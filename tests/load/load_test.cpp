// Loading and unloading the shared library: what it registers goes with it, and nothing is left behind.
#include <memory>

#include <gtest/gtest.h>

#include "KvApplicationManagerAP.h"
#include "support/open_handles.h"
#include "support/pool.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

#if defined(_WIN32)
void* load() { return LoadLibraryA(LIBRARY); }
void* find(void* library, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}
bool unload(void* library) { return FreeLibrary(static_cast<HMODULE>(library)) != 0; }

TEST(Library, TellsItsVersion) {
    const auto library = static_cast<HMODULE>(load());
    const HRSRC resource = FindResourceW(library, MAKEINTRESOURCEW(VS_VERSION_INFO), MAKEINTRESOURCEW(16));
    ASSERT_NE(resource, nullptr);
    const auto* const words = static_cast<const DWORD*>(LockResource(LoadResource(library, resource)));
    const auto* const fixed = reinterpret_cast<const VS_FIXEDFILEINFO*>(words + 10); // behind L"VS_VERSION_INFO"
    EXPECT_EQ(fixed->dwSignature, 0xFEEF04BDU);
    EXPECT_EQ(fixed->dwProductVersionMS, DWORD{MAJOR_VERSION} << 16 | MINOR_VERSION);
    EXPECT_TRUE(unload(library));
}
#else
void* load() { return dlopen(LIBRARY, RTLD_NOW); }
void* find(void* library, const char* name) { return dlsym(library, name); }
bool unload(void* library) { return dlclose(library) == 0; }
#endif

/// Whether the platform has a text for one of the library's messages.
bool isRegistered() {
    Pool pool;
    KvPlatform_addEntry(pool, 0x12500004);
    return pool.text(0).find("is not registered") == std::string::npos;
}

TEST(Library, LeavesNothingBehindHoweverOftenItIsLoaded) {
    std::size_t handles = 0;
    for (int round = 0; round < 1000; ++round) {
        void* const library = load();
        ASSERT_NE(library, nullptr);
        const auto freeList =
            reinterpret_cast<decltype(&KvApplMan_freeApplInfoList)>(find(library, "KvApplMan_freeApplInfoList"));
        ASSERT_NE(freeList, nullptr);
        KvTApplicationInfo* list = nullptr;
        std::uint32_t count = 0;
        freeList(&list, &count);
        EXPECT_TRUE(isRegistered());
        ASSERT_TRUE(unload(library));
        EXPECT_FALSE(isRegistered());
        if (round == 0) { handles = openHandles(); } // with what the system keeps for good from the first time on
    }
    EXPECT_GT(handles, 0U);
    EXPECT_EQ(openHandles(), handles);
}

} // namespace
