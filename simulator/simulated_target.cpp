#include "simulator/simulated_target.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "simulator/report_json.h"
#include "simulator/target_service.h"

namespace simulated_target {
namespace {

using Milliseconds = std::chrono::milliseconds;

constexpr Milliseconds kPortPause{20}; // before a port that is taken is tried again

} // namespace

struct SimulatedTarget::State {
    explicit State(Options given) : options(std::move(given)), port(options.port) {}

    void reboot(Milliseconds away);
    bool listenAgain() noexcept;
    void askForReboot(Milliseconds away);
    void rebootWhenAsked() noexcept;
    void endRebooter() noexcept;

    const Options options;
    TargetService service{options, [this](Milliseconds away) { askForReboot(away); }};
    kvrpc::RpcServer server{service};

    std::mutex mutex{}; // guards what follows, and the server's starts and stops
    std::condition_variable changed{};
    std::uint16_t port;
    std::uint64_t life = 0; // counts starts and stops
    bool running = false;

    std::mutex
        asking{}; // guards what follows; a connection's thread takes it alone, since a stop waits for that thread
    std::condition_variable asked{};
    std::optional<Milliseconds> rebootAsked{};
    bool ending = false;
    std::thread rebooter{}; // since a connection's thread cannot stop its own server
};

void SimulatedTarget::State::reboot(Milliseconds away) {
    std::unique_lock lock{mutex};
    if (!running) { return; }
    service.hurry(true);
    server.stop();
    service.hurry(false);
    service.forgetEverything();
    const std::uint64_t present = life;
    const auto over = [&] { return life != present; };
    changed.wait_for(lock, away, over);
    if (!over()) { service.forgetEverything(); } // once more: it starts now, not when it went
    while (!over() && !listenAgain()) {
        changed.wait_for(lock, kPortPause, over);
    }
}

bool SimulatedTarget::State::listenAgain() noexcept {
    try {
        server.start(options.host, port);
        return true;
    } catch (...) { return false; }
}

void SimulatedTarget::State::askForReboot(Milliseconds away) {
    const std::lock_guard lock{asking};
    rebootAsked = away;
    asked.notify_all();
}

/// Ends when the target stops.
void SimulatedTarget::State::rebootWhenAsked() noexcept {
    std::unique_lock lock{asking};
    for (;;) {
        asked.wait(lock, [this] { return rebootAsked || ending; });
        if (ending) { return; }
        const Milliseconds away = *std::exchange(rebootAsked, std::nullopt);
        lock.unlock();
        reboot(away);
        lock.lock();
    }
}

void SimulatedTarget::State::endRebooter() noexcept {
    {
        const std::lock_guard lock{asking};
        ending = true;
        asked.notify_all();
    }
    if (rebooter.joinable()) { rebooter.join(); }
    rebootAsked.reset();
    ending = false;
}

SimulatedTarget::SimulatedTarget(Options options) : state_(std::make_unique<State>(std::move(options))) {}
SimulatedTarget::~SimulatedTarget() { stop(); }

std::string SimulatedTarget::start() {
    stop();
    const std::lock_guard lock{state_->mutex};
    state_->service.hurry(false);
    std::string address = state_->server.start(state_->options.host, state_->port);
    state_->port = static_cast<std::uint16_t>(std::stoul(address.substr(address.find(':') + 1)));
    ++state_->life;
    state_->running = true;
    state_->rebooter = std::thread{[state = state_.get()] { state->rebootWhenAsked(); }};
    return address;
}

void SimulatedTarget::stop() noexcept {
    {
        const std::lock_guard lock{state_->mutex};
        ++state_->life;
        state_->running = false;
        state_->changed.notify_all();
        state_->service.hurry(true);
        state_->server.stop();
    }
    state_->endRebooter();
}

void SimulatedTarget::reboot(std::chrono::milliseconds away) { state_->reboot(away); }

bool SimulatedTarget::crash(std::uint32_t applId) {
    const std::lock_guard lock{state_->mutex};
    return state_->service.manager().crash(applId);
}

std::string SimulatedTarget::state() const {
    const std::lock_guard lock{state_->mutex};
    Json connections = Json::array();
    for (const auto& [number, peer] : state_->server.connections()) {
        connections.push_back({{"number", number}, {"peer", peer}});
    }
    Json rules = Json::array();
    for (const RuleCount& count : state_->service.faults().counts()) {
        rules.push_back(toJson(count));
    }
    Json whole{{"address", state_->options.host + ':' + std::to_string(state_->port)},
               {"serialNumber", state_->options.cnSerialNumber},
               {"requests", state_->service.requestCount()},
               {"connections", std::move(connections)},
               {"rules", std::move(rules)},
               {"hostTime", state_->service.hostTime()}};
    whole.update(state_->service.manager().state());
    return lineOf(whole);
}

void SimulatedTarget::addFault(FaultRule rule) { state_->service.faults().add(std::move(rule)); }
void SimulatedTarget::clearFaults() { state_->service.faults().clear(); }
std::uint64_t SimulatedTarget::faultyCalls() const { return state_->service.faults().faultyCalls(); }
std::vector<RuleCount> SimulatedTarget::ruleCounts() const { return state_->service.faults().counts(); }

void SimulatedTarget::dropConnections() noexcept { state_->server.dropConnections(); }
std::uint64_t SimulatedTarget::acceptedConnections() const noexcept { return state_->server.acceptedConnections(); }

std::vector<Request> SimulatedTarget::requests() const { return state_->service.requests(); }
void SimulatedTarget::forgetRequests() { state_->service.forgetRequests(); }

void SimulatedTarget::script(std::uint32_t procedure, ScriptedReply reply) {
    state_->service.script(procedure, std::move(reply));
}
void SimulatedTarget::scriptAlways(std::uint32_t procedure, ScriptedReply reply) {
    state_->service.scriptAlways(procedure, std::move(reply));
}
void SimulatedTarget::forgetScripts() { state_->service.forgetScripts(); }

std::string SimulatedTarget::hostTime() const {
    const std::lock_guard lock{state_->mutex};
    return state_->service.hostTime();
}

} // namespace simulated_target
