// Reports whose arguments do not fit their signatures, one per MISFIT; 0 fits. None but 0 may compile.
#include "platform/error_lists.h"

void report(KvCErrorListPool& pool) {
#if MISFIT == 0
    pool.setError(1, __LINE__, "report", "%s%u%d%x", "text", 1U, -1, 2U);
    pool.setError(1, __LINE__, "report", nullptr);
#elif MISFIT == 1
    pool.setError(1, __LINE__, "report", "%s", 1U);
#elif MISFIT == 2
    pool.setError(1, __LINE__, "report", "%s%u", "text");
#elif MISFIT == 3
    pool.setError(1, __LINE__, "report", "%u", 1U, 2U);
#elif MISFIT == 4
    pool.setError(1, __LINE__, "report", "%x", 1ULL);
#else
    pool.setError(1, __LINE__, "report", "%d", 1.0);
#endif
}
