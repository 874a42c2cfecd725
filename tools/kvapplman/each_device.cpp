#include "each_device.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "applications.h"
#include "worker.h"

namespace tool {
namespace {

using kvapplman::Messages;

/// No call of the library can be ended, so at the deadline the program ends.
class Deadline {
public:
    explicit Deadline(Context& context) {
        if (const auto timeout = context.options.timeout) {
            watch_ = std::thread{[this, &context, time = *timeout] { wait(context, time); }};
        }
    }
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;
    ~Deadline() {
        {
            const std::lock_guard lock{mutex_};
            over_ = true;
        }
        changed_.notify_all();
        if (watch_.joinable()) { watch_.join(); }
    }

private:
    void wait(Context& context, std::chrono::milliseconds time) {
        std::unique_lock lock{mutex_};
        if (changed_.wait_for(lock, time, [this] { return over_; })) { return; }
        const Failure failure{ExitCode::timedOut, "The command was not done in the time of --timeout."};
        context.output.failure("", failure);
        context.output.end(failure.exitCode, failure);
        leave(static_cast<int>(failure.exitCode));
    }

    std::mutex mutex_{};
    std::condition_variable changed_{};
    bool over_ = false;
    std::thread watch_{};
};

Told askOne(Context& context, const Device& device, const Ask& ask, Messages& warnings) {
    kvapplman::Target target{device.address, device.serialNumber};
    target.onMessages([&](const char*, const Messages& messages) {
        warnings.insert(warnings.end(), messages.begin(), messages.end());
        context.output.warning(device.name, messages);
    });
    checkBoot(target, context.options);
    return ask(target);
}

ExitCode tellOf(Context& context, const Device& device, const Ask& ask, bool several) {
    Json entry{{"device", device.name}, {"address", device.address}};
    Messages warnings;
    ExitCode exitCode = ExitCode::done;
    try {
        const Told told = askOne(context, device, ask, warnings);
        entry.update(told.fields);
        if (!told.text.empty()) { context.output.print((several ? device.name + ":\n" : "") + told.text); }
    } catch (const std::exception& thrown) {
        const Failure failure = failureOf(thrown);
        context.output.failure(device.name, failure);
        entry["error"] = toJson(failure);
        exitCode = failure.exitCode;
    }
    entry["exitCode"] = static_cast<int>(exitCode);
    entry["messages"] = toJson(warnings);
    context.output.result(entry);
    return exitCode;
}

} // namespace

ExitCode askEachDevice(Context& context, const Ask& ask) {
    const Deadline deadline{context};
    const std::vector<Device> devices = devicesOf(context.options, context.configuration);
    std::vector<ExitCode> each;
    for (const Device& device : devices) {
        each.push_back(tellOf(context, device, ask, devices.size() > 1));
    }
    return togetherOf(each);
}

ExitCode togetherOf(const std::vector<ExitCode>& each) {
    const auto failed = std::ranges::find_if(each, [](ExitCode code) { return code != ExitCode::done; });
    if (failed == each.end()) { return ExitCode::done; }
    return std::ranges::count(each, ExitCode::done) > 0 ? ExitCode::partly : *failed;
}

} // namespace tool
