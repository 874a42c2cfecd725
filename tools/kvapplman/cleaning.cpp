// A worker per target does it, so that one that hangs holds up no other. It tells, as events:
//   removed     id
//   found       ids    the applications that nobody had heard of
//   unclear     ids    one of them may be ours, nobody can tell which
//   restarted          the target has lost everything by itself
//   obstacle           why it has to try again, as failure.h writes it
//   clean              nothing of ours is left
#include "cleaning.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "failure.h"
#include "worker.h"

namespace tool {
namespace {

using kvapplman::Application;
using kvapplman::Item;
using kvapplman::State;
using kvapplman::Target;

using Ids = std::vector<std::uint32_t>;

constexpr std::chrono::seconds kPatience{15};
constexpr std::chrono::milliseconds kBetweenTries{200};

bool contains(const Ids& ids, std::uint32_t id) { return std::ranges::find(ids, id) != ids.end(); }

class Cleaning {
public:
    Cleaning(WorkerLink& link, Remains& remains)
        : link_(link), remains_(remains), target_(remains.device.address, remains.device.serialNumber) {}

    /// What has been done is taken out of the remains, so that another try goes on with the rest.
    void run() {
        if (remains_.startTime && target_.manager().info<Item::startTime>() != *remains_.startTime) {
            link_.tell({{"event", "restarted"}});
        } else {
            if (remains_.unannounced && !findUnannounced()) { return; }
            for (; !remains_.ids.empty(); remains_.ids.pop_back()) {
                remove(target_.application(remains_.ids.back()));
            }
        }
        link_.tell({{"event", "clean"}});
    }

private:
    /// An application that was registered while nobody heard of it is new, its group has the size of ours, and nothing was
    /// announced for it yet. False when there is more than one such.
    bool findUnannounced() {
        Ids found;
        for (const std::uint32_t id : target_.applicationIds(State::registered)) {
            const bool known = contains(remains_.before.value_or(Ids{}), id) || contains(remains_.ids, id);
            if (!known && isUntouched(target_.application(id))) { found.push_back(id); }
        }
        const bool certain = found.empty() || (remains_.before && found.size() == 1);
        link_.tell({{"event", certain ? "found" : "unclear"}, {"ids", found}});
        if (!certain) { return false; }
        remains_.ids.insert(remains_.ids.end(), found.begin(), found.end());
        remains_.unannounced = false;
        return true;
    }

    bool isUntouched(const Application& application) const {
        return application.info<Item::fileName>().empty() && application.info<Item::groupSize>() == remains_.groupSize;
    }

    void remove(const Application& application) {
        if (remains_.stopFirst) { stop(application); }
        application.unload();
        link_.tell({{"event", "removed"}, {"id", application.id()}});
    }

    /// What does not stop is killed when it is unloaded.
    static void stop(const Application& application) {
        try {
            const State state = application.state();
            if (state == State::running || state == State::paused) { application.stop(); }
        } catch (const kvapplman::Error&) {}
    }

    WorkerLink& link_;
    Remains& remains_;
    Target target_;
};

void cleanWithPatience(WorkerLink& link, Remains remains) {
    for (;;) {
        try {
            return Cleaning{link, remains}.run();
        } catch (const kvapplman::Error& thrown) { link.tell(eventOf("obstacle", failureOf(thrown))); }
        link.checkpoint();
        std::this_thread::sleep_for(kBetweenTries);
    }
}

/// The supervisor's view of one target.
struct Progress {
    Remains remains{};
    bool clean = false;
    std::optional<Failure> obstacle{};
};

std::string textOf(const Ids& ids) {
    std::string text = ids.size() == 1 ? "application" : "applications";
    for (const std::uint32_t id : ids) {
        text += " " + std::to_string(id);
    }
    return text;
}

void take(Output& output, Progress& progress, const Json& event) {
    const std::string kind = event.at("event");
    const std::string& device = progress.remains.device.name;
    Ids& ids = progress.remains.ids;
    if (kind == "removed") {
        const std::uint32_t id = event.at("id");
        std::erase(ids, id);
        output.note(device + ": application " + std::to_string(id) + " is unloaded");
        output.event("unloaded", {{"device", device}, {"id", id}});
    } else if (kind == "found") {
        std::ranges::copy(event.at("ids").get<Ids>(), std::back_inserter(ids));
    } else if (kind == "unclear") {
        output.failure(device,
                       {ExitCode::other, "One of " + textOf(event.at("ids")) + " may be left from this command."});
    } else if (kind == "restarted") {
        output.note(device + ": has been restarted, and lost everything by that");
    } else if (kind == "obstacle") {
        progress.obstacle = failureFrom(event);
    } else if (kind == "clean") {
        progress.clean = true;
    }
}

void tellLeft(Output& output, const Progress& progress) {
    const Remains& remains = progress.remains;
    if (progress.obstacle) { output.failure(remains.device.name, *progress.obstacle); }
    if (!remains.ids.empty()) {
        output.failure(remains.device.name, {ExitCode::other, "Cannot unload " + textOf(remains.ids) + "."});
    } else if (!progress.obstacle) {
        output.failure(remains.device.name, {ExitCode::other, "It cannot be seen whether something is left."});
    }
}

} // namespace

std::vector<Remains> cleanUp(Output& output, std::vector<Remains> all) {
    std::vector<Job> jobs;
    std::vector<Progress> targets;
    for (Remains& remains : all) {
        jobs.emplace_back([remains](WorkerLink& link) { cleanWithPatience(link, remains); });
        targets.push_back({std::move(remains)});
    }
    const JobLimits limits{.atATime = jobs.size(), .deadline = Clock::now() + kPatience, .interruptible = false};
    runJobs(jobs, limits, [&](std::size_t target, const Json& event) { take(output, targets[target], event); });
    std::erase_if(targets, [](const Progress& target) { return target.clean; });
    std::vector<Remains> left;
    for (Progress& target : targets) {
        tellLeft(output, target);
        left.push_back(std::move(target.remains));
    }
    return left;
}

} // namespace tool
