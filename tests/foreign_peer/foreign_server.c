#include "foreign_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <signal.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "applman.h"

enum { kAccessId = 16, kApplId = 3, kTags = 8 };

static u_int words[] = {0, 1, 0xFFFFFFFFU};
static applman_text texts[] = {"", "abc", "abcdefgh"};
static char bytes[] = {0, 127, -128, -1, 1};
static quad_t quads[] = {INT64_MIN, 0, INT64_MAX};
static applman_value values[kTags] = {
    {APPLMAN_WORD, {.word = 0xFEDCBA98U}},          {APPLMAN_DOUBLE, {.real = -1234.0625}},
    {APPLMAN_TEXT, {.text = "Gr\xC3\xB6\xC3\x9F"}}, {APPLMAN_WORDS, {.words = {3, words}}},
    {APPLMAN_QUAD, {.quad = -0x0123456789ABCDEF}},  {APPLMAN_TEXTS, {.texts = {3, texts}}},
    {APPLMAN_BYTES, {.bytes = {5, bytes}}},         {APPLMAN_QUADS, {.quads = {3, quads}}},
};
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
    kAccessId, {1, -0x0102030405060708, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}, {2, letters}}};
static applman_result done = {0, {0, NULL}}, busy = {2, {0, NULL}};
static applman_set_param_request sets[kTags];
static applman_get_param_request gets[kTags];
static applman_value_result gotten[kTags];

struct exchange {
    u_int procedure;
    xdrproc_t requestRoutine;
    const void* request;
    xdrproc_t replyRoutine;
    void* reply;
};

#define EXCHANGE(procedure, requestType, request, replyType, reply)                                                    \
    { procedure, (xdrproc_t)xdr_##requestType, request, (xdrproc_t)xdr_##replyType, reply }

enum { kPlainExchanges = 6, kExchanges = kPlainExchanges + 2 * kTags };

static struct exchange exchanges[kExchanges] = {
    EXCHANGE(APPLMAN_OPEN_GROUP, u_int, &accessId, applman_group_result, &opened),
    EXCHANGE(APPLMAN_REGISTER_APPL, applman_register_request, &registration, applman_register_result, &registered),
    EXCHANGE(APPLMAN_GET_COMMAND_STATE, applman_request, &askedState, applman_result, &busy),
    EXCHANGE(APPLMAN_ADD_FILE_2, applman_add_file_request_2, &withFile, applman_add_file_result, &added),
    EXCHANGE(APPLMAN_ADD_FILE_2, applman_add_file_request_2, &withoutFile, applman_add_file_result, &nothing),
    EXCHANGE(APPLMAN_LOAD_FLASH_APPL, applman_flash_request, &flash, applman_result, &done),
};

static bool_t sameRecord(xdrproc_t routine, const void* left, const void* right) {
    static char rooms[2][4096];
    const void* records[2] = {left, right};
    u_int lengths[2];
    for (int i = 0; i < 2; ++i) {
        XDR xdr;
        xdrmem_create(&xdr, rooms[i], sizeof rooms[i], XDR_ENCODE);
        if (!routine(&xdr, (void*)records[i])) { return FALSE; }
        lengths[i] = xdr_getpos(&xdr);
    }
    return lengths[0] == lengths[1] && memcmp(rooms[0], rooms[1], lengths[0]) == 0;
}

static void expectParameters(void) {
    struct exchange* next = exchanges + kPlainExchanges;
    for (u_int tag = 0; tag < kTags; ++tag) {
        sets[tag] = (applman_set_param_request){1, kAccessId, kApplId, 100 + tag, values[tag]};
        gets[tag] = (applman_get_param_request){1, kAccessId, kApplId, 200 + tag};
        gotten[tag] = (applman_value_result){.result = (int)tag, .value = values[tag]};
        *next++ =
            (struct exchange)EXCHANGE(APPLMAN_SET_PARAM, applman_set_param_request, &sets[tag], applman_result, &done);
        *next++ = (struct exchange)EXCHANGE(APPLMAN_GET_PARAM, applman_get_param_request, &gets[tag],
                                            applman_value_result, &gotten[tag]);
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
    max_align_t request[16]; /* room for each of them */
    memset(request, 0, sizeof request);
    const bool_t decoded = svc_getargs(transport, offered->requestRoutine, request);
    const struct exchange* const expected = decoded ? find(call->rq_proc, request) : NULL;
    if (expected != NULL) {
        svc_sendreply(transport, expected->replyRoutine, expected->reply);
    } else {
        svcerr_decode(transport);
    }
    svc_freeargs(transport, offered->requestRoutine, request);
}

int listenForCalls(unsigned short* port) {
    struct sockaddr_in address = {.sin_family = AF_INET, .sin_addr.s_addr = htonl(INADDR_LOOPBACK)};
    socklen_t length = sizeof address;
    const int listener = socket(AF_INET, SOCK_STREAM, 0);
    if (bind(listener, (struct sockaddr*)&address, length) != 0 || listen(listener, 8) != 0 ||
        getsockname(listener, (struct sockaddr*)&address, &length) != 0) {
        return -1;
    }
    *port = ntohs(address.sin_port);
    return listener;
}

void serveCalls(int listener) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    expectParameters();
    SVCXPRT* const transport = svc_vc_create(listener, 0, 0);
    if (transport != NULL && svc_register(transport, APPLMAN_PROGRAM, APPLMAN_VERSION, answer, 0)) { svc_run(); }
    _exit(1);
}
