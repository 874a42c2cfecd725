#include "foreign_values.h"

#include <stdint.h>
#include <string.h>

static u_int words[] = {0, 1, 0xFFFFFFFFU};
static applman_text texts[] = {"", "abc", "abcdefgh"};
static char bytes[] = {0, 127, -128, -1, 1};
static quad_t quads[] = {INT64_MIN, 0, INT64_MAX};

applman_value foreignValues[kForeignTagCount] = {
    {APPLMAN_WORD, {.word = 0xFEDCBA98U}},          {APPLMAN_DOUBLE, {.real = -1234.0625}},
    {APPLMAN_TEXT, {.text = "Gr\xC3\xB6\xC3\x9F"}}, {APPLMAN_WORDS, {.words = {3, words}}},
    {APPLMAN_QUAD, {.quad = -0x0123456789ABCDEF}},  {APPLMAN_TEXTS, {.texts = {3, texts}}},
    {APPLMAN_BYTES, {.bytes = {5, bytes}}},         {APPLMAN_QUADS, {.quads = {3, quads}}},
};

bool_t sameRecord(xdrproc_t routine, const void* left, const void* right) {
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
