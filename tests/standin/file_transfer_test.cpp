// File transfer into the store of a simulated target.
#if !defined(_WIN32)
#include <sys/stat.h>
#endif

#include <fstream>
#include <functional>

#include <gtest/gtest.h>

#include "error_lists/platform_messages.h"
#include "platform/host_system.h"
#include "support/one_target.h"

namespace {

using namespace platform_messages;
using Codes = std::vector<std::uint32_t>;
namespace fs = std::filesystem;

constexpr std::size_t kChunk = 256 << 10;

std::string bytes(std::size_t size) {
    std::string content(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        content[i] = static_cast<char>(i ^ i >> 8 ^ i >> 16);
    }
    return content;
}

/// A host file and a file-transfer handle of a target's device; the calls that tell of progress are passed on.
class FileTransfer : public testing::Test {
protected:
    FileTransfer() { EXPECT_EQ(KvHIM_createFTClientHandle(pool, target.device, &handle), 0); }
    ~FileTransfer() override { EXPECT_EQ(KvHIM_deleteFTClientHandle(pool, handle), 0); }

    std::int64_t send(std::size_t size, const char* name = "name") {
        folder.file("file", bytes(size));
        return sendFile(name);
    }
    std::int64_t sendFile(const char* name) {
        const std::u16string path = *host_system::fullPath(file.u16string());
        const auto report = [](std::uint64_t bytes, void* self) {
            static_cast<FileTransfer*>(self)->onProgress(bytes);
        };
        return KvHIM_putFileU(pool, nullptr, handle, path.c_str(), "dir", name, report, this);
    }
    std::string arrived(const char* name = "name") const { return contentOf(target.store() / "dir" / name); }

    TargetDevice target{};
    TemporaryFolder folder{};
    const fs::path file = folder.path() / "file";
    std::function<void(std::uint64_t)> onProgress = [](std::uint64_t) {};
    Pool pool{};
    void* handle = nullptr;
};

TEST_F(FileTransfer, ContentArrivesExactlyAndEveryChunkIsReported) {
    std::vector<std::uint64_t> reports;
    onProgress = [&](std::uint64_t bytes) { reports.push_back(bytes); };
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, kChunk, kChunk + 1, 20 * kChunk - 1}) {
        SCOPED_TRACE(size);
        reports.clear();
        EXPECT_EQ(send(size), static_cast<std::int64_t>(size));
        EXPECT_TRUE(arrived() == bytes(size));
        std::vector<std::uint64_t> expected;
        for (std::size_t sent = 0; sent < size; sent = expected.back()) {
            expected.push_back(std::min(sent + kChunk, size));
        }
        EXPECT_EQ(reports, expected);
    }
    EXPECT_EQ(pool.codes(), Codes{});
}

TEST_F(FileTransfer, WhatChangesWhileItIsSentArrivesAsAnnouncedOrNotAtAll) {
    constexpr std::size_t kSize = 30 * kChunk + 7;
    onProgress = [&](std::uint64_t) { std::ofstream{file, std::ios::app} << "more"; };
    EXPECT_EQ(send(kSize, "grown"), static_cast<std::int64_t>(kSize));
    EXPECT_TRUE(arrived("grown") == bytes(kSize));
#if !defined(_WIN32)
    onProgress = [&](std::uint64_t) { fs::remove(file); };
    EXPECT_EQ(send(kSize, "vanished"), static_cast<std::int64_t>(kSize));
    EXPECT_TRUE(arrived("vanished") == bytes(kSize));
    fs::remove(target.store() / "dir" / "vanished");
#endif
    onProgress = [&](std::uint64_t) { fs::resize_file(file, 9 * kChunk + 5); };
    EXPECT_LT(send(kSize, "cut off"), 0);
    EXPECT_EQ(pool.codes(), Codes{kTransferSourceChanged});
    for (const auto& left : fs::directory_iterator{target.store() / "dir"}) {
        EXPECT_EQ(left.path().filename(), "grown");
    }
}

TEST_F(FileTransfer, WhatIsRefusedOrNoRegularFileCostsNoConnection) {
    EXPECT_LT(send(3 * kChunk, ".."), 0);
    EXPECT_LT(KvHIM_makeDir(pool, nullptr, handle, "dir", ".."), 0);
    fs::remove(file);
    EXPECT_LT(sendFile("name"), 0);
#if defined(_WIN32)
    fs::create_directory(file);
#else
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
#endif
    EXPECT_LT(sendFile("name"), 0);
    EXPECT_EQ(pool.codes(), (Codes{kTransferRefused, kTransferDirectoryRefused, kTransferSourceUnreadable,
                                   kTransferSourceUnreadable}));
    EXPECT_EQ(target.target.acceptedConnections(), 1U);
}

} // namespace
