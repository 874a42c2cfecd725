// Host files that only Windows has: attributes of every kind, long paths, names in any script.
#include <windows.h>

#include "api/api_test.h"
#include "transfer/host_path.h"
#include "transfer/text.h"

using namespace applman;
namespace fs = std::filesystem;

namespace {

constexpr std::uint32_t kDirectory = 512;
constexpr std::uint32_t kFile = 7;

bool archiveIsCleared = false; // of every file, since Wine sets it for every file

BOOL WINAPI fileAttributes(LPCWSTR path, GET_FILEEX_INFO_LEVELS level, void* data) {
    static const auto real = reinterpret_cast<decltype(&GetFileAttributesExW)>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32"), "GetFileAttributesExW")));
    const BOOL found = real(path, level, data);
    if (archiveIsCleared) {
        static_cast<WIN32_FILE_ATTRIBUTE_DATA*>(data)->dwFileAttributes &= ~DWORD{FILE_ATTRIBUTE_ARCHIVE};
    }
    return found;
}

class HostFiles : public ApiTest {
protected:
    /// Makes a file, and before it the directories of its path. Long paths need the prefix.
    void make(const fs::path& file, DWORD attributes = FILE_ATTRIBUTE_ARCHIVE) {
        fs::create_directories(file.parent_path());
        std::ofstream{file} << "content";
        ASSERT_NE(SetFileAttributesW(file.c_str(), attributes), 0);
    }

    Outcome load(const fs::path& source, std::uint32_t type) {
        const char* const name = type == kFile ? "arrived" : "";
        t.target.script(kAddFile2, wire::reply(TApplManAddFileResult{0, "sent", {}, name}));
        return outcome(KvApplMan_loadFileUtf8(pool, t.device, t.access, 0xabc,
                                              wideToUtf8(source.u16string().c_str()).c_str(), "", "", type, 0, nullptr,
                                              nullptr, nullptr));
    }

    std::string arrived(const fs::path& name) const { return contentOf(t.store() / "sent" / name); }

    TemporaryFolder folder;
    fs::path root = folder.path();
};

} // namespace

// Takes the place of the pointer that the import library holds.
extern "C" decltype(&GetFileAttributesExW) __imp_GetFileAttributesExW;
decltype(&GetFileAttributesExW) __imp_GetFileAttributesExW = fileAttributes;

TEST_F(HostFiles, AFileWithoutTheArchiveAttributeCountsAsMissing) {
    make(root / "f");
    archiveIsCleared = true;
    EXPECT_EQ(load(root / "f", kFile).first, -830);
    archiveIsCleared = false;
    EXPECT_EQ(procedures(), Words{});
    EXPECT_EQ(load(root / "f", kFile), (Outcome{0, {}}));
}

TEST_F(HostFiles, HiddenSystemAndReadOnlyEntriesOfATreeAreSent) {
    constexpr DWORD kEvery = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_READONLY;
    make(root / "tree/d/hidden", FILE_ATTRIBUTE_HIDDEN);
    make(root / "tree/d/system", FILE_ATTRIBUTE_SYSTEM);
    make(root / "tree/d/read only", FILE_ATTRIBUTE_READONLY);
    ASSERT_NE(SetFileAttributesW((root / "tree/d").c_str(), FILE_ATTRIBUTE_DIRECTORY | kEvery), 0);
    EXPECT_EQ(load(root / "tree", kDirectory), (Outcome{0, {}}));
    for (const char* const name : {"d/hidden", "d/system", "d/read only"}) {
        EXPECT_EQ(arrived(name), "content") << name;
        ASSERT_NE(SetFileAttributesW((root / "tree" / name).c_str(), FILE_ATTRIBUTE_NORMAL), 0); // so that it can go
    }
    ASSERT_NE(SetFileAttributesW((root / "tree/d").c_str(), FILE_ATTRIBUTE_DIRECTORY), 0);
}

TEST_F(HostFiles, PathsOnBothSidesOfTheLongPathLimitAreOpened) {
    const fs::path directory = root / std::string(200, 'd');
    for (const std::size_t length : {259U, 260U, 400U}) {
        const fs::path plain = directory / std::string(length - directory.native().size() - 1, 'f');
        ASSERT_EQ(plain.native().size(), length);
        make(LR"(\\?\)" + plain.native());
        const std::u16string normal = normalizeHostPath(plain.u16string().c_str());
        EXPECT_EQ(normal.starts_with(uR"(\\?\)"), length >= 260);
        EXPECT_EQ(getFileSize(normal), 7U);
        EXPECT_EQ(load(plain, kFile), (Outcome{0, {}})) << length;
        EXPECT_EQ(arrived("arrived"), "content");
        fs::remove(t.store() / "sent/arrived");
    }
    EXPECT_EQ(load(directory, kDirectory), (Outcome{0, {}}));
    EXPECT_EQ(getDirectorySize(normalizeHostPath(directory.u16string().c_str())), 21U);
    fs::remove_all(LR"(\\?\)" + directory.native());
}

TEST_F(HostFiles, NamesInAnyScriptArriveAsTheyAre) {
    const fs::path tree = root / u8"größe \u6E2C\u8A66";
    const fs::path name = u8"r\u00E9sum\u00E9 \u0444\u0430\u0439\u043B \U0001F600.txt";
    make(tree / name);
    EXPECT_EQ(load(tree / name, kFile), (Outcome{0, {}}));
    EXPECT_EQ(load(tree, kDirectory), (Outcome{0, {}}));
    EXPECT_EQ(arrived("arrived") + arrived(name), "contentcontent");
}
