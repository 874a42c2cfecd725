// watch: all applications of all devices, as they change. A worker per device looks, so that one that cannot be reached holds
// up no other. It tells, as events:
//   look         applications: per application id, state, group (addresses, one per slot), information
//   unreachable  why, as failure.h writes it
#include <algorithm>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <CLI/CLI.hpp>

#include "command.h"
#include "each_device.h"
#include "system.h"
#include "times.h"
#include "worker.h"

namespace tool {
namespace {

using kvapplman::Item;
using kvapplman::Target;

struct Wishes {
    double interval = 1.0;   // seconds
    std::uint32_t count = 0; // 0 = until it is interrupted
};

// The worker

Json lookAt(const Target& target, const kvapplman::ListedApplication& listed) {
    const kvapplman::Application application = target.application(listed.id);
    const kvapplman::State state = application.state();
    return {{"id", listed.id},
            {"state", rowOf(kvapplman::kStates, state).name},
            {"groupSize", application.info<Item::groupSize>()},
            {"information", listed.infoText}};
}

Json lookAt(const Target& target) {
    Json all = Json::array();
    for (const auto& listed : target.applications()) {
        try {
            all.push_back(lookAt(target, listed));
        } catch (const kvapplman::Error& failure) {
            if (failureOf(failure).exitCode != ExitCode::refused) { throw; } // it is gone since it was listed
        }
    }
    return all;
}

Job watchJob(const Device& device, const Wishes& wishes) {
    return [device, wishes](WorkerLink& link) {
        const Target target{device.address, device.serialNumber};
        for (std::uint32_t looks = 1;; ++looks) {
            try {
                link.tell({{"event", "look"}, {"applications", lookAt(target)}});
            } catch (const kvapplman::Error& thrown) { link.tell(eventOf("unreachable", failureOf(thrown))); }
            if (looks == wishes.count) { return; }
            link.checkpoint();
            std::this_thread::sleep_for(std::chrono::duration<double>{wishes.interval});
            link.checkpoint();
        }
    };
}

// The supervisor

/// What is known of a device.
struct Seen {
    Device device{};
    std::optional<Failure> failure{};
    Json applications = Json::array();
    bool asked = false;
};

const Json* find(const Json& applications, const Json& id) {
    const auto found = std::ranges::find_if(applications, [&](const Json& each) { return each.at("id") == id; });
    return found == applications.end() ? nullptr : &*found;
}

/// The information text alone is no change: on some targets it tells the time that a program has used.
bool sameState(const Json& a, const Json& b) {
    return a.at("state") == b.at("state") && a.at("groupSize") == b.at("groupSize");
}

class Watch {
public:
    Watch(Output& output, const std::vector<Device>& devices)
        : output_(output), live_(output.form() == Form::text && output.draws() && isTerminal(Stream::output)) {
        for (const Device& device : devices) {
            seen_.push_back({device});
        }
    }

    void take(std::size_t index, const Json& event) {
        Seen& seen = seen_[index];
        const bool first = !seen.asked;
        const bool reached = event.at("event") == "look";
        if (first || reached != !seen.failure) { tellDevice(seen, reached, event); }
        seen.asked = true;
        seen.failure.reset();
        if (reached) {
            takeApplications(seen, event.at("applications"));
        } else {
            seen.failure = failureFrom(event);
        }
        if (live_) { drawTable(); }
    }

    /// The last thing that was seen.
    ExitCode end() {
        std::vector<ExitCode> exitCodes;
        for (const Seen& seen : seen_) {
            exitCodes.push_back(seen.failure ? seen.failure->exitCode : ExitCode::done);
            Json result{{"device", seen.device.name},
                        {"address", seen.device.address},
                        {"exitCode", static_cast<int>(exitCodes.back())},
                        {"applications", seen.applications}};
            if (seen.failure) { result["error"] = toJson(*seen.failure); }
            output_.result(result);
        }
        if (live_) { leaveTable(); }
        return togetherOf(exitCodes);
    }

private:
    void tellDevice(const Seen& seen, bool reached, const Json& event) {
        Json told{{"device", seen.device.name}, {"address", seen.device.address}, {"reached", reached}};
        if (!reached) {
            told["error"] = event;
            told["error"].erase("event");
        }
        output_.event("device", std::move(told));
        if (reached) {
            line(seen, seen.asked ? "can be reached again" : "is reached");
        } else {
            line(seen, "cannot be reached: " + event.at("text").get<std::string>());
        }
    }

    void takeApplications(Seen& seen, const Json& now) {
        for (const Json& application : now) {
            const Json* const before = find(seen.applications, application.at("id"));
            if (before == nullptr || !sameState(*before, application)) { tellApplication(seen, application); }
        }
        for (const Json& before : seen.applications) {
            if (find(now, before.at("id")) == nullptr) {
                Json gone = before;
                gone["state"] = nullptr;
                tellApplication(seen, gone);
            }
        }
        seen.applications = now;
    }

    void tellApplication(const Seen& seen, const Json& application) {
        Json told = application;
        told["device"] = seen.device.name;
        told["address"] = seen.device.address;
        output_.event("application", std::move(told));
        const Json& state = application.at("state");
        line(seen, "application " + application.at("id").dump() + " is " +
                       (state.is_null() ? "gone" : state.get<std::string>()));
    }

    void line(const Seen& seen, const std::string& text) {
        if (live_) { return; }
        const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
        output_.print(textOf(now) + "  " + seen.device.name + " " + text + "\n");
    }

    std::vector<std::vector<std::string>> table() const {
        std::vector<std::vector<std::string>> rows{{"DEVICE", "APPLICATION", "STATE", "GROUP OF", "INFORMATION"}};
        for (const Seen& seen : seen_) {
            if (seen.failure) {
                rows.push_back({seen.device.name, "", "cannot be reached", "", seen.failure->text});
            } else if (seen.applications.empty()) {
                rows.push_back({seen.device.name, "", seen.asked ? "no application" : "..."});
            }
            for (const Json& application : seen.applications) {
                rows.push_back({seen.device.name, application.at("id").dump(),
                                seen.failure ? "?" : application.at("state").get<std::string>(),
                                application.at("groupSize").dump(), application.at("information")});
            }
        }
        return rows;
    }

    static std::vector<std::string> linesOf(const std::vector<std::vector<std::string>>& rows) {
        std::vector<std::string> lines;
        std::istringstream text{tableOf(rows)};
        for (std::string line; std::getline(text, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    /// As many lines as the terminal has place for.
    void drawTable() const {
        std::vector<std::string> lines = linesOf(table());
        const std::size_t most = std::max<std::size_t>(terminalHeight(Stream::error), 3) - 1;
        if (lines.size() > most) {
            const std::size_t hidden = lines.size() - most + 1;
            lines.resize(most - 1);
            lines.push_back("... and " + std::to_string(hidden) + " more");
        }
        output_.draw(std::move(lines));
    }

    /// In the place of the table that is drawn, the whole of it.
    void leaveTable() const {
        std::string text;
        for (const std::string& line : linesOf(table())) {
            text += shortened(line, terminalWidth(Stream::output)) + "\n";
        }
        output_.draw({});
        output_.print(text);
    }

    Output& output_;
    bool live_; // a table that is drawn again and again
    std::vector<Seen> seen_{};
};

ExitCode watch(const Wishes& wishes, const Context& context) {
    const std::vector<Device> devices = devicesOf(context.options, context.configuration);
    std::vector<Job> jobs;
    jobs.reserve(devices.size());
    for (const Device& device : devices) {
        jobs.push_back(watchJob(device, wishes));
    }
    JobLimits limits{.atATime = jobs.size(), .grace = std::chrono::milliseconds{0}};
    if (context.options.timeout) { limits.deadline = Clock::now() + *context.options.timeout; }
    catchInterruptions();
    Watch seen{context.output, devices};
    const JobsDone done =
        runJobs(jobs, limits, [&](std::size_t device, const Json& event) { seen.take(device, event); });
    const ExitCode exitCode = seen.end();
    if (done.cut == Cut::timedOut) { return ExitCode::timedOut; }
    return done.cut == Cut::interrupted ? ExitCode::done : exitCode;
}

} // namespace

Action bindWatch(CLI::App& app) {
    const auto wishes = std::make_shared<Wishes>();
    app.add_option("--interval", wishes->interval, "seconds between two looks")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.05, 86400.0))
        ->capture_default_str();
    app.add_option("--count", wishes->count, "number of looks; without it, until Ctrl-C")
        ->type_name("NUMBER")
        ->check(CLI::Range(1, 1'000'000'000));
    return [wishes](Context& context) { return watch(*wishes, context); };
}

} // namespace tool
