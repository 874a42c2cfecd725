#include "target/simulated_target.h"

#include <utility>

#include "target/target_service.h"

namespace simulated_target {

struct SimulatedTarget::State {
    explicit State(Options given) : options(std::move(given)), service(options) {}

    const Options options;
    TargetService service;
    kvrpc::RpcServer server{service};
};

SimulatedTarget::SimulatedTarget(Options options) : state_(std::make_unique<State>(std::move(options))) {}
SimulatedTarget::~SimulatedTarget() { stop(); }

std::string SimulatedTarget::start() {
    state_->service.hurry(false);
    return state_->server.start(state_->options.host, state_->options.port);
}

void SimulatedTarget::stop() noexcept {
    state_->service.hurry(true);
    state_->server.stop();
}

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

std::string SimulatedTarget::hostTime() const { return state_->service.hostTime(); }

} // namespace simulated_target
