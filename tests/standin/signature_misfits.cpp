// Reports whose arguments fit their signatures; with MISFIT, one whose arguments do not.
#include "platform/error_lists.h"

void report(KvCErrorListPool& pool) {
    pool.setError(1, __LINE__, "report", "%s%u%d%x", "text", 1U, -1, 2U);
    pool.setError(1, __LINE__, "report", nullptr);
#ifdef MISFIT
    pool.setError(1, __LINE__, "report", "%s%u", "text");
#endif
}
