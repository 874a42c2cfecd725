// Loads one folder after the other onto a target, as additional files of one process that it registers there.
// Usage: upload HOST:PORT FOLDER... Says of each that it is loaded, and waits for a line before the next one. Ends with 0
// when the target has them all.
#include <cstdio>
#include <exception>
#include <span>

#include "faults/calls.h"
#include "support/pool.h"

namespace {

constexpr std::uint32_t kFolder = 512;

bool upload(const char* address, std::span<char*> folders) {
    const Pool pool;
    Call call{*pool};
    bool done = KvPlatform_addDevice(pool, address, 1, &call.device) == 0 &&
                KvHIM_createAccessRestrictionHandle(pool, call.device, &call.access) == 0 && registerAppl(call) == 0;
    for (const char* const folder : folders) {
        done = done && loadFrom(call, folder, "", kFolder) == 0;
        if (done) { std::puts(folder); }
        std::fflush(stdout);
        while (done && folder != folders.back() && std::getchar() > '\n') {}
    }
    return KvPlatform_removeDevice(pool, call.device) == 0 && done;
}

} // namespace

int main(int count, char** arguments) try {
    if (count < 3) {
        std::fprintf(stderr, "usage: upload HOST:PORT FOLDER...\n");
        return 2;
    }
    return upload(arguments[1], std::span{arguments + 2, arguments + count}) ? 0 : 1;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "upload: %s\n", failure.what());
    return 2;
}
