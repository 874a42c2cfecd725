// The same as minimal_host, with the plain functions and C++11: plain_host ADDRESS FILE
#include <cstdint>
#include <cstdio>

#include "KvApplManConstants.h"
#include "KvApplicationManagerAP.h"
#include "KvPlatformHost.h"

namespace {

bool succeeded(KvCErrorListPool& pool, const char* what, std::int32_t status) {
    if (status == KV_APPLMAN_OK) return true;
    std::fprintf(stderr, "%s: status %d\n", what, static_cast<int>(status));
    for (std::uint32_t i = 0; i < KvPlatform_entryCount(pool); ++i) {
        const char* const text = KvPlatform_entryText(pool, i);
        std::fprintf(stderr, "  0x%08x %s: %s\n", static_cast<unsigned>(KvPlatform_entryCode(pool, i)),
                     KvPlatform_entryOperation(pool, i), text != nullptr ? text : "(no text)");
    }
    return false;
}

bool bringUp(KvCErrorListPool& pool, void* device, void* access, KvSApplGroupHandle* group, const char* file,
             std::uint32_t* applId) {
    return succeeded(pool, "register", KvApplMan_registerAppl_2(pool, device, access, group, 1, applId)) &&
           succeeded(
               pool, "download",
               KvApplMan_downloadApplUtf8(pool, &device, &access, applId, &file, 0, 1, nullptr, nullptr, nullptr)) &&
           succeeded(pool, "start", KvApplMan_startAppl(pool, device, access, *applId));
}

bool printState(KvCErrorListPool& pool, void* device, void* access, std::uint32_t applId) {
    std::uint32_t state = KV_APPLMAN_STATE_ANY;
    std::int32_t size = sizeof state;
    if (!succeeded(pool, "state",
                   KvApplMan_getApplInfo(pool, device, access, applId, KV_APPLMAN_ITEM_STATE, &state, &size))) {
        return false;
    }
    const bool running = state == KV_APPLMAN_STATE_RUNNING;
    std::printf("application 0x%x is %s\n", static_cast<unsigned>(applId), running ? "running" : "not running");
    return true;
}

bool takeAway(KvCErrorListPool& pool, void* device, void* access, std::uint32_t applId) {
    return succeeded(pool, "stop", KvApplMan_stopAppl(pool, device, access, applId)) &&
           succeeded(pool, "unload", KvApplMan_unloadAppl(pool, device, access, applId));
}

bool runOnDevice(KvCErrorListPool& pool, void* device, const char* file) {
    void* access = nullptr;
    KvSApplGroupHandle* group = nullptr;
    if (!succeeded(pool, "access", KvHIM_createAccessRestrictionHandle(pool, device, &access)) ||
        !succeeded(pool, "group", KvApplMan_createApplGroupHandle_2(pool, &device, &access, 1, &group))) {
        return false;
    }
    std::uint32_t applId = 0;
    const bool ran = bringUp(pool, device, access, group, file, &applId) && printState(pool, device, access, applId) &&
                     takeAway(pool, device, access, applId);
    return succeeded(pool, "delete group", KvApplMan_deleteApplGroupHandle(pool, group)) && ran;
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 3) {
        std::fprintf(stderr, "usage: plain_host ADDRESS FILE   (an address is a.b.c.d:port)\n");
        return 2;
    }
    KvCErrorListPool* const pool = KvPlatform_createPool();
    if (pool == nullptr) return 1;

    void* device = nullptr;
    const std::uint32_t serialNumberUnknown = 0;
    bool ran = succeeded(*pool, "device", KvPlatform_addDevice(*pool, arguments[1], serialNumberUnknown, &device));
    if (ran) {
        ran = runOnDevice(*pool, device, arguments[2]);
        ran = succeeded(*pool, "remove device", KvPlatform_removeDevice(*pool, device)) && ran;
    }
    KvPlatform_deletePool(pool);
    return ran ? 0 : 1;
}
