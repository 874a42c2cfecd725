/* A server over libtirpc that answers the requests it expects, and those only: others get "garbage arguments".
   It prints its address and runs until it is ended. */
#include <arpa/inet.h>
#include <netinet/in.h>
#include <stdio.h>
#include <string.h>
#include <sys/socket.h>

#include "foreign_values.h"

struct exchange {
    u_int procedure;
    xdrproc_t requestRoutine;
    const void* request;
    xdrproc_t replyRoutine;
    void* reply;
};

enum { kAccessId = 16, kApplId = 3, kMostExchanges = 32 };

static struct exchange exchanges[kMostExchanges];
static size_t exchangeCount = 0;

static void expect(u_int procedure, xdrproc_t requestRoutine, const void* request, xdrproc_t replyRoutine,
                   void* reply) {
    exchanges[exchangeCount++] = (struct exchange){procedure, requestRoutine, request, replyRoutine, reply};
}

#define EXPECT(procedure, requestType, request, replyType, reply)                                                      \
    expect(procedure, (xdrproc_t)xdr_##requestType, request, (xdrproc_t)xdr_##replyType, reply)

static char errorList[kForeignErrorListRoom];

static void expectParameters(void) {
    static applman_set_param_request sets[kForeignTagCount];
    static applman_result taken;
    static applman_get_param_request gets[kForeignTagCount];
    static applman_value_result values[kForeignTagCount];
    for (u_int tag = 0; tag < kForeignTagCount; ++tag) {
        sets[tag] = (applman_set_param_request){1, kAccessId, kApplId, 100 + tag, foreignValues[tag]};
        gets[tag] = (applman_get_param_request){1, kAccessId, kApplId, 200 + tag};
        values[tag] = (applman_value_result){.result = (int)tag, .value = foreignValues[tag]};
        EXPECT(APPLMAN_SET_PARAM, applman_set_param_request, &sets[tag], applman_result, &taken);
        EXPECT(APPLMAN_GET_PARAM, applman_get_param_request, &gets[tag], applman_value_result, &values[tag]);
    }
}

static void expectGroup(u_int errorListLength) {
    static u_int accessId = kAccessId;
    static applman_group_result opened = {7, -5, {0, errorList}, 0x11223344U, 0x55667788U};
    opened.error_list.error_list_len = errorListLength;
    EXPECT(APPLMAN_OPEN_GROUP, u_int, &accessId, applman_group_result, &opened);

    static u_int list[] = {21, 22};
    static applman_register_request request = {
        kAccessId, 2, {1, 0x11223344U, 0x55667788U, 3, 5, {11, 12, 13, 14, 15, 16, 17}, {2, list}}};
    static applman_register_result registered = {-2, kApplId, "first", "second", {0, NULL}};
    EXPECT(APPLMAN_REGISTER_APPL, applman_register_request, &request, applman_register_result, &registered);

    static applman_request askState = {1, kAccessId, kApplId};
    static applman_result busy = {2, {0, NULL}};
    EXPECT(APPLMAN_GET_COMMAND_STATE, applman_request, &askState, applman_result, &busy);
}

static void expectFiles(u_int errorListLength) {
    static applman_file_record file = {kApplId,     5,      "C:\\source.bin",         "store", "name.bin",
                                       0x00ABCDEFU, "more", {1, 2, 3, 4, 5, 6, 7, 8}, "end"};
    static applman_add_file_request_2 withFile = {kAccessId, &file};
    static applman_add_file_result added = {-1, "store/files", {0, errorList}, "name.bin"};
    added.error_list.error_list_len = errorListLength;
    EXPECT(APPLMAN_ADD_FILE_2, applman_add_file_request_2, &withFile, applman_add_file_result, &added);

    static applman_add_file_request_2 withoutFile = {kAccessId, NULL};
    static applman_add_file_result nothing = {9, "", {0, NULL}, ""};
    EXPECT(APPLMAN_ADD_FILE_2, applman_add_file_request_2, &withoutFile, applman_add_file_result, &nothing);

    static int data[] = {'a', 'z'};
    static applman_flash_request flash = {
        kAccessId, {1, -0x0102030405060708, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}, {2, data}}};
    static applman_result loading = {4, {0, NULL}};
    EXPECT(APPLMAN_LOAD_FLASH_APPL, applman_flash_request, &flash, applman_result, &loading);
}

/* The exchange of a procedure with this request; any exchange of the procedure when the request is null. */
static const struct exchange* find(u_int procedure, const void* request) {
    for (size_t i = 0; i < exchangeCount; ++i) {
        const struct exchange* const exchange = &exchanges[i];
        if (exchange->procedure != procedure) { continue; }
        if (request == NULL || sameRecord(exchange->requestRoutine, request, exchange->request)) { return exchange; }
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
        perror("foreign_server");
        return 1;
    }
    SVCXPRT* const transport = svc_vc_create(listener, 0, 0);
    if (transport == NULL || !svc_register(transport, APPLMAN_PROGRAM, APPLMAN_VERSION, answer, 0)) { return 1; }

    const u_int errorListLength = foreignErrorList(errorList);
    expectParameters();
    expectGroup(errorListLength);
    expectFiles(errorListLength);
    printf("listening on 127.0.0.1:%d\n", ntohs(address.sin_port));
    fflush(stdout);
    svc_run();
    return 1;
}
