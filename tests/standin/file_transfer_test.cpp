// File transfer against a small service in this process, and against peers that do not play by the rules.
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <numeric>
#include <optional>

#include <gtest/gtest.h>

#include "error_lists/platform_messages.h"
#include "file_transfer/file_transfer_protocol.h"
#include "host_interface/device_time.h"
#include "platform/host_interface.h"
#include "platform/host_system.h"
#include "rpc_server/rpc_server.h"
#include "support/pool.h"
#include "support/scripted_peer.h"
#include "support/shortened_limits.h"

namespace {

using namespace file_transfer;
using namespace platform_messages;
using Content = std::vector<std::uint8_t>;
using Codes = std::vector<std::uint32_t>;

constexpr std::size_t kChunk = 256 << 10;

/// Keeps what is committed. Refuses the name "refused"; closes the connection at a write of "cut".
class TransferService : public kvrpc::RpcService {
public:
    kvrpc::RpcReply handle(const kvrpc::RpcCall& call) override {
        const std::lock_guard lock{mutex};
        procedures.push_back(call.procedure);
        Xdr in = Xdr::decoder(call.arguments);
        kvrpc::RpcReply reply;
        Reply answer{carryOut(call.procedure, in)};
        reply.closeConnection = call.procedure == kWrite && open && open->name == "cut";
        Xdr out = Xdr::encoder(reply.results);
        xdr_record(out, answer);
        return reply;
    }
    void connectionClosed(std::uint64_t) noexcept override {}

    std::mutex mutex{};
    std::vector<std::uint32_t> procedures{};
    std::map<std::string, Content> files{};
    std::vector<std::string> directories{};
    std::string time{};

private:
    std::int32_t carryOut(std::uint32_t procedure, Xdr& in) {
        switch (procedure) {
        case kOpen:
            return begin(read<OpenRequest>(in));
        case kWrite:
            return write(read<WriteRequest>(in));
        case kCommit:
            return commit(read<TransferRequest>(in));
        case kAbort:
            open.reset();
            return kDone;
        case kMakeDirectory:
            return makeDirectory(read<MakeDirectoryRequest>(in));
        default:
            time = read<SetTimeRequest>(in).localTime;
            return time.empty() ? kStoreFailed : kDone;
        }
    }
    template <class Request>
    static Request read(Xdr& in) {
        Request request;
        if (!xdr_record(in, request) || in.left() != 0) { throw std::runtime_error{"malformed"}; }
        return request;
    }
    std::int32_t begin(const OpenRequest& request) {
        open.reset();
        if (request.name == "refused") { return kBadName; }
        open = request;
        content.clear();
        return kDone;
    }
    std::int32_t write(const WriteRequest& request) {
        if (!open || request.transfer != open->transfer) { return kNoSuchTransfer; }
        if (request.offset != content.size() || request.bytes.size() > open->size - content.size()) {
            return kBadOffset;
        }
        content.insert(content.end(), request.bytes.begin(), request.bytes.end());
        return kDone;
    }
    std::int32_t commit(const TransferRequest& request) {
        if (!open || request.transfer != open->transfer) { return kNoSuchTransfer; }
        if (content.size() != open->size) { return kIncomplete; }
        files[open->directory + '/' + open->name] = content;
        open.reset();
        return kDone;
    }
    std::int32_t makeDirectory(const MakeDirectoryRequest& request) {
        if (request.name == "refused") { return kBadName; }
        directories.push_back(request.base + '/' + request.name);
        return kDone;
    }

    std::optional<OpenRequest> open{};
    Content content{};
};

Content contentOf(std::size_t size) {
    Content content(size);
    for (std::size_t i = 0; i < size; ++i) {
        content[i] = static_cast<std::uint8_t>(i ^ i >> 8 ^ i >> 16);
    }
    return content;
}

/// A file of the host that is gone with its scope.
class HostFile {
public:
    explicit HostFile(std::size_t size) {
        char pattern[] = "/tmp/transfer-XXXXXX";
        directory_ = ::mkdtemp(pattern);
        append(contentOf(size));
    }
    ~HostFile() { std::filesystem::remove_all(directory_); }
    HostFile(const HostFile&) = delete;
    HostFile& operator=(const HostFile&) = delete;

    std::filesystem::path path() const { return directory_ / "file"; }
    std::u16string hostPath() const { return *host_system::fullPath(path().u16string()); }
    void append(const Content& content) const {
        std::ofstream{path(), std::ios::binary | std::ios::app}.write(reinterpret_cast<const char*>(content.data()),
                                                                      static_cast<std::streamsize>(content.size()));
    }

private:
    std::filesystem::path directory_{};
};

/// A device at an address, and a file-transfer handle for it.
struct Device {
    explicit Device(const std::string& address) {
        KvPlatform_addDevice(pool, address.c_str(), 1, &device);
        created = KvHIM_createFTClientHandle(pool, device, &handle);
    }
    ~Device() {
        KvHIM_deleteFTClientHandle(pool, handle);
        KvPlatform_removeDevice(pool, device);
    }
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    std::int64_t put(const HostFile& file, const char* name = "name", KvHIM_BytesCallback callback = nullptr,
                     void* context = nullptr) {
        return KvHIM_putFileU(pool, nullptr, handle, file.hostPath().c_str(), "dir", name, callback, context);
    }

    Pool pool{};
    void* device = nullptr;
    void* handle = nullptr;
    std::int32_t created = -1;
};

class FileTransfer : public testing::Test {
protected:
    TransferService service{};
    kvrpc::RpcServer server{service};
    std::string address = server.start("127.0.0.1", 0);
    Device device{address};

    std::vector<std::uint32_t> procedures() {
        const std::lock_guard lock{service.mutex};
        return std::exchange(service.procedures, {});
    }
};

using Reports = std::vector<std::uint64_t>;
void keepReport(std::uint64_t bytes, void* reports) { static_cast<Reports*>(reports)->push_back(bytes); }

TEST_F(FileTransfer, ContentArrivesExactlyAndEveryChunkIsReported) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, kChunk - 1, kChunk, kChunk + 1, 20 * kChunk + 3}) {
        SCOPED_TRACE(size);
        const HostFile file{size};
        Reports reports;
        EXPECT_EQ(device.put(file, "name", keepReport, &reports), static_cast<std::int64_t>(size));
        EXPECT_TRUE(service.files.at("dir/name") == contentOf(size));
        Reports expected;
        for (std::size_t end = kChunk; end < size; end += kChunk) {
            expected.push_back(end);
        }
        if (size > 0) { expected.push_back(size); }
        EXPECT_EQ(reports, expected);
    }
    EXPECT_EQ(device.pool.codes(), Codes{});
    EXPECT_EQ(server.acceptedConnections(), 1U);
}

TEST_F(FileTransfer, WhatChangesWhileItIsSentArrivesAsAnnouncedOrNotAtAll) {
    struct Case {
        const char* name;
        void (*change)(const HostFile& file);
        bool sent;
    };
    const Case cases[] = {
        {"deleted", [](const HostFile& file) { std::filesystem::remove(file.path()); }, true},
        {"grown", [](const HostFile& file) { file.append(contentOf(1000)); }, true},
        {"cut off", [](const HostFile& file) { std::filesystem::resize_file(file.path(), 9 * kChunk + 5); }, false},
    };
    constexpr std::size_t kSize = 30 * kChunk + 7;
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        const HostFile file{kSize};
        struct Context {
            const Case& present;
            const HostFile& file;
            std::uint64_t last = 0;
        } context{each, file};
        const auto change = [](std::uint64_t bytes, void* given) {
            auto& told = *static_cast<Context*>(given);
            if (std::exchange(told.last, bytes) == 0) { told.present.change(told.file); }
        };
        const std::int64_t result = device.put(file, each.name, change, &context);
        EXPECT_EQ(result >= 0, each.sent);
        EXPECT_EQ(service.files.count(std::string{"dir/"} + each.name), each.sent ? 1U : 0U);
        EXPECT_LE(context.last, kSize);
        if (each.sent) { EXPECT_TRUE(service.files.at(std::string{"dir/"} + each.name) == contentOf(kSize)); }
    }
    EXPECT_EQ(device.pool.codes(), Codes{kTransferSourceChanged});
    EXPECT_EQ(procedures().back(), kAbort);
}

TEST_F(FileTransfer, AfterAFailedTransferTheNextOneWorks) {
    const HostFile file{3 * kChunk};
    EXPECT_LT(device.put(file, "refused"), 0);
    EXPECT_EQ(procedures().back(), kAbort);
    EXPECT_LT(device.put(file, "cut"), 0);
    EXPECT_EQ(device.pool.codes(), (Codes{kTransferRefused, kRpcConnectionLost}));
    EXPECT_EQ(device.put(file), static_cast<std::int64_t>(3 * kChunk));
    EXPECT_EQ(server.acceptedConnections(), 2U);
    EXPECT_EQ(service.files.size(), 1U);
}

TEST_F(FileTransfer, ACallbackThatThrowsIsNotCalledAgain) {
    const HostFile file{3 * kChunk};
    int calls = 0;
    const auto throwing = [](std::uint64_t, void* count) {
        ++*static_cast<int*>(count);
        throw 1;
    };
    EXPECT_EQ(device.put(file, "name", throwing, &calls), static_cast<std::int64_t>(3 * kChunk));
    EXPECT_EQ(calls, 1);
}

TEST_F(FileTransfer, OnlyRegularFilesAreSent) {
    const HostFile file{1};
    const std::u16string path = file.hostPath();
    EXPECT_LT(
        KvHIM_putFileU(device.pool, nullptr, device.handle, (path + u"2").c_str(), "dir", "name", nullptr, nullptr), 0);
    ASSERT_EQ(::mkfifo((file.path().string() + "3").c_str(), 0600), 0);
    EXPECT_LT(
        KvHIM_putFileU(device.pool, nullptr, device.handle, (path + u"3").c_str(), "dir", "name", nullptr, nullptr), 0);
    EXPECT_EQ(device.pool.codes(), (Codes{kTransferSourceUnreadable, kTransferSourceUnreadable}));
    EXPECT_EQ(procedures().size(), 0U) << "nothing was sent";
}

TEST_F(FileTransfer, MakesDirectoriesAndSetsTheTime) {
    EXPECT_EQ(KvHIM_makeDir(device.pool, nullptr, device.handle, "base", "new"), 0);
    EXPECT_EQ(service.directories, std::vector<std::string>{"base/new"});
    EXPECT_LT(KvHIM_makeDir(device.pool, nullptr, device.handle, "base", "refused"), 0);
    EXPECT_EQ(sendHostTime(device.pool, address, "202601021530.07"), 0);
    EXPECT_EQ(service.time, "202601021530.07");
    EXPECT_LT(sendHostTime(device.pool, address, ""), 0);
    EXPECT_LT(sendHostTime(device.pool, scripted_peer::deadAddress(), "202601021530.07"), 0);
    EXPECT_EQ(device.pool.codes(), (Codes{kTransferDirectoryRefused, kTransferRefused, kRpcConnectionRefused}));
}

TEST_F(FileTransfer, AHandleThatNamesNothingIsAFailure) {
    const HostFile file{1};
    void* const deleted = device.handle;
    EXPECT_EQ(KvHIM_deleteFTClientHandle(device.pool, deleted), 0);
    for (void* const handle : {deleted, device.device, static_cast<void*>(nullptr)}) {
        device.handle = handle;
        EXPECT_LT(device.put(file), 0);
        EXPECT_NE(KvHIM_makeDir(device.pool, nullptr, handle, "base", "new"), 0);
        EXPECT_NE(KvHIM_deleteFTClientHandle(device.pool, handle), 0);
    }
    EXPECT_EQ(device.pool.codes(), Codes(9, kTransferHandleUnknown));
}

TEST(FileTransferHandle, IsNotMadeWithoutATargetThatCanBeReached) {
    Device unreachable{scripted_peer::deadAddress()};
    EXPECT_NE(unreachable.created, 0);
    EXPECT_EQ(unreachable.handle, nullptr);
    EXPECT_EQ(unreachable.pool.codes(), Codes{kRpcConnectionRefused});
    void* handle = &handle;
    unreachable.pool->reset();
    EXPECT_NE(KvHIM_createFTClientHandle(unreachable.pool, nullptr, &handle), 0);
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(unreachable.pool.codes(), Codes{kDeviceUnknown});
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
    Device device{peer.address()};
    EXPECT_EQ(device.put(HostFile{100}), 100);
}

TEST(FileTransferPeer, SilenceCostsTheCallTimeoutAndTheConnection) {
    scripted_peer::ScriptedPeer peer{{[](const scripted_peer::Wire& wire) { wire.awaitEnd(); }}};
    Device device{peer.address()};
    const ShortenedLimits shortened;
    EXPECT_LT(device.put(HostFile{100}), 0);
    EXPECT_EQ(device.pool.codes(), Codes{kRpcCallTimedOut});
    peer.awaitClosed(1);
}

} // namespace
