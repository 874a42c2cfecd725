// One lock, taken here only and held from the look-up to the registration, connecting included: so two threads never make
// two clients for a device, and every device waits while one is being connected. The host interface locks inside its own
// calls; nothing that runs under our lock comes back to it. The message about a device without a client is added when it
// is open again. A registered client is the registry's: it is never deleted here. Nothing here throws.
#include "frame/rpc_client_cache.h"

#include <algorithm>
#include <array>
#include <new>
#include <utility>

#include "frame/library.h"
#include "frame/report.h"
#include "platform/host_interface.h"
#include "platform/rpc_program.h"
#include "platform/rtos.h"

namespace applman {
namespace {

using Client = KV_RPC_PROG_APPLMAN_HOST2Client;

constexpr std::uint32_t kClientId = 6; // in every device's registry

struct ClientParameter {
    std::uint32_t id;
    std::uint32_t value;
};
constexpr std::array kClientParameters{
    ClientParameter{6, 15'000'000},      // call timeout in microseconds
    ClientParameter{1, 6},               // IP protocol: TCP
    ClientParameter{2, kApplManVersion}, // program version
    ClientParameter{14, 0},              // authentication flavour: none
};

class RpcClientLock {
public:
    RpcClientLock() noexcept { KvNRtosAbstraction::lockMutex(rpcClientMutex(), -1); }
    ~RpcClientLock() { KvNRtosAbstraction::unlockMutex(rpcClientMutex()); }
    RpcClientLock(const RpcClientLock&) = delete;
    RpcClientLock& operator=(const RpcClientLock&) = delete;
};

bool configure(KvCErrorListPool& pool, Client& client) {
    return std::all_of(kClientParameters.begin(), kClientParameters.end(), [&](const ClientParameter& parameter) {
        return client.setParameter(pool, parameter.id, parameter.value) >= 0;
    });
}

/// No client and no failure means that the device handle names no device.
Status lookUpOrRegister(KvCErrorListPool& pool, void* device, Client** client) {
    const RpcClientLock lock;
    KvCRpcClient* registered = nullptr;
    if (KvHIM_getRPCClientReference(pool, device, kClientId, &registered) != 0) { return Status::ok; }
    *client = dynamic_cast<Client*>(registered); // a client of another class counts as none
    if (*client != nullptr) { return Status::ok; }
    const char* const address = KvHIM_getAddressFromHandle(pool, device);
    if (address == nullptr) { return Status::ok; }

    std::unique_ptr<Client> created;
    if (const Status status = createRpcClient(pool, address, &created); status != Status::ok) { return status; }
    const auto status = static_cast<Status>(KvHIM_registerRPCClient(pool, device, kClientId, created.get()));
    if (status == Status::ok) { *client = created.release(); } // the registry's from now on
    return status;
}

} // namespace

KV_RPC_PROG_APPLMAN_HOST2Client::KV_RPC_PROG_APPLMAN_HOST2Client(KvCErrorListPool& pool, const char* address) noexcept
    : KvCRpcClient(pool, address) {}

KV_RPC_PROG_APPLMAN_HOST2Client::~KV_RPC_PROG_APPLMAN_HOST2Client() = default;

Status getRpcClient(KvCErrorListPool& pool, void* device, Client** client) {
    const Reporter report{pool, "getRpcClient"};
    if (client == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    *client = nullptr;
    const Status status = lookUpOrRegister(pool, device, client);
    if (status == Status::ok && *client == nullptr) { return report.fail(Msg::deviceHandleInvalid, Status::argument); }
    return status;
}

Status createRpcClient(KvCErrorListPool& pool, const char* address, std::unique_ptr<Client>* client) {
    const Reporter report{pool, "createRpcClient"};
    if (client == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    client->reset();
    std::unique_ptr<Client> created{new (std::nothrow) Client(pool, address)};
    if (!created) { return report.fail(Msg::deviceHandleInvalid, Status::argument); }
    if (!configure(pool, *created)) { return report.fail(Msg::channelNotConfigured, Status::channel); }
    if (created->connect(pool) < 0) { return report.fail(Msg::channelNotEstablished, Status::channel); }
    *client = std::move(created);
    return Status::ok;
}

Status releaseRpcClient(KvCErrorListPool&, Client*) noexcept { return Status::ok; }

} // namespace applman
