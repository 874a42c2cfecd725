#include "each_device.h"

#include <algorithm>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
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

/// A call that says again what an earlier one has said tells nothing new, nor does the list of those of a name, when it is
/// empty.
void addNew(Messages& all, const Messages& more) {
    for (const kvapplman::Message& message : more) {
        const auto same = [&](const auto& known) { return known.code == message.code && known.text == message.text; };
        if (message.code == KV_APPLMAN_MSG_APPLICATION_NOT_LOADED || std::ranges::any_of(all, same)) { continue; }
        all.push_back(message);
    }
}

Told askTarget(Context& context, const Device& device, const AskTarget& ask) {
    Messages warnings;
    kvapplman::Target target{device.address, device.serialNumber};
    target.onMessages([&](const char*, const Messages& messages) { addNew(warnings, messages); });
    checkBoot(target, context.options);
    Told told = ask(target);
    if (told.emptyList != nullptr && !warnings.empty()) {
        throw kvapplman::Error(told.emptyList, KV_APPLMAN_STATUS_REMOTE_CALL, warnings);
    }
    if (!warnings.empty()) { context.output.warning(device.name, warnings); }
    told.fields["messages"] = toJson(warnings);
    return told;
}

/// One line stands behind the device's name, several stand below it.
std::string textOf(const Told& told, const Device& device, bool several) {
    if (!several || told.text.empty()) { return told.text; }
    const bool oneLine = std::ranges::count(told.text, '\n') == 1;
    return device.name + (oneLine ? ": " : ":\n") + told.text;
}

ExitCode tellOne(Context& context, const Device& device, const TellOfDevice& tell, bool several) {
    Json entry{{"device", device.name}, {"address", device.address}, {"exitCode", static_cast<int>(ExitCode::done)}};
    try {
        const Told told = tell(device);
        entry.update(told.fields);
        context.output.print(textOf(told, device, several));
        context.output.result(entry);
        return ExitCode::done;
    } catch (const std::exception& thrown) {
        const Failure failure = failureOf(thrown);
        context.output.failure(device.name, failure);
        entry["error"] = toJson(failure);
        entry["exitCode"] = static_cast<int>(failure.exitCode);
        context.output.result(entry);
        return failure.exitCode;
    }
}

} // namespace

ExitCode tellEachDevice(Context& context, const TellOfDevice& tell) {
    std::signal(SIGINT,
                [](int) { std::_Exit(static_cast<int>(ExitCode::interrupted)); }); // there is nothing to clean up
    const Deadline deadline{context};
    const std::vector<Device> devices = devicesOf(context.options, context.configuration);
    std::vector<ExitCode> each;
    each.reserve(devices.size());
    for (const Device& device : devices) {
        each.push_back(tellOne(context, device, tell, devices.size() > 1));
    }
    return togetherOf(each);
}

ExitCode askEachDevice(Context& context, const AskTarget& ask) {
    return tellEachDevice(context, [&](const Device& device) { return askTarget(context, device, ask); });
}

ExitCode togetherOf(const std::vector<ExitCode>& each) {
    const auto failed = std::ranges::find_if(each, [](ExitCode code) { return code != ExitCode::done; });
    if (failed == each.end()) { return ExitCode::done; }
    return std::ranges::count(each, ExitCode::done) > 0 ? ExitCode::partly : *failed;
}

} // namespace tool
