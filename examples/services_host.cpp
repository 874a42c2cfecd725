// What a target does for an application besides running it: additional files, lists, cores, pause and step, flash memory:
// services_host ADDRESS BINARY FILE DIRECTORY

#include <cstdint>
#include <cstdio>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "KvApplicationManagerAP.h"
#include "kv_handles.h"
#include "progress_line.h"
#include "steps.h"
#include "text.h"

namespace {

constexpr std::uint32_t kFileType = 3;
constexpr std::uint32_t kDirectoryType = 512;
constexpr std::uint32_t kFlashValues = 1200; // the item of a flash application that can be written
constexpr std::uint32_t kFileName = 2;       // item

struct Demo {
    Demo(const Pool& messages, char** arguments)
        : pool(messages), binary(arguments[1]), file(arguments[2]), directory(arguments[3]), device(pool, arguments[0]),
          access(pool, device) {}

    const Pool& pool;
    const char* const binary;
    const char* const file;
    const char* const directory;
    const Device device;
    const AccessRestriction access;
    std::optional<Group> group{};
    std::uint32_t applId = 0;
    std::vector<std::uint32_t> flashIds{};
};

void expect(bool holds, const char* what) {
    if (!holds) throw std::runtime_error(std::string("Not as expected: ") + what);
}

std::string baseName(const std::string& path) { return path.substr(path.find_last_of("/\\") + 1); }

std::string withoutExtension(const std::string& name) { return name.substr(0, name.rfind('.')); }

/// Asks how many there are and then for all of them. The question leaves a message when there are any, so it has a pool
/// of its own; `ask` takes a pool, the number and the elements.
template <class Element, class Count, class Ask>
std::vector<Element> listAll(const Pool& pool, const char* what, Ask ask) {
    const Pool sizeMessages;
    Count count = 0;
    ask(sizeMessages, &count, nullptr);
    std::vector<Element> elements(static_cast<std::size_t>(count));
    if (!elements.empty()) check(ask(pool, &count, elements.data()), what);
    return elements;
}

// Steps

void bringUp(Demo& demo) {
    void* const device = demo.device;
    void* const access = demo.access;
    demo.group.emplace(demo.pool, &device, &access, 1);
    check(KvApplMan_registerAppl_2(demo.pool, device, access, *demo.group, 1, &demo.applId), "Registering");
    check(KvApplMan_downloadApplUtf8(demo.pool, &device, &access, &demo.applId, &demo.binary, 0, 1, nullptr, nullptr,
                                     nullptr),
          "Downloading");
    check(KvApplMan_startAppl(demo.pool, device, access, demo.applId), "Starting");
}

void load(Demo& demo, const char* path, std::uint32_t type) {
    ProgressLine line;
    const std::int32_t status = KvApplMan_loadFileUtf8(demo.pool, demo.device, demo.access, demo.applId, path, "", "",
                                                       type, 0, showProgress, &line, nullptr);
    check(line.ended(status), std::string("Loading ") + path);
}

void loadFile(Demo& demo) { load(demo, demo.file, kFileType); }
void loadDirectory(Demo& demo) { load(demo, demo.directory, kDirectoryType); }

std::vector<TApplManAddFileInfo> files(Demo& demo) {
    return listAll<TApplManAddFileInfo, std::uint32_t>(
        demo.pool, "Listing the files", [&](const Pool& pool, std::uint32_t* count, TApplManAddFileInfo* list) {
            return KvApplMan_getFileInfo(pool, demo.device, demo.access, demo.applId, count, list);
        });
}

void listFiles(Demo& demo) {
    const auto listed = files(demo);
    for (const TApplManAddFileInfo& info : listed)
        std::printf("  %-16s type %-4u in %s\n", info.entryText2, info.entryWord, info.entryText3);
    expect(listed.size() == 2, "a file and a directory are registered");
}

void removeFile(Demo& demo) {
    const std::string name = baseName(demo.file);
    check(KvApplMan_removeFile(demo.pool, demo.device, demo.access, demo.applId, name.c_str(), kFileType),
          "Removing " + name);
    expect(files(demo).size() == 1, "the directory is left");
}

void listApplications(Demo& demo) {
    const std::string name = withoutExtension(baseName(demo.binary));
    KvTApplicationInfo* list = nullptr;
    std::uint32_t count = 0;
    check(KvApplMan_getApplInfoList(demo.pool, demo.device, demo.access, &list, &count, name.c_str()),
          "Listing the applications called " + name);
    const bool onlyOurs = count == 1 && list[0].applId == demo.applId;
    for (std::uint32_t i = 0; i < count; ++i)
        std::printf("  0x%08x %s\n", list[i].applId, list[i].infoText);
    KvApplMan_freeApplInfoList(&list, &count);
    expect(onlyOurs, "one application has this name");
}

void showCores(Demo& demo) {
    for (const std::uint32_t kind : {0U, 1U}) {
        const auto cores = listAll<std::uint32_t, std::uint32_t>(
            demo.pool, "Reading the cores", [&](const Pool& pool, std::uint32_t* count, std::uint32_t* ids) {
                return KvApplMan_getAvailableCoreIDs(pool, demo.device, demo.access, kind, count, ids);
            });
        std::printf("  kind %u: %s\n", kind, joined(cores).c_str());
        expect(!cores.empty(), "a target has cores");
    }
}

void pauseAndStep(Demo& demo) {
    check(KvApplMan_pauseAppl(demo.pool, demo.device, demo.access, demo.applId), "Pausing");
    for (int i = 0; i < 3; ++i)
        check(KvApplMan_stepAppl(demo.pool, demo.device, demo.access, demo.applId), "Stepping");
    check(KvApplMan_startAppl(demo.pool, demo.device, demo.access, demo.applId), "Going on");
}

void showFlash(Demo& demo) {
    demo.flashIds = listAll<std::uint32_t, std::uint32_t>(
        demo.pool, "Listing the flash applications", [&](const Pool& pool, std::uint32_t* count, std::uint32_t* ids) {
            return KvApplMan_getFlashApplications(pool, demo.device, demo.access, 0, count, ids);
        });
    expect(!demo.flashIds.empty(), "the target was given an application in flash memory");
    for (const std::uint32_t id : demo.flashIds) {
        char name[256] = {};
        std::int32_t size = sizeof name;
        check(KvApplMan_getFlashApplInfo(demo.pool, demo.device, demo.access, id, kFileName, name, &size),
              "Reading the name");
        std::printf("  %u: %s\n", id, name);
    }
}

void configureFlash(Demo& demo) {
    const std::uint32_t id = demo.flashIds.front();
    const std::vector<std::int64_t> values{1, -2, std::int64_t{1} << 40};
    const auto bytes = static_cast<std::uint32_t>(values.size() * sizeof values[0]);
    check(KvApplMan_setFlashApplParameter(demo.pool, demo.device, demo.access, id, kFlashValues, values.data(), bytes),
          "Setting the values");
    std::vector<std::int64_t> kept(values.size());
    auto size = static_cast<std::int32_t>(bytes);
    check(KvApplMan_getFlashApplInfo(demo.pool, demo.device, demo.access, id, kFlashValues, kept.data(), &size),
          "Reading the values");
    expect(kept == values, "the values are those that were set");
    std::printf("  %zu values of 64 bits set and read back\n", kept.size());
}

std::size_t applicationCount(Demo& demo) {
    constexpr std::uint32_t kAnyState = 0;
    return listAll<std::uint32_t, std::int32_t>(demo.pool, "Listing the applications",
                                                [&](const Pool& pool, std::int32_t* count, std::uint32_t* ids) {
                                                    return KvApplMan_getApplications(pool, demo.device, demo.access,
                                                                                     kAnyState, ids, count);
                                                })
        .size();
}

void loadFlash(Demo& demo) {
    const std::size_t before = applicationCount(demo);
    check(KvApplMan_loadFlashAppl(demo.pool, demo.device, demo.access, demo.flashIds.front()), "Loading from flash");
    expect(applicationCount(demo) == before + 1, "there is one application more");
}

void clearFlash(Demo& demo) {
    check(KvApplMan_clearFlashAppl(demo.pool, demo.device, demo.access, demo.flashIds.front()), "Clearing");
    std::uint32_t count = 0;
    KvApplMan_getFlashApplications(demo.pool, demo.device, demo.access, 0, &count, nullptr);
    expect(count == demo.flashIds.size() - 1, "one flash application less");
}

void takeAway(Demo& demo) {
    check(KvApplMan_stopAppl(demo.pool, demo.device, demo.access, demo.applId), "Stopping");
    check(KvApplMan_unloadAppl(demo.pool, demo.device, demo.access, demo.applId), "Unloading");
    demo.group.reset();
}

constexpr Step<Demo> kSteps[] = {
    {"Bring an application up", bringUp},
    {"Load an additional file", loadFile},
    {"Load a directory tree", loadDirectory},
    {"List the files", listFiles},
    {"Remove one", removeFile},
    {"List applications by name", listApplications},
    {"Show the cores", showCores},
    {"Pause, step and go on", pauseAndStep},
    {"Show the flash memory", showFlash},
    {"Configure a flash program", configureFlash},
    {"Load from flash", loadFlash},
    {"Clear flash", clearFlash},
    {"Take the application away", takeAway},
};

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 5) {
        std::fprintf(stderr, "usage: services_host ADDRESS BINARY FILE DIRECTORY (an address is a.b.c.d:port)\n");
        return 2;
    }
    return runDemo(kSteps, arguments + 1);
}
