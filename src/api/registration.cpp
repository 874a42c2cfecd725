// Registering the application processes of a group.
#include <cstdint>
#include <new>
#include <utility>
#include <vector>

#include "api/KvApplicationManagerAP.h"
#include "api/host_time.h"
#include "frame/calling_frame.h"
#include "platform/host_interface.h"
#include "protocol/parameter_numbers.h"
#include "protocol/procedures.h"
#include "protocol/unsupported_param.h"

namespace applman {
namespace {

constexpr std::uint32_t kSharedExclusiveLevel = 0x30002; // while the group's data are written
constexpr std::uint32_t kReleasedLevel = 0x10001;        // before the handle is deleted

bool slotIsEmpty(const KvSApplGroupHandle& group, std::uint32_t slot) {
    return group.cnSerialNumbers[slot] == 0 && group.ipAddresses[slot] == 0;
}

/// The number whose turn it is, that of the first present slot that is not dealt with; 0 when there is none.
std::uint32_t nextNumber(const KvSApplGroupHandle& group) {
    std::uint32_t slot = group.lastApplNo;
    while (slot < group.applCount && slotIsEmpty(group, slot)) {
        ++slot;
    }
    return slot < group.applCount ? slot + 1 : 0;
}

/// Only when it is its turn are the empty slots before a number marked as dealt with.
bool takeNumber(KvSApplGroupHandle& group, std::uint32_t applNo) {
    if (applNo != nextNumber(group)) { return false; }
    group.lastApplNo = applNo - 1;
    return true;
}

/// The process must be registered on the device that its slot had when the group was created.
Status checkDevice(const Reporter& report, void* devHandle, void* accessResHandle, const KvSApplGroupHandle& group,
                   std::uint32_t applNo) {
    std::uint32_t current = 0;
    std::int32_t size = sizeof current;
    const std::int32_t read = KvApplMan_getApplInfo(report.pool(), devHandle, accessResHandle, kApplicationManager,
                                                    param::kSerialNumber.host, &current, &size);
    if (read != 0) { return report.fail(Msg::registrationSerialUnread, Status::registration, applNo, read); }
    const std::uint32_t expected = group.cnSerialNumbers[applNo - 1];
    if (current != expected) { return report.fail(Msg::wrongDevice, Status::registration, applNo, expected, current); }
    return Status::ok;
}

Status requestRegistration(const Reporter& report, KV_RPC_PROG_APPLMAN_HOST2Client& client, std::uint32_t accessId,
                           const KvSApplGroupHandle& group, std::uint32_t applNo, std::uint32_t* applId) {
    TApplManGroupPart groupPart;
    groupPart.words = {0, group.targetGroupId1, group.targetGroupId2, group.applCount, group.reserved};
    Reply<TApplManRegisterResult> reply{client};
    const std::int32_t called = APPLMAN_REGISTER_APPL(client, report.pool(), {accessId, applNo, groupPart}, reply);
    if (called == KvCRpcClient::kProcedureNotOffered) {
        report.add(Msg::registrationNotOffered, group.applCount, applNo);
        const Status failed = report.failRemoteCall();
        return report.fail(Msg::cannotRegister, failed);
    }
    if (called != 0 || reply->result == kRefused) { return report.fail(Msg::cannotRegister, Status::registration); }
    *applId = static_cast<std::uint32_t>(reply->applId);
    return Status::ok;
}

/// Delivers the handle also when its level is refused: the caller deletes it.
Status createSharedApplExclAccessResHandle(KvCErrorListPool& pool, void* devHandle, void** handle,
                                           std::uint32_t applId) {
    const Reporter report{pool, "createSharedApplExclAccessResHandle"};
    if (KvHIM_createAccessRestrictionHandle(pool, devHandle, handle) != 0) {
        *handle = nullptr;
        return report.fail(Msg::accessHandleNotCreated, Status::accessHandle, applId);
    }
    if (KvHIM_requestAccessRestrictionLevel(pool, *handle, applId, kSharedExclusiveLevel) != 0) {
        return report.fail(Msg::accessLevelNotClaimed, Status::accessHandle);
    }
    return Status::ok;
}

Status deleteAccessResHandle(KvCErrorListPool& pool, void* handle, std::uint32_t applId) {
    const Reporter report{pool, "deleteAccessResHandle"};
    if (handle == nullptr) { return Status::ok; }
    Status status = Status::ok;
    if (KvHIM_requestAccessRestrictionLevel(pool, handle, applId, kReleasedLevel) != 0) {
        status = report.fail(Msg::accessLevelNotClaimed, Status::accessHandle);
    }
    if (KvHIM_deleteAccessRestrictionHandle(pool, handle) != 0) {
        return report.fail(Msg::accessHandleNotDeleted, Status::accessHandle, applId);
    }
    return status;
}

/// Writes the group's serial numbers and addresses to a process, under the access ID of `handle`.
Status writeGroupData(const Reporter& report, KV_RPC_PROG_APPLMAN_HOST2Client& client, void* handle,
                      const KvSApplGroupHandle& group, std::uint32_t applId) {
    std::uint32_t accessId = 0;
    if (handle == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    if (!readAccessId(report.pool(), handle, &accessId)) { return report.fail(Msg::invalidArgument, Status::argument); }
    struct GroupParameter {
        std::uint32_t targetParamId;
        const std::uint32_t* words;
    };
    for (const GroupParameter& parameter : {GroupParameter{param::kGroupSerialNumbers.target, group.cnSerialNumbers},
                                            GroupParameter{param::kGroupAddresses.target, group.ipAddresses}}) {
        std::vector<std::uint32_t> words(parameter.words, parameter.words + group.applCount);
        Reply<TApplManResult> reply{client};
        const std::int32_t called = APPLMAN_SET_PARAM(
            client, report.pool(), {kMode, accessId, applId, parameter.targetParamId, std::move(words)}, reply);
        if (called != 0) { return report.failRemoteCall(); }
        acceptUnsupportedParamResult(report.pool(), reply->result, applId, parameter.targetParamId);
        if (reply->result != 0) {
            return report.fail(Msg::groupParameterNotSet, Status::parameter, applId, parameter.targetParamId);
        }
    }
    return Status::ok;
}

/// The handle that was made is deleted whatever happens, also when memory runs out.
Status writeGroupDataUnderOwnHandle(const Reporter& report, KV_RPC_PROG_APPLMAN_HOST2Client& client, void* devHandle,
                                    const KvSApplGroupHandle& group, std::uint32_t applId) {
    void* handle = nullptr;
    Status status = createSharedApplExclAccessResHandle(report.pool(), devHandle, &handle, applId);
    if (status == Status::ok) {
        try {
            status = writeGroupData(report, client, handle, group, applId);
        } catch (const std::bad_alloc&) { status = report.fail(Msg::invalidArgument, Status::argument); }
    }
    const Status deleted = deleteAccessResHandle(report.pool(), handle, applId);
    return status == Status::ok ? deleted : status;
}

Status KvApplMan_setMpParameters(KvCErrorListPool& pool, void* devHandle, const KvSApplGroupHandle* group,
                                 std::uint32_t applId) {
    const Reporter report{pool, "KvApplMan_setMpParameters"};
    if (group == nullptr || applId == 0) { return report.fail(Msg::invalidArgument, Status::argument); }
    if (devHandle == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    return withClient(report, devHandle, [&](KV_RPC_PROG_APPLMAN_HOST2Client& client) {
        return writeGroupDataUnderOwnHandle(report, client, devHandle, *group, applId);
    });
}

Status registerApplication(const Reporter& report, void* devHandle, void* accessResHandle, KvSApplGroupHandle* group,
                           std::uint32_t applNo, std::uint32_t* applId) {
    if (group == nullptr || group->cnSerialNumbers == nullptr || group->ipAddresses == nullptr || applId == nullptr ||
        applNo == 0) {
        return report.fail(Msg::invalidArgument, Status::argument);
    }
    *applId = 0;
    std::uint32_t accessId = 0;
    if (const Status checked =
            checkDeviceAndAccessRestrictionHandle(report.pool(), devHandle, accessResHandle, &accessId);
        checked != Status::ok) {
        return checked;
    }
    if (!takeNumber(*group, applNo)) {
        return report.fail(Msg::invalidApplNo, Status::registration, applNo, group->applCount);
    }
    if (const Status checked = checkDevice(report, devHandle, accessResHandle, *group, applNo); checked != Status::ok) {
        return checked;
    }
    setHostTimeParameters(report.pool(), devHandle, accessResHandle);
    const Status registered = withClient(report, devHandle, [&](KV_RPC_PROG_APPLMAN_HOST2Client& client) {
        return requestRegistration(report, client, accessId, *group, applNo, applId);
    });
    if (registered != Status::ok) { return registered; }
    group->lastApplNo = applNo;
    return KvApplMan_setMpParameters(report.pool(), devHandle, group, *applId);
}

} // namespace
} // namespace applman

using namespace applman;

extern "C" std::int32_t KvApplMan_registerAppl_2(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                                 KvSApplGroupHandle* groupHandle, std::uint32_t applNo,
                                                 std::uint32_t* applId) noexcept {
    const Reporter report{pool, "KvApplMan_registerAppl_2"};
    return guarded(
        report, [&] { return registerApplication(report, devHandle, accessResHandle, groupHandle, applNo, applId); });
}
