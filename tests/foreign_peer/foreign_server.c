/* A server over libtirpc that answers the requests it expects, and those only: others get "garbage arguments".
   It prints its address and runs until it is ended. */
#include <arpa/inet.h>
#include <netinet/in.h>
#include <stdio.h>
#include <string.h>
#include <sys/socket.h>

#include "foreign_values.h"

enum { kAccessId = 16, kApplId = 3 };

static u_int accessId = kAccessId, identities[] = {21, 22};

static applman_group_result opened = {7, -5, {0, NULL}, 0x11223344U, 0x55667788U};
static applman_register_request registration = {
    kAccessId, 2, {1, 0x11223344U, 0x55667788U, 3, 5, {11, 12, 13, 14, 15, 16, 17}, {2, identities}}};
static applman_register_result registered = {-2, kApplId, "first", "second", {0, NULL}};
static applman_request askedState = {1, kAccessId, kApplId};
static applman_file_record file = {kApplId,     5,      "C:\\source.bin",         "store", "name.bin",
                                   0x00ABCDEFU, "more", {1, 2, 3, 4, 5, 6, 7, 8}, "end"};
static applman_add_file_request_2 withFile = {kAccessId, &file}, withoutFile = {kAccessId, NULL};
static applman_add_file_result added = {-1, "store/files", {0, NULL}, "name.bin"}, nothing = {9, "", {0, NULL}, ""};
static int letters[] = {'a', 'z'};
static applman_flash_request flash = {
    kAccessId,
    {1, -0x0102030405060708, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}, {2, letters}}};
static applman_result done = {0, {0, NULL}}, busy = {2, {0, NULL}};
static applman_set_param_request sets[kForeignTagCount];
static applman_get_param_request gets[kForeignTagCount];
static applman_value_result values[kForeignTagCount];

struct exchange {
    u_int procedure;
    xdrproc_t requestRoutine;
    const void* request;
    xdrproc_t replyRoutine;
    void* reply;
};

#define EXCHANGE(procedure, requestType, request, replyType, reply)                                                    \
    { procedure, (xdrproc_t)xdr_##requestType, request, (xdrproc_t)xdr_##replyType, reply }

enum { kPlainExchanges = 6, kExchanges = kPlainExchanges + 2 * kForeignTagCount };

static struct exchange exchanges[kExchanges] = {
    EXCHANGE(APPLMAN_OPEN_GROUP, u_int, &accessId, applman_group_result, &opened),
    EXCHANGE(APPLMAN_REGISTER_APPL, applman_register_request, &registration, applman_register_result, &registered),
    EXCHANGE(APPLMAN_GET_COMMAND_STATE, applman_request, &askedState, applman_result, &busy),
    EXCHANGE(APPLMAN_ADD_FILE_2, applman_add_file_request_2, &withFile, applman_add_file_result, &added),
    EXCHANGE(APPLMAN_ADD_FILE_2, applman_add_file_request_2, &withoutFile, applman_add_file_result, &nothing),
    EXCHANGE(APPLMAN_LOAD_FLASH_APPL, applman_flash_request, &flash, applman_result, &done),
};

static void expectParameters(void) {
    struct exchange* next = exchanges + kPlainExchanges;
    for (u_int tag = 0; tag < kForeignTagCount; ++tag) {
        sets[tag] = (applman_set_param_request){1, kAccessId, kApplId, 100 + tag, foreignValues[tag]};
        gets[tag] = (applman_get_param_request){1, kAccessId, kApplId, 200 + tag};
        values[tag] = (applman_value_result){.result = (int)tag, .value = foreignValues[tag]};
        *next++ =
            (struct exchange)EXCHANGE(APPLMAN_SET_PARAM, applman_set_param_request, &sets[tag], applman_result, &done);
        *next++ = (struct exchange)EXCHANGE(APPLMAN_GET_PARAM, applman_get_param_request, &gets[tag],
                                            applman_value_result, &values[tag]);
    }
}

/* The exchange of a procedure with this request; any exchange of the procedure when the request is null. */
static const struct exchange* find(u_int procedure, const void* request) {
    for (const struct exchange* at = exchanges; at < exchanges + kExchanges; ++at) {
        if (at->procedure != procedure) { continue; }
        if (request == NULL || sameRecord(at->requestRoutine, request, at->request)) { return at; }
    }
    return NULL;
}

static void answer(struct svc_req* call, SVCXPRT* transport) {
    const struct exchange* const offered = find(call->rq_proc, NULL);
    if (offered == NULL) {
        svcerr_noproc(transport);
        return;
    }
    union {
        applman_set_param_request parameter;
        applman_add_file_request_2 file;
        applman_register_request registration;
        applman_flash_request flash;
    } request;
    memset(&request, 0, sizeof request);
    const bool_t decoded = svc_getargs(transport, offered->requestRoutine, &request);
    const struct exchange* const expected = decoded ? find(call->rq_proc, &request) : NULL;
    if (expected != NULL) {
        svc_sendreply(transport, expected->replyRoutine, expected->reply);
    } else {
        svcerr_decode(transport);
    }
    svc_freeargs(transport, offered->requestRoutine, &request);
}

int main(void) {
    const int listener = socket(AF_INET, SOCK_STREAM, 0);
    struct sockaddr_in address = {.sin_family = AF_INET, .sin_addr.s_addr = htonl(INADDR_LOOPBACK)};
    socklen_t length = sizeof address;
    if (listener < 0 || bind(listener, (struct sockaddr*)&address, length) != 0 || listen(listener, 8) != 0 ||
        getsockname(listener, (struct sockaddr*)&address, &length) != 0) {
        return 1;
    }
    SVCXPRT* const transport = svc_vc_create(listener, 0, 0);
    if (transport == NULL || !svc_register(transport, APPLMAN_PROGRAM, APPLMAN_VERSION, answer, 0)) { return 1; }

    expectParameters();
    printf("listening on 127.0.0.1:%d\n", ntohs(address.sin_port));
    fflush(stdout);
    svc_run();
    return 1;
}
