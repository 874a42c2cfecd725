#include "deployment.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <system_error>
#include <thread>
#include <utility>

#include "failure.h"

namespace tool {
namespace {

using kvapplman::Application;
using kvapplman::Item;
using kvapplman::Message;
using kvapplman::Messages;
using kvapplman::State;
using kvapplman::Target;

constexpr std::chrono::milliseconds kBetweenLooks{100};
constexpr std::chrono::milliseconds kBetweenUpdates{50}; // of progress
constexpr std::uint32_t kProcessEnded = 0x14a00814;      // [target] by itself; arguments: process, how

/// Null when the target does not answer for it. That it cannot be reached is a failure.
template <class Ask>
Json orNull(Ask ask) {
    try {
        return ask();
    } catch (const kvapplman::Error& failure) {
        if (failureOf(failure).exitCode != ExitCode::refused) { throw; }
        return nullptr;
    }
}

/// Bytes of the binaries that were transferred, from the library's share of the whole task. The library counts each binary's
/// bytes, and all of them once more per slot and phase.
class TransferredBytes {
public:
    TransferredBytes(const std::vector<Slot>& slots, bool completeLoad) {
        for (const Slot& slot : slots) {
            std::error_code failure;
            const std::uintmax_t size = slot.empty() ? 0 : std::filesystem::file_size(slot.file, failure);
            sizes_.push_back(failure ? 0 : static_cast<double>(size));
            total_ += sizes_.back();
        }
        units_ = total_ + total_ * static_cast<double>(slots.size()) * (completeLoad ? 1 : 3);
    }

    double total() const { return total_; }
    double at(double fraction) const {
        double units = fraction * units_;
        double bytes = 0;
        for (const double size : sizes_) {
            const double ofSlot = std::min(units, size);
            bytes += ofSlot;
            units -= ofSlot + total_;
            if (units <= 0) { break; }
        }
        return bytes;
    }

private:
    std::vector<double> sizes_{};
    double total_ = 0;
    double units_ = 0;
};

class Deploying {
public:
    Deploying(WorkerLink& link, const Deployment& what) : link_(link), what_(what) {}

    void run() {
        look();
        registerAll();
        setArguments();
        download();
        if (what_.start) { start(); }
        if (what_.follow) { follow(); }
    }

private:
    struct Process {
        std::uint32_t slot;
        Application application;
        State state = State::any;
    };

    void look() {
        for (const Slot& slot : what_.slots) {
            if (slot.empty() || targets_.contains(slot.device.address)) { continue; }
            link_.checkpoint();
            const Device& device = slot.device;
            Target& target = targets_.try_emplace(device.address, device.address, device.serialNumber).first->second;
            target.onMessages([this](const char* function, const Messages& messages) { hear(function, messages); });
            link_.tell({{"event", "device"},
                        {"address", device.address},
                        {"startTime", orNull([&] {
                             return Json(target.manager().info<Item::startTime>().time_since_epoch() /
                                         std::chrono::seconds{1});
                         })},
                        {"applications", orNull([&] { return Json(target.applicationIds()); })}});
        }
    }

    void registerAll() {
        std::vector<const Target*> targets;
        for (const Slot& slot : what_.slots) {
            targets.push_back(slot.empty() ? nullptr : &targets_.at(slot.device.address));
        }
        link_.checkpoint();
        group_.emplace(targets);
        for (std::uint32_t number = 1; number <= targets.size(); ++number) {
            if (targets[number - 1] != nullptr) { registerSlot(number); }
        }
    }

    void registerSlot(std::uint32_t number) {
        link_.checkpoint();
        link_.tell({{"event", "registering"}, {"slot", number}});
        try {
            processes_.push_back({number, group_->registerApplication(number)});
        } catch (const kvapplman::Error&) {
            tellRegistered(number);
            throw;
        }
        tellRegistered(number);
    }

    void tellRegistered(std::uint32_t number) {
        const std::uint32_t id = group_->applicationId(number);
        if (id != 0) { link_.tell({{"event", "registered"}, {"slot", number}, {"id", id}}); }
    }

    void setArguments() {
        if (what_.arguments.empty()) { return; }
        for (const Process& process : processes_) {
            link_.checkpoint();
            process.application.set<kvapplman::Param::arguments>(what_.arguments);
        }
    }

    void download() {
        link_.checkpoint();
        std::vector<std::filesystem::path> files;
        for (const Slot& slot : what_.slots) {
            files.push_back(slot.file);
        }
        const bool completeLoad = processes_.front().application.info<Item::initialisationCalls>() == 0;
        const TransferredBytes transferred{what_.slots, completeLoad};
        kvapplman::DownloadOptions options;
        options.progress = [&](const kvapplman::Progress& progress) { show(progress, transferred); };
        group_->download(files, options);
        link_.tell({{"event", "downloaded"}});
    }

    void show(const kvapplman::Progress& progress, const TransferredBytes& transferred) {
        link_.checkpoint();
        const Clock::time_point now = Clock::now();
        const bool newTask = progress.phase != shownPhase_ || progress.fileName != shownFile_;
        if (!newTask && now - shownTime_ < kBetweenUpdates) { return; }
        shownTime_ = now;
        shownPhase_ = progress.phase;
        shownFile_ = progress.fileName;
        link_.tell({{"event", "progress"},
                    {"fraction", progress.fraction},
                    {"bytes", static_cast<std::uint64_t>(transferred.at(progress.fraction))},
                    {"totalBytes", static_cast<std::uint64_t>(transferred.total())},
                    {"phase", progress.phaseName},
                    {"file", progress.fileName}});
    }

    void start() {
        for (const Process& process : processes_) {
            link_.checkpoint();
            process.application.start();
            link_.tell({{"event", "started"}, {"slot", process.slot}});
        }
    }

    void follow() {
        following_ = true;
        while (!processes_.empty()) {
            for (auto process = processes_.begin(); process != processes_.end();) {
                process = look(*process) ? processes_.erase(process) : process + 1;
            }
            if (!processes_.empty()) { std::this_thread::sleep_for(kBetweenLooks); }
        }
    }

    /// True when the process has stopped.
    bool look(Process& process) {
        link_.checkpoint();
        end_ = nullptr;
        const State state = process.application.state();
        if (state == process.state) { return false; }
        process.state = state;
        link_.tell({{"event", "state"}, {"slot", process.slot}, {"state", rowOf(kvapplman::kStates, state).name}});
        if (state != State::stopped) { return false; }
        link_.tell({{"event", "ended"}, {"slot", process.slot}, {"how", end_}});
        return true;
    }

    void hear(const char* function, const Messages& messages) {
        for (const Message& message : messages) {
            if (message.code == kProcessEnded && message.arguments.size() > 1) { end_ = message.arguments[1]; }
        }
        if (!following_) { link_.tell(eventOf("warning", {ExitCode::done, {}, function, KV_APPLMAN_OK, messages})); }
    }

    WorkerLink& link_;
    const Deployment& what_;
    std::map<std::string, Target> targets_{}; // by address
    std::optional<kvapplman::Group> group_{};
    std::vector<Process> processes_{};
    Clock::time_point shownTime_{};
    std::uint32_t shownPhase_ = 0;
    std::string shownFile_{};
    bool following_ = false; // then every answer about a process that has ended says so again
    Json end_{};             // how the process that is looked at has ended
};

} // namespace

Job deploymentJob(Deployment deployment) {
    return [what = std::move(deployment)](WorkerLink& link) {
        try {
            Deploying{link, what}.run();
        } catch (const std::exception& thrown) { link.tell(eventOf("failed", failureOf(thrown))); }
    };
}

} // namespace tool
