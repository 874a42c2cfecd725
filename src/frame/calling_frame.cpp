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

Status checkDeviceAndAccessRestrictionHandle(KvCErrorListPool& pool, void* device, void* accessRestriction,
                                             std::uint32_t* accessId) {
    const Reporter report{pool, "checkDeviceAndAccessRestrictionHandle"};
    if (device == nullptr || accessRestriction == nullptr || !readAccessId(pool, accessRestriction, accessId)) {
        return report.fail(Msg::invalidArgument, Status::argument);
    }
    return Status::ok;
}

} // namespace applman
