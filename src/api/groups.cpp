// Creating and deleting the handle of an application group.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

#include "KvApplManConstants.h"
#include "api/KvApplicationManagerAP.h"
#include "api/group_devices.h"
#include "frame/calling_frame.h"
#include "platform/host_interface.h"
#include "protocol/parameter_numbers.h"
#include "protocol/procedures.h"

static_assert(offsetof(KvSApplGroupHandle, lastApplNo) == 16);
static_assert(offsetof(KvSApplGroupHandle, cnSerialNumbers) == (sizeof(void*) == 8 ? 24 : 20));
static_assert(sizeof(KvSApplGroupHandle) == (sizeof(void*) == 8 ? 40 : 28));

namespace applman {
namespace {

constexpr std::uint32_t kMostSlots = KV_APPLMAN_MOST_SLOTS;
constexpr std::uint32_t kDeviceAddress = 6; // parameter of a device handle

/// The slots of a group, as the host describes them.
struct Slots {
    void* const* devHandles;
    void* const* accessResHandles;
    std::uint32_t count;
};

struct GroupIdentity {
    std::uint32_t word1 = 0;
    std::uint32_t word2 = 0;
};

struct DeleteGroup {
    void operator()(KvSApplGroupHandle* group) const noexcept {
        delete[] group->cnSerialNumbers;
        delete[] group->ipAddresses;
        delete group;
    }
};
using OwnedGroup = std::unique_ptr<KvSApplGroupHandle, DeleteGroup>;

/// Every present slot needs an access ID that can be read; the first present slot's is delivered.
Status readAccessIds(const Reporter& report, const Slots& slots, std::int32_t first, std::uint32_t* firstAccessId) {
    for (std::uint32_t slot = 0; slot < slots.count; ++slot) {
        if (slots.devHandles[slot] == nullptr) { continue; }
        std::uint32_t accessId = 0;
        const Status checked = checkHandles(report, slots.devHandles[slot], slots.accessResHandles[slot], &accessId);
        if (checked != Status::ok) { return checked; }
        if (slot == static_cast<std::uint32_t>(first)) { *firstAccessId = accessId; }
    }
    return Status::ok;
}

/// Asks the target to open a group. A target without groups serves one process, under the identity 0, 0.
Status askForIdentity(const Reporter& report, KV_RPC_PROG_APPLMAN_HOST2Client& client, std::uint32_t accessId,
                      std::uint32_t devCount, GroupIdentity* identity) {
    Reply<TApplManGroupResult> reply{client};
    const std::int32_t called = APPLMAN_OPEN_GROUP(client, report.pool(), {accessId}, reply);
    if (called == KvCRpcClient::kProcedureNotOffered) {
        if (devCount == 1) { return Status::ok; }
        return report.fail(Msg::groupsNotSupported, Status::size);
    }
    if (called != 0 || reply->result != 0) { return Status::groupHandle; }
    *identity = {reply->targetGroupId1, reply->targetGroupId2};
    return Status::ok;
}

/// The release of the client comes before the answer is judged, so its failure wins.
Status openGroup(const Reporter& report, void* device, std::uint32_t accessId, std::uint32_t devCount,
                 GroupIdentity* identity) {
    Status opened = Status::ok;
    const Status framed = withClient(report, device, [&](KV_RPC_PROG_APPLMAN_HOST2Client& client) {
        opened = askForIdentity(report, client, accessId, devCount, identity);
        return Status::ok;
    });
    if (framed != Status::ok) { return framed; }
    return opened == Status::ok ? opened : report.fail(Msg::groupNotCreated, opened);
}

bool readSerialNumber(const Reporter& report, const Slots& slots, std::uint32_t slot, std::uint32_t* serialNumber) {
    std::int32_t size = sizeof *serialNumber;
    const std::int32_t read =
        KvApplMan_getApplInfo(report.pool(), slots.devHandles[slot], slots.accessResHandles[slot], kApplicationManager,
                              param::kSerialNumber.host, serialNumber, &size);
    if (read != 0) { report.add(Msg::groupSerialUnread, slot, read); }
    return read == 0;
}

bool readAddress(const Reporter& report, const Slots& slots, std::uint32_t slot, std::uint32_t* address) {
    std::uint64_t size = sizeof *address;
    const std::int32_t read = KvHIM_getParam(report.pool(), slots.devHandles[slot], kDeviceAddress, 0, &size, address);
    if (read != 0) { report.add(Msg::groupAddressUnread, slot, read); }
    return read == 0;
}

bool fillArrays(const Reporter& report, const Slots& slots, KvSApplGroupHandle& group) {
    group.cnSerialNumbers = new (std::nothrow) std::uint32_t[slots.count]();
    group.ipAddresses = new (std::nothrow) std::uint32_t[slots.count]();
    if (group.cnSerialNumbers == nullptr || group.ipAddresses == nullptr) { return false; }
    for (std::uint32_t slot = 0; slot < slots.count; ++slot) {
        if (slots.devHandles[slot] == nullptr) { continue; }
        if (!readSerialNumber(report, slots, slot, &group.cnSerialNumbers[slot])) { return false; }
        if (!readAddress(report, slots, slot, &group.ipAddresses[slot])) { return false; }
    }
    return true;
}

Status createGroup(const Reporter& report, const Slots& slots, KvSApplGroupHandle** groupHandle) {
    if (slots.devHandles == nullptr || slots.accessResHandles == nullptr || groupHandle == nullptr ||
        slots.count == 0) {
        return report.fail(Msg::invalidArgument, Status::argument);
    }
    *groupHandle = nullptr;
    std::int32_t first = -1;
    if (const Status checked = KvApplMan_checkDevHandleList(report.pool(), slots.devHandles, slots.count, &first);
        checked != Status::ok) {
        return checked;
    }
    if (slots.count > kMostSlots) {
        return report.fail(Msg::deviceListTooLong, Status::argument, kMostSlots, slots.count);
    }
    std::uint32_t accessId = 0;
    if (const Status read = readAccessIds(report, slots, first, &accessId); read != Status::ok) { return read; }
    GroupIdentity identity;
    if (const Status opened = openGroup(report, slots.devHandles[first], accessId, slots.count, &identity);
        opened != Status::ok) {
        return opened;
    }
    OwnedGroup group{new (std::nothrow) KvSApplGroupHandle{}};
    if (!group) { return report.fail(Msg::groupOutOfMemory, Status::groupHandle); }
    group->targetGroupId1 = identity.word1;
    group->targetGroupId2 = identity.word2;
    group->applCount = slots.count;
    if (!fillArrays(report, slots, *group)) { return report.fail(Msg::groupNotInitialized, Status::groupHandle); }
    *groupHandle = group.release();
    return Status::ok;
}

} // namespace

Status KvApplMan_checkDevHandleList(KvCErrorListPool& pool, void* const* devHandles, std::uint32_t count,
                                    std::int32_t* firstDevIndex) {
    const Reporter report{pool, "KvApplMan_checkDevHandleList"};
    if (devHandles == nullptr || count == 0 || firstDevIndex == nullptr) {
        return report.fail(Msg::invalidArgument, Status::argument);
    }
    *firstDevIndex = -1;
    for (std::uint32_t slot = 0; slot < count; ++slot) {
        if (devHandles[slot] == nullptr) { continue; }
        *firstDevIndex = static_cast<std::int32_t>(slot);
        return Status::ok;
    }
    return report.fail(Msg::invalidArgument, Status::argument);
}

} // namespace applman

using namespace applman;

extern "C" std::int32_t KvApplMan_createApplGroupHandle_2(KvCErrorListPool& pool, void* const* devHandles,
                                                          void* const* accessResHandles, std::uint32_t devCount,
                                                          KvSApplGroupHandle** groupHandle) noexcept {
    const Reporter report{pool, "KvApplMan_createApplGroupHandle_2"};
    return guarded<Msg::groupOutOfMemory, Status::groupHandle>(report, [&] {
        return createGroup(report, Slots{devHandles, accessResHandles, devCount}, groupHandle);
    });
}

extern "C" std::int32_t KvApplMan_deleteApplGroupHandle(KvCErrorListPool& pool,
                                                        KvSApplGroupHandle* groupHandle) noexcept {
    const Reporter report{pool, "KvApplMan_deleteApplGroupHandle"};
    return guarded(report, [&] {
        if (groupHandle == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
        DeleteGroup{}(groupHandle);
        return Status::ok;
    });
}
