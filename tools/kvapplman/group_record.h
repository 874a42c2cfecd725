// What the supervisor knows of a group from the events of its worker: what has been reached, and what may have to be taken
// away again.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cleaning.h"
#include "deployment.h"
#include "failure.h"
#include "worker.h"

namespace tool {

class GroupRecord {
public:
    /// One process of the group.
    struct Process {
        bool registering = false;
        std::uint32_t id = 0; ///< 0 before it is registered
        std::string state{};  ///< by name; empty before it is known
        Json how{};           ///< how its program has ended by itself; null when the target does not say
        bool removed = false; ///< taken away again
    };

    explicit GroupRecord(Deployment deployment)
        : deployment_(std::move(deployment)), processes_(deployment_.slots.size()) {}

    /// Takes an event of the worker.
    void take(const Json& event);

    /// Takes what has become of the worker.
    void take(JobEnd end);

    /// Takes note that everything was taken away again but this.
    void takeLeft(const std::vector<Remains>& left);

    const Deployment& deployment() const { return deployment_; }
    const std::vector<Process>& processes() const { return processes_; }

    /// Start time of a target; none when it does not say, and before it was asked.
    std::optional<kvapplman::Time> startTime(const Device& target) const;

    /// Whether the group is where it should be.
    bool done() const { return end_ == JobEnd::finished && !failure_; }

    /// Why it is not; nothing when it was interrupted.
    const std::optional<Failure>& failure() const { return failure_; }

    /// What calls have reported that succeeded.
    const Json& warnings() const { return warnings_; }

    /// Per target what is left there.
    std::vector<Remains> remains() const;

private:
    struct Before {
        Json startTime{};
        Json applications{};
    };

    Process& process(const Json& event) { return processes_.at(event.at("slot").get<std::size_t>() - 1); }
    bool registrationIsOpen() const;
    Remains remainsOn(const Device& target) const;

    Deployment deployment_;
    std::vector<Process> processes_;         // per slot
    std::map<std::string, Before> before_{}; // by address
    Json warnings_ = Json::array();
    JobEnd end_ = JobEnd::notBegun;
    std::optional<Failure> failure_{};
};

} // namespace tool
