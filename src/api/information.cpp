// Reading information items.
#include <cstdint>

#include "api/KvApplicationManagerAP.h"
#include "frame/calling_frame.h"
#include "protocol/information_items.h"

using namespace applman;

extern "C" std::int32_t KvApplMan_getApplInfo(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                              std::uint32_t applId, std::uint32_t infoId, void* buffer,
                                              std::int32_t* size) noexcept {
    const Reporter report{pool, "KvApplMan_getApplInfo"};
    return guardedFrame(report, devHandle, accessResHandle, [&](const Session& session) {
        return KvApplMan_getApplInfo(pool, &session.client, session.accessId, applId, infoId, buffer, size);
    });
}
