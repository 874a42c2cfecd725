// File transfer into the store of a simulated target, and to peers that do not play by the rules.
#include <fstream>
#include <functional>
#include <iterator>

#include <gtest/gtest.h>

#include "error_lists/platform_messages.h"
#include "platform/host_system.h"
#include "support/one_target.h"
#include "support/scripted_peer.h"

namespace {

using namespace platform_messages;
using Codes = std::vector<std::uint32_t>;
namespace fs = std::filesystem;

constexpr std::size_t kChunk = 256 << 10;

std::string contentOf(std::size_t size) {
    std::string content(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        content[i] = static_cast<char>(i ^ i >> 8 ^ i >> 16);
    }
    return content;
}

std::string contentOf(const fs::path& file) {
    std::ifstream stream{file, std::ios::binary};
    return {std::istreambuf_iterator<char>{stream}, {}};
}

/// A host file, and a device with a file-transfer handle; the calls that tell of progress are passed on.
class Sender {
public:
    explicit Sender(void* device) { KvHIM_createFTClientHandle(pool, device, &handle); }
    ~Sender() { KvHIM_deleteFTClientHandle(pool, handle); }
    Sender(const Sender&) = delete;
    Sender& operator=(const Sender&) = delete;

    std::int64_t send(std::size_t size, const char* name = "name") {
        std::ofstream{path(), std::ios::binary} << contentOf(size);
        const std::u16string full = *host_system::fullPath(path().u16string());
        const auto report = [](std::uint64_t bytes, void* self) { static_cast<Sender*>(self)->onProgress(bytes); };
        return KvHIM_putFileU(pool, nullptr, handle, full.c_str(), "dir", name, report, this);
    }
    fs::path path() const { return folder_.path() / "file"; }

    std::function<void(std::uint64_t)> onProgress = [](std::uint64_t) {};
    Pool pool{};
    void* handle = nullptr;

private:
    TemporaryFolder folder_{};
};

class FileTransfer : public testing::Test {
protected:
    fs::path arrived(const char* name = "name") const { return target.store() / "dir" / name; }

    TargetDevice target{};
    Sender sender{target.device};
};

TEST_F(FileTransfer, ContentArrivesExactlyAndEveryChunkIsReported) {
    std::vector<std::uint64_t> reports;
    sender.onProgress = [&](std::uint64_t bytes) { reports.push_back(bytes); };
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, kChunk, kChunk + 1, 20 * kChunk - 1}) {
        SCOPED_TRACE(size);
        reports.clear();
        EXPECT_EQ(sender.send(size), static_cast<std::int64_t>(size));
        EXPECT_TRUE(contentOf(arrived()) == contentOf(size));
        std::vector<std::uint64_t> expected;
        for (std::size_t sent = 0; sent < size; sent = expected.back()) {
            expected.push_back(std::min(sent + kChunk, size));
        }
        EXPECT_EQ(reports, expected);
    }
    EXPECT_EQ(sender.pool.codes(), Codes{});
    EXPECT_EQ(target.target.acceptedConnections(), 1U);
}

TEST_F(FileTransfer, WhatChangesWhileItIsSentArrivesAsAnnouncedOrNotAtAll) {
    constexpr std::size_t kSize = 30 * kChunk + 7;
    bool changed = false;
    sender.onProgress = [&](std::uint64_t) {
        if (!std::exchange(changed, true)) { std::ofstream{sender.path(), std::ios::app} << "more"; }
    };
    EXPECT_EQ(sender.send(kSize, "grown"), static_cast<std::int64_t>(kSize));
    EXPECT_TRUE(contentOf(arrived("grown")) == contentOf(kSize));
#if !defined(_WIN32)
    sender.onProgress = [&](std::uint64_t) { fs::remove(sender.path()); };
    EXPECT_EQ(sender.send(kSize, "vanished"), static_cast<std::int64_t>(kSize));
    EXPECT_TRUE(contentOf(arrived("vanished")) == contentOf(kSize));
#endif
    sender.onProgress = [&](std::uint64_t) { fs::resize_file(sender.path(), 9 * kChunk + 5); };
    EXPECT_LT(sender.send(kSize, "cut off"), 0);
    EXPECT_EQ(sender.pool.codes(), Codes{kTransferSourceChanged});
    for (const auto& left : fs::directory_iterator{arrived().parent_path()}) {
        EXPECT_TRUE(left.path().filename() == "grown" || left.path().filename() == "vanished") << left.path();
    }
}

TEST(FileTransferPeer, ASmallFileTakesOneRoundTrip) {
    scripted_peer::ScriptedPeer peer{{[](const scripted_peer::Wire& wire) {
        std::vector<scripted_peer::Bytes> calls(3);
        for (auto& call : calls) {
            call = wire.receiveRecord();
        }
        for (const auto& call : calls) {
            wire.send(scripted_peer::reply(call, scripted_peer::words({0})));
        }
        wire.awaitEnd();
    }}};
    Pool pool;
    void* device = nullptr;
    ASSERT_EQ(KvPlatform_addDevice(pool, peer.address().c_str(), 1, &device), 0);
    EXPECT_EQ(Sender{device}.send(100), 100);
    EXPECT_EQ(KvPlatform_removeDevice(pool, device), 0);
}

} // namespace
