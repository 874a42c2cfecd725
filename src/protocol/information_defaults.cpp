// A default is made while the target's refusal still stands in the pool, and the whole pool is emptied only when there is
// one; what the host interface reports meanwhile goes with it, and stays when there is none. Whether a parameter is
// unknown is judged by the whole pool, so an entry from before the call counts too.
#include "protocol/information_defaults.h"

#include <array>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "platform/host_interface.h"
#include "protocol/information_items.h"
#include "protocol/procedures.h"
#include "protocol/unsupported_param.h"

namespace applman {
namespace {

using Client = KV_RPC_PROG_APPLMAN_HOST2Client;

constexpr std::uint32_t kNoAddress = 0xFFFFFFFF;
constexpr std::uint32_t kMostProcesses = 0xFFFFFF; // that a download can name; for a larger group there is no memory
constexpr std::uint32_t kCommandTimeout = 120;     // seconds

/// Empty when there is no memory.
std::vector<std::uint32_t> oneElement() {
    try {
        return {1};
    } catch (const std::bad_alloc&) { return {}; }
}

std::uint32_t getClientIpAddress(KvCErrorListPool& pool, Client* client) {
    return client == nullptr ? kNoAddress : client->getIpAddressV4(pool);
}

/// A device filter of the host interface, deleted in any case once it was made.
class DeviceFilter {
public:
    explicit DeviceFilter(KvCErrorListPool& pool) : pool_(pool) {
        constexpr std::uint32_t kKind = 1;
        if (KvHIM_createFilter(pool_, &filter_, kKind) != 0) { filter_ = nullptr; }
    }
    ~DeviceFilter() {
        if (filter_ != nullptr) { KvHIM_deleteFilter(pool_, filter_); }
    }
    DeviceFilter(const DeviceFilter&) = delete;
    DeviceFilter& operator=(const DeviceFilter&) = delete;

    bool selectAddress(std::uint32_t address) {
        return filter_ != nullptr && set(8, 1) && set(9, 0) && set(6, address) &&
               KvHIM_applyFilter(pool_, filter_) == 0;
    }

    /// True when exactly one device is selected.
    bool onlyDevice(KvHIMSDeviceInfo& device) {
        std::uint32_t count = 1;
        return KvHIM_getDeviceList(pool_, filter_, &device, &count) == 0 && count == 1;
    }

private:
    bool set(std::uint32_t id, std::uint32_t value) {
        return KvHIM_setFilterParameter(pool_, filter_, id, sizeof value, &value) == 0;
    }

    KvCErrorListPool& pool_;
    void* filter_ = nullptr;
};

/// All zeros when there is not exactly one device at the client's address.
KvHIMSDeviceInfo findDeviceByClientAddress(KvCErrorListPool& pool, Client* client) {
    const std::uint32_t address = getClientIpAddress(pool, client);
    if (address == kNoAddress) { return {}; }
    DeviceFilter filter{pool};
    KvHIMSDeviceInfo device{};
    if (!filter.selectAddress(address) || !filter.onlyDevice(device)) { return {}; }
    return device;
}

/// What a default is made from.
struct Asked {
    KvCErrorListPool& pool;
    Client* client;
    std::uint32_t accessId;
    std::uint32_t applId;
};

/// None when it cannot be read. Throws std::bad_alloc for a group that is too large, as making its array would.
std::optional<std::uint32_t> readGroupSize(const Asked& asked) {
    std::uint32_t count = 0;
    std::int32_t size = sizeof count;
    const Status read = KvApplMan_getApplInfo(asked.pool, asked.client, asked.accessId, asked.applId,
                                              param::kGroupSize.host, &count, &size);
    if (read != Status::ok) { return {}; }
    if (count > kMostProcesses) { throw std::bad_alloc{}; }
    return count;
}

std::vector<std::uint32_t> buildSerialNumberArray(const Asked& asked) {
    const std::optional<std::uint32_t> count = readGroupSize(asked);
    if (!count) { return {}; }
    return std::vector<std::uint32_t>(*count, findDeviceByClientAddress(asked.pool, asked.client).cnSerialNumber);
}

std::vector<std::uint32_t> buildIpAddressArray(const Asked& asked) {
    const std::optional<std::uint32_t> count = readGroupSize(asked);
    if (!count) { return {}; }
    const std::uint32_t address = getClientIpAddress(asked.pool, asked.client);
    if (address == kNoAddress) { return {}; }
    return std::vector<std::uint32_t>(*count, address);
}

std::optional<TApplManValue> deviceSerialNumber(const Asked& asked) {
    const std::uint32_t serial = findDeviceByClientAddress(asked.pool, asked.client).cnSerialNumber;
    return serial == 0 ? std::nullopt : std::optional<TApplManValue>{serial};
}

using MakeDefault = std::optional<TApplManValue> (*)(const Asked&);

struct DefaultRow {
    Default kind;
    MakeDefault make;
};

template <class Value>
std::optional<TApplManValue> value(Value made) {
    return TApplManValue{std::move(made)};
}

constexpr std::array kDefaults{
    DefaultRow{Default::none, [](const Asked&) { return std::optional<TApplManValue>{}; }},
    DefaultRow{Default::zeroWord, [](const Asked&) { return value(std::uint32_t{0}); }},
    DefaultRow{Default::oneWord, [](const Asked&) { return value(std::uint32_t{1}); }},
    DefaultRow{Default::zeroQuad, [](const Asked&) { return value(std::int64_t{0}); }},
    DefaultRow{Default::oneElement, [](const Asked&) { return value(oneElement()); }},
    DefaultRow{Default::emptyText, [](const Asked&) { return value(Text{std::string{}}); }},
    DefaultRow{Default::groupSerialNumbers, [](const Asked& asked) { return value(buildSerialNumberArray(asked)); }},
    DefaultRow{Default::groupAddresses, [](const Asked& asked) { return value(buildIpAddressArray(asked)); }},
    DefaultRow{Default::deviceSerialNumber, deviceSerialNumber},
    DefaultRow{Default::commandTimeout, [](const Asked&) { return value(kCommandTimeout); }},
};

constexpr bool defaultsAreInOrder() {
    for (std::size_t index = 0; index < kDefaults.size(); ++index) {
        if (static_cast<std::size_t>(kDefaults[index].kind) != index) { return false; }
    }
    return kDefaults.back().kind == Default::commandTimeout;
}
static_assert(defaultsAreInOrder());

} // namespace

bool applyParamDefault(KvCErrorListPool& pool, Client* client, std::uint32_t accessId, std::uint32_t applId,
                       std::uint32_t targetParamId, TApplManValueResult* reply) {
    if (client == nullptr || reply == nullptr || reply->result != kRefused || !hasUnsupportedParamCode(pool)) {
        return false;
    }
    const InformationItem* const item = itemOfTargetParam(targetParamId);
    if (item == nullptr) { return false; }
    const Default kind = applId == kApplicationManager ? item->forManager : item->forProcess;
    std::optional<TApplManValue> made =
        kDefaults[static_cast<std::size_t>(kind)].make(Asked{pool, client, accessId, applId});
    if (!made) { return false; }
    reply->value = std::move(*made);
    reply->result = 0;
    pool.reset();
    return true;
}

} // namespace applman
