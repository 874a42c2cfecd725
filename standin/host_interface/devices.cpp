#include "host_interface/devices.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <new>

#include "host_interface/test_hooks.h"

namespace host_interface {
namespace {

struct GuardedRegistry {
    std::mutex mutex{};
    Registry registry{};
};

/// Never destroyed: the clients of devices that a host has not removed may belong to a library that is unloaded before.
GuardedRegistry& guardedRegistry() noexcept {
    alignas(GuardedRegistry) static std::byte storage[sizeof(GuardedRegistry)];
    static GuardedRegistry* const instance = new (storage) GuardedRegistry;
    return *instance;
}

} // namespace

void* newHandle() noexcept {
    // Far from small numbers and from addresses of objects, so that a stray value hardly ever is a handle.
    static constinit std::atomic<std::uint64_t> last{0x4B56'0000'0000};
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(last.fetch_add(16) + 16));
}

LockedRegistry::LockedRegistry() noexcept : all_(guardedRegistry().registry), lock_(guardedRegistry().mutex) {}

HandleTable<Device>::node_type extractDevice(Registry& all, void* device) noexcept {
    std::erase_if(all.accessHandles, [&](const auto& each) { return each.second.device == device; });
    const auto found = all.devices.find(device);
    if (found == all.devices.end()) { return {}; }
    return all.devices.extract(found);
}

void registerClient(Device& device, std::uint32_t clientId, KvCRpcClient* client) {
    const auto isClient = [&](const auto& owned) { return owned.get() == client; };
    if (std::ranges::none_of(device.ownedClients, isClient)) {
        device.ownedClients.reserve(device.ownedClients.size() + 1);
        device.clients[clientId] = client;
        device.ownedClients.emplace_back(client);
    } else {
        device.clients[clientId] = client;
    }
}

void refuseLevel(std::uint32_t level) {
    const LockedRegistry all;
    all->refusedLevel = level;
}

void refuseNoLevel() {
    const LockedRegistry all;
    all->refusedLevel.reset();
}

std::optional<std::uint32_t> grantedLevel(void* handle, std::uint32_t applId) {
    const LockedRegistry all;
    const AccessHandle* const access = find(all->accessHandles, handle);
    if (access == nullptr) { return {}; }
    const auto level = access->levels.find(applId);
    return level == access->levels.end() ? std::nullopt : std::optional{level->second};
}

} // namespace host_interface
