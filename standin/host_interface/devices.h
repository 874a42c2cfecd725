// The devices of this process with their RPC clients, the access-restriction handles and the device filters.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "host_interface/handles.h"
#include "platform/rpc_client.h"
#include "rpc_wire/ipv4_endpoint.h"

namespace host_interface {

struct Device {
    std::string address{}; // as the host gave it
    kvrpc::Ipv4Endpoint endpoint{};
    std::uint32_t cnSerialNumber{};
    std::map<std::uint32_t, KvCRpcClient*> clients{}; // by client identifier

    /// Also those that another took the place of, since somebody may still be using them.
    std::vector<std::unique_ptr<KvCRpcClient>> ownedClients{};
};

struct AccessHandle {
    void* device{};
    std::uint32_t accessId{};
    std::map<std::uint32_t, std::uint32_t> levels{}; // last granted, by application process
};

struct Filter {
    std::optional<std::uint32_t> address{}; // in memory in network order
    bool applied = false;                   // since its last change
};

struct Registry {
    HandleTable<Device> devices{};
    HandleTable<AccessHandle> accessHandles{};
    HandleTable<Filter> filters{};
    std::uint32_t lastAccessId = 0;
    std::optional<std::uint32_t> refusedLevel{};
};

/// The one registry, which nobody else sees for as long as this lives. Meanwhile no other lock is taken, no client is
/// called and none is deleted.
class LockedRegistry {
public:
    LockedRegistry() noexcept;

    Registry& operator*() const noexcept { return all_; }
    Registry* operator->() const noexcept { return &all_; }

private:
    Registry& all_;
    const std::lock_guard<std::mutex> lock_;
};

/// Takes a device and its access-restriction handles out of the registry. What it returns deletes the clients, and is
/// to be dropped when the registry is not locked. None when there is no such device.
HandleTable<Device>::node_type extractDevice(Registry& all, void* device) noexcept;

/// Makes `client` the device's client under `clientId`, and the device its owner. On failure, which is std::bad_alloc,
/// the caller keeps the client.
void registerClient(Device& device, std::uint32_t clientId, KvCRpcClient* client);

} // namespace host_interface
