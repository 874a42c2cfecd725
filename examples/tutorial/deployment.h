// The program and its settings on several targets, as one group that is brought up again when one of them restarts.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "KvApplMan.hpp"

/// A target, and the process that was registered with it.
struct Place {
    explicit Place(const std::string& address) : target(address) {}

    kvapplman::Time startTime() const { return target.manager().info<kvapplman::Item::startTime>(); }

    /// False when there is none, when the target was restarted since (its ID may then be somebody else's), and when the
    /// target does not know it any more.
    bool holdsProcess() const {
        if (!process || startTime() != startedAt) return false;
        const std::vector<std::uint32_t> ids = target.applicationIds();
        return std::find(ids.begin(), ids.end(), process->id()) != ids.end();
    }

    bool isRunning() const { return holdsProcess() && process->state() == kvapplman::State::running; }

    kvapplman::Target target;
    std::optional<kvapplman::Application> process{};
    kvapplman::Time startedAt{}; // start time of the target when the process was registered
};

class Deployment {
public:
    Deployment(const std::vector<std::string>& addresses, std::filesystem::path program, std::filesystem::path settings)
        : places_(addresses.begin(), addresses.end()), program_(std::move(program)), settings_(std::move(settings)) {}

    /// Brings the program up where it is not. When it throws, the next attempt begins by clearing away what it has left.
    /// Result: whether there was something to do.
    bool keepUp() {
        if (std::all_of(places_.begin(), places_.end(), [](const Place& place) { return place.isRunning(); }))
            return false;
        takeAway();
        bringUp();
        return true;
    }

    void takeAway() {
        for (Place& place : places_) {
            if (place.holdsProcess()) place.process->unload();
            place.process.reset();
        }
    }

private:
    void bringUp() {
        std::vector<const kvapplman::Target*> targets;
        for (const Place& place : places_)
            targets.push_back(&place.target);
        kvapplman::Group group(targets);
        std::uint32_t number = 0;
        for (Place& place : places_) {
            place.startedAt = place.startTime(); // before the ID, so that no restart goes unnoticed
            place.process = group.registerApplication(++number);
        }
        group.download(std::vector<std::filesystem::path>(places_.size(), program_));
        for (const Place& place : places_) {
            place.process->loadFile(settings_, kSettingsType);
            place.process->start();
        }
    }

    static constexpr std::uint32_t kSettingsType = 3; // what it means is the target's business

    std::vector<Place> places_;
    std::filesystem::path program_;
    std::filesystem::path settings_;
};
