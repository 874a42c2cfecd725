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

using FreeApplInfoList = decltype(&KvApplMan_freeApplInfoList);

#if defined(_WIN32)

struct Unloader {
    using pointer = HMODULE;
    void operator()(HMODULE library) const { EXPECT_NE(FreeLibrary(library), 0); }
};
std::unique_ptr<HMODULE, Unloader> load() { return std::unique_ptr<HMODULE, Unloader>{LoadLibraryA(LIBRARY)}; }
void* find(HMODULE library, const char* name) { return reinterpret_cast<void*>(GetProcAddress(library, name)); }

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
