// Loads one folder after the other onto a target, as additional files of one process that it registers there.
// Usage: upload HOST:PORT FOLDER... Says of each that it is loaded, and waits for a line before the next one. Ends with 0
// when the target has them all.
#include <cstdio>
#include <exception>
#include <span>

#include "api/KvApplicationManagerAP.h"
#include "support/pool.h"

namespace {

constexpr std::uint32_t kFolder = 512;

struct Host {
    bool upload(const char* address, std::span<char*> folders) {
        if (KvPlatform_addDevice(pool, address, 1, &device) != 0) { return false; }
        const bool done = KvHIM_createAccessRestrictionHandle(pool, device, &access) == 0 && load(folders);
        return KvPlatform_removeDevice(pool, device) == 0 && done;
    }

private:
    bool load(std::span<char*> folders) {
        KvSApplGroupHandle* group = nullptr;
        if (KvApplMan_createApplGroupHandle_2(pool, &device, &access, 1, &group) != 0) { return false; }
        std::uint32_t applId = 0;
        bool done = KvApplMan_registerAppl_2(pool, device, access, group, 1, &applId) == 0;
        for (const char* const folder : folders) {
            done = done && KvApplMan_loadFileUtf8(pool, device, access, applId, folder, "", "", kFolder, 0, nullptr,
                                                  nullptr, nullptr) == 0;
            if (done) { std::puts(folder); }
            std::fflush(stdout);
            while (folder != folders.back() && std::getchar() > '\n') {}
        }
        KvApplMan_deleteApplGroupHandle(pool, group);
        return done;
    }

    Pool pool{};
    void* device = nullptr;
    void* access = nullptr;
};

} // namespace

int main(int count, char** arguments) try {
    if (count < 3) {
        std::fprintf(stderr, "usage: upload HOST:PORT FOLDER...\n");
        return 2;
    }
    return Host{}.upload(arguments[1], std::span{arguments + 2, arguments + count}) ? 0 : 1;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "upload: %s\n", failure.what());
    return 2;
}
