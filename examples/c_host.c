/* Brings one process onto one target and starts it, in C: c_host ADDRESS FILE */
#include <stdint.h>
#include <stdio.h>

#include "KvApplManConstants.h"
#include "KvApplicationManagerAP.h"
#include "KvPlatformHost.h"

struct Session {
    KvCErrorListPool* pool;
    void* device;
    void* access;
    KvSApplGroupHandle* group;
    uint32_t applId;
};

static int succeeded(const struct Session* session, const char* what, int32_t status) {
    uint32_t i;
    if (status == KV_APPLMAN_OK) return 1;
    fprintf(stderr, "%s: status %d\n", what, (int)status);
    for (i = 0; i < KvPlatform_entryCount(session->pool); ++i) {
        const char* const text = KvPlatform_entryText(session->pool, i);
        fprintf(stderr, "  0x%08x %s: %s\n", (unsigned)KvPlatform_entryCode(session->pool, i),
                KvPlatform_entryOperation(session->pool, i), text != NULL ? text : "(no text)");
    }
    return 0;
}

static void showProgress(const KvTApplManProgress* progress, void* lastPhase) {
    uint32_t* const shown = lastPhase;
    if (progress->phase == *shown) return;
    *shown = progress->phase;
    printf("phase %u of %u %s\n", (unsigned)progress->phase, (unsigned)progress->phaseCount, progress->phaseName);
}

static int deploy(struct Session* session, const char* file) {
    const uint32_t slot = 1, slotCount = 1, noOption = 0;
    uint32_t phaseShown = 0;
    return succeeded(session, "group",
                     KvApplMan_createApplGroupHandle_2(session->pool, &session->device, &session->access, slotCount,
                                                       &session->group)) &&
           succeeded(session, "register",
                     KvApplMan_registerAppl_2(session->pool, session->device, session->access, session->group, slot,
                                              &session->applId)) &&
           succeeded(session, "download",
                     KvApplMan_downloadApplUtf8(session->pool, &session->device, &session->access, &session->applId,
                                                &file, noOption, slotCount, showProgress, &phaseShown, NULL)) &&
           succeeded(session, "start",
                     KvApplMan_startAppl(session->pool, session->device, session->access, session->applId));
}

static int isRunning(const struct Session* session) {
    uint32_t state = KV_APPLMAN_STATE_ANY;
    int32_t size = sizeof state;
    return succeeded(session, "state",
                     KvApplMan_getApplInfo(session->pool, session->device, session->access, session->applId,
                                           KV_APPLMAN_ITEM_STATE, &state, &size)) &&
           state == KV_APPLMAN_STATE_RUNNING;
}

int main(int argumentCount, char** arguments) {
    struct Session session = {NULL, NULL, NULL, NULL, 0};
    const uint32_t serialNumberUnknown = 0;
    int ran;
    if (argumentCount != 3) {
        fprintf(stderr, "usage: c_host ADDRESS FILE   (an address is a.b.c.d:port)\n");
        return 2;
    }
    session.pool = KvPlatform_createPool();
    if (session.pool == NULL) return 1;

    ran = succeeded(&session, "device",
                    KvPlatform_addDevice(session.pool, arguments[1], serialNumberUnknown, &session.device)) &&
          succeeded(&session, "access",
                    KvHIM_createAccessRestrictionHandle(session.pool, session.device, &session.access)) &&
          deploy(&session, arguments[2]) && isRunning(&session);
    if (ran) printf("application 0x%x is running\n", (unsigned)session.applId);

    if (session.group != NULL) KvApplMan_deleteApplGroupHandle(session.pool, session.group);
    if (session.device != NULL) KvPlatform_removeDevice(session.pool, session.device); /* and its access handle */
    KvPlatform_deletePool(session.pool);
    return ran ? 0 : 1;
}
