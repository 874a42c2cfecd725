// A device behind which a simulated target runs in this process, with everything that a call needs.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/host_interface.h"
#include "simulator/simulated_target.h"
#include "support/pool.h"
#include "support/recorded_clock.h"
#include "support/wire.h"

/// The messages of a pool, each as `operation 0xcode(arguments)`. Those of the platform's own are left out: what they say
/// is the business of the platform's tests.
inline std::vector<std::string> messages(const Pool& pool) {
    constexpr std::uint32_t kPlatformCodes = 0x12600000;
    const KvCErrorListPool& list = pool;
    std::vector<std::string> all;
    for (std::uint32_t i = 0; i < KvPlatform_entryCount(list); ++i) {
        const std::uint32_t code = KvPlatform_entryCode(list, i);
        if ((code & 0xFFF00000U) == kPlatformCodes) { continue; }
        char number[16];
        std::snprintf(number, sizeof number, code == 1024 ? "%u" : "0x%x", code);
        std::string text = std::string(KvPlatform_entryOperation(list, i)) + " " + number;
        for (std::uint32_t k = 0; k < KvPlatform_entryArgumentCount(list, i); ++k) {
            text += (k == 0 ? "(" : ",") + std::string(KvPlatform_entryArgument(list, i, k));
        }
        all.push_back(text + (KvPlatform_entryArgumentCount(list, i) > 0 ? ")" : ""));
    }
    return all;
}

using Messages = std::vector<std::string>;

/// Empty when there is no such file, and for a folder.
inline std::string contentOf(const std::filesystem::path& file) {
    if (!std::filesystem::is_regular_file(file)) { return {}; } // reading a folder throws
    std::ifstream stream{file, std::ios::binary};
    return {std::istreambuf_iterator<char>{stream}, {}};
}

/// A folder of its own that goes with its scope.
class TemporaryFolder {
public:
    TemporaryFolder() {
        do { // several test programs may ask at once
            path_ = std::filesystem::temp_directory_path() / ("kvtest-" + std::to_string(std::random_device{}()));
        } while (!std::filesystem::create_directory(path_));
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

    /// Makes a file, and the directories on the way to it. Result: its path.
    std::string file(const std::filesystem::path& name, const std::string& content) const {
        std::filesystem::create_directories((path_ / name).parent_path());
        std::ofstream{path_ / name, std::ios::binary} << content;
        return (path_ / name).string();
    }

private:
    std::filesystem::path path_;
};

/// A target, whose commands take no time, its device and an access-restriction handle of it.
class TargetDevice {
public:
    explicit TargetDevice(const simulated_target::Options& options = {}) : target(withStore(options)) {
        EXPECT_EQ(KvPlatform_addDevice(pool_, address.c_str(), options.cnSerialNumber, &device), 0);
        EXPECT_EQ(KvHIM_createAccessRestrictionHandle(pool_, device, &access), 0);
        std::uint64_t size = sizeof accessId;
        EXPECT_EQ(KvHIM_getParam(pool_, access, 12, 0, &size, &accessId), 0);
    }
    ~TargetDevice() { EXPECT_EQ(KvPlatform_removeDevice(pool_, device), 0); }

    const std::filesystem::path& store() const { return folder_.path(); }

private:
    simulated_target::Options withStore(simulated_target::Options options) {
        options.store = folder_.path();
        options.commandDelay = {};
        return options;
    }

    Pool pool_;
    TemporaryFolder folder_;

public:
    simulated_target::SimulatedTarget target;
    std::string address = target.start();
    void* device = nullptr;
    void* access = nullptr;
    std::uint32_t accessId = 0;
};

/// A test with one target and a clock that records naps.
class OneTarget : public ::testing::Test {
protected:
    explicit OneTarget(const simulated_target::Options& options = {}) : t(options) { recorded_clock::restart(); }

    /// The procedures that were asked for, in order.
    std::vector<std::uint32_t> procedures() const {
        std::vector<std::uint32_t> all;
        for (const auto& request : t.target.requests()) {
            all.push_back(request.procedure);
        }
        return all;
    }

    template <class Record>
    Record request(std::size_t index) const {
        return wire::recordOf<Record>(t.target.requests().at(index).arguments);
    }

    TargetDevice t;
    Pool pool;
};
