#include "frame/calling_frame.h"

#include "platform/host_interface.h"

namespace applman {

bool readAccessId(KvCErrorListPool& pool, void* accessRestriction, std::uint32_t* accessId) {
    constexpr std::uint32_t kAccessId = 12;
    std::uint32_t value = 0;
    std::uint64_t size = sizeof value;
    if (KvHIM_getParam(pool, accessRestriction, kAccessId, 0, &size, &value) != 0) { return false; }
    *accessId = value;
    return true;
}

Status checkHandles(const Reporter& report, void* device, void* accessRestriction, std::uint32_t* accessId) {
    if (device == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    if (accessRestriction == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    if (readAccessId(report.pool(), accessRestriction, accessId)) { return Status::ok; }
    return report.fail(Msg::invalidArgument, Status::argument);
}

Status checkDeviceAndAccessRestrictionHandle(KvCErrorListPool& pool, void* device, void* accessRestriction,
                                             std::uint32_t* accessId) {
    return checkHandles(Reporter{pool, kHandleCheck}, device, accessRestriction, accessId);
}

} // namespace applman
