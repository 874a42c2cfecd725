#include "project/files.h"

#include <deque>
#include <filesystem>
#include <iterator>
#include <vector>

#include "harness/measurement.h"
#include "project/host.h"

namespace project {
namespace {

constexpr std::uint32_t kSerialNumber = 1; // of every target
constexpr std::uint32_t kFileType = 1;

struct DeleteGroup {
    void operator()(KvSApplGroupHandle* group) const { KvApplMan_deleteApplGroupHandle(Pool{}, group); }
};

/// Processes of one group that are registered, a slot each on the devices in turn.
class Group {
public:
    Group(const std::deque<Device>& devices, std::uint32_t slots) {
        for (std::uint32_t i = 0; i < slots; ++i) {
            handles_.push_back(devices[i % devices.size()].device());
            accesses_.push_back(devices[i % devices.size()].access());
        }
        KvSApplGroupHandle* group = nullptr;
        pool_.expectDone(KvApplMan_createApplGroupHandle_2(pool_, handles_.data(), accesses_.data(), slots, &group),
                         "a group");
        group_.reset(group);
        applIds_.resize(slots);
        for (std::uint32_t i = 0; i < slots; ++i) {
            pool_.expectDone(KvApplMan_registerAppl_2(pool_, handles_[i], accesses_[i], group, i + 1, &applIds_[i]),
                             "a process");
        }
    }
    ~Group() {
        for (std::size_t i = 0; i < applIds_.size(); ++i) {
            KvApplMan_unloadAppl(pool_, handles_[i], accesses_[i], applIds_[i]);
        }
    }
    Group(const Group&) = delete;
    Group& operator=(const Group&) = delete;

    bench::Seconds download(const std::string& binary) {
        const std::vector<const char*> paths(applIds_.size(), binary.c_str());
        const auto begin = bench::Clock::now();
        const std::int32_t status =
            KvApplMan_downloadApplUtf8(pool_, handles_.data(), accesses_.data(), applIds_.data(), paths.data(), 0,
                                       static_cast<std::uint32_t>(paths.size()), nullptr, nullptr, nullptr);
        const bench::Seconds taken = bench::Clock::now() - begin;
        pool_.expectDone(status, "the download");
        return taken;
    }

    bench::Seconds load(const std::string& source, const char* name, std::uint32_t type) {
        const auto begin = bench::Clock::now();
        const std::int32_t status =
            KvApplMan_loadFileUtf8(pool_, handles_[0], accesses_[0], applIds_[0], source.c_str(), "", name, type, 0,
                                   nullptr, nullptr, nullptr);
        const bench::Seconds taken = bench::Clock::now() - begin;
        pool_.expectDone(status, "the transfer");
        return taken;
    }

    void expectReady() {
        for (std::size_t i = 0; i < applIds_.size(); ++i) {
            std::uint32_t state = KV_APPLMAN_STATE_ANY;
            std::int32_t size = sizeof state;
            pool_.expectDone(KvApplMan_getApplInfo(pool_, handles_[i], accesses_[i], applIds_[i], KV_APPLMAN_ITEM_STATE,
                                                   &state, &size),
                             "the state");
            bench::expect(state == KV_APPLMAN_STATE_READY, "a process is ready");
        }
    }

private:
    Pool pool_{};
    std::vector<void*> handles_{};
    std::vector<void*> accesses_{};
    std::vector<std::uint32_t> applIds_{};
    std::unique_ptr<KvSApplGroupHandle, DeleteGroup> group_{};
};

} // namespace

/// One file: address, source. It arrives as "file".
void measureFile(const bench::Arguments& arguments) {
    std::deque<Device> devices;
    devices.emplace_back(arguments.text("address"), kSerialNumber);
    Group group{devices, 1};
    const std::string source = arguments.text("source");
    const bench::Seconds taken = group.load(source, "file", kFileType);
    bench::report("mb_s", static_cast<double>(std::filesystem::file_size(source)) / 1e6 / taken.count());
    bench::report("peak_mib", bench::peakMemoryInMib());
}

/// All files of a folder: address, source. They arrive in "tree".
void measureTree(const bench::Arguments& arguments) {
    std::deque<Device> devices;
    devices.emplace_back(arguments.text("address"), kSerialNumber);
    Group group{devices, 1};
    const std::string source = arguments.text("source");
    const auto count = std::distance(std::filesystem::directory_iterator{source}, {});
    const bench::Seconds taken = group.load(source, "tree", KV_APPLMAN_FILE_TYPE_DIRECTORY);
    bench::report("files_per_s", static_cast<double>(count) / taken.count());
}

/// The download of a group: addresses (with commas between them), slots, source.
void measureGroup(const bench::Arguments& arguments) {
    const std::string& addresses = arguments.text("addresses");
    std::deque<Device> devices;
    for (std::size_t begin = 0; begin < addresses.size();) {
        const std::size_t end = std::min(addresses.find(',', begin), addresses.size());
        devices.emplace_back(addresses.substr(begin, end - begin), kSerialNumber);
        begin = end + 1;
    }
    const auto slots = static_cast<std::uint32_t>(arguments.count("slots"));
    Group group{devices, slots};
    const bench::Seconds taken = group.download(arguments.text("source"));
    group.expectReady();
    bench::report("ms_per_slot", taken.count() * 1000 / slots);
}

} // namespace project
