#include "group_record.h"

#include <algorithm>

namespace tool {

void GroupRecord::take(const Json& event) {
    const std::string kind = event.at("event");
    if (kind == "device") {
        before_[event.at("address")] = {event.at("startTime"), event.at("applications")};
    } else if (kind == "registering") {
        process(event).registering = true;
    } else if (kind == "registered") {
        process(event).id = event.at("id");
        process(event).state = "registered";
    } else if (kind == "downloaded") {
        for (Process& process : processes_) {
            process.state = "ready";
        }
    } else if (kind == "started") {
        process(event).state = "running";
    } else if (kind == "state") {
        process(event).state = event.at("state");
    } else if (kind == "ended") {
        process(event).how = event.at("how");
    } else if (kind == "warning") {
        warnings_.insert(warnings_.end(), event.at("messages").begin(), event.at("messages").end());
    } else if (kind == "failed") {
        failure_ = failureFrom(event);
    }
}

void GroupRecord::take(JobEnd end) {
    end_ = end;
    if (end == JobEnd::broken && !failure_) {
        failure_ = Failure{ExitCode::other, "The worker of the deployment has crashed."};
    }
}

void GroupRecord::takeLeft(const std::vector<Remains>& left) {
    for (std::size_t i = 0; i < processes_.size(); ++i) {
        const std::string& address = deployment_.slots[i].device.address;
        processes_[i].removed = std::ranges::none_of(left, [&](const Remains& remains) {
            return remains.device.address == address && std::ranges::count(remains.ids, processes_[i].id) > 0;
        });
    }
}

std::optional<kvapplman::Time> GroupRecord::startTime(const Device& target) const {
    const auto found = before_.find(target.address);
    if (found == before_.end() || found->second.startTime.is_null()) { return {}; }
    return kvapplman::Time{std::chrono::seconds{found->second.startTime.get<std::int64_t>()}};
}

/// Whether a target may have registered a process without anybody hearing of its ID: the call was cut off, or has failed and
/// the target has not refused it.
bool GroupRecord::registrationIsOpen() const { return !failure_ || failure_->exitCode != ExitCode::refused; }

std::vector<Remains> GroupRecord::remains() const {
    std::vector<Remains> all;
    for (const Slot& slot : deployment_.slots) {
        const auto isSame = [&](const Remains& other) { return other.device.address == slot.device.address; };
        if (slot.empty() || std::ranges::any_of(all, isSame)) { continue; }
        all.push_back(remainsOn(slot.device));
    }
    std::erase_if(all, [](const Remains& each) { return each.ids.empty() && !each.unannounced; });
    return all;
}

Remains GroupRecord::remainsOn(const Device& target) const {
    Remains remains{
        .device = target, .startTime = startTime(target), .groupSize = static_cast<std::uint32_t>(processes_.size())};
    const auto before = before_.find(target.address);
    if (before != before_.end() && !before->second.applications.is_null()) {
        remains.before = before->second.applications.get<std::vector<std::uint32_t>>();
    }
    for (std::size_t i = 0; i < processes_.size(); ++i) {
        if (deployment_.slots[i].device.address != target.address) { continue; }
        if (processes_[i].id != 0) {
            remains.ids.push_back(processes_[i].id);
        } else if (processes_[i].registering) {
            remains.unannounced = registrationIsOpen();
        }
        remains.stopFirst = remains.stopFirst || processes_[i].state == "running";
    }
    return remains;
}

} // namespace tool
