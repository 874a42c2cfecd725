// Brings two processes of one group onto two targets, starts them, reads what the targets tell of them, and takes them
// away again: demo_host ADDRESS1 FILE1 ADDRESS2 FILE2

#include <array>
#include <cstddef>
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

constexpr std::uint32_t kSlotCount = 3; // the middle one stays empty
constexpr std::uint32_t kStateItem = 0;
constexpr std::uint32_t kManager = 0; // in place of a process: the target's application manager itself

struct Process {
    Process(const Pool& pool, std::uint32_t applNo, const char* address, const char* path)
        : number(applNo), file(path), device(pool, address), access(pool, device) {}

    std::size_t slot() const { return number - 1; }

    const std::uint32_t number; // position in the group, from 1
    const char* const file;
    const Device device;
    const AccessRestriction access;
    std::uint32_t id = 0; // the target's, from registration on
};

struct Demo {
    Demo(const Pool& messages, char** arguments)
        : pool(messages), processes{Process{pool, 1, arguments[0], arguments[1]},
                                    Process{pool, 3, arguments[2], arguments[3]}} {}

    const Pool& pool;
    std::array<Process, 2> processes;
    std::optional<Group> group{};
};

/// What group creation and download want: arrays with one element per slot.
struct Slots {
    explicit Slots(const std::array<Process, 2>& processes) {
        for (const Process& process : processes) {
            devices[process.slot()] = process.device;
            accessRestrictions[process.slot()] = process.access;
            ids[process.slot()] = process.id;
            files[process.slot()] = process.file;
        }
    }

    std::array<void*, kSlotCount> devices{};
    std::array<void*, kSlotCount> accessRestrictions{};
    std::array<std::uint32_t, kSlotCount> ids{};
    std::array<const char*, kSlotCount> files{};
};

std::string nameOf(const Process& process) { return "process " + std::to_string(process.number); }

// Information items

enum class Kind { number, text, numbers };

struct Item {
    std::uint32_t id;
    const char* name;
    Kind kind;
};

constexpr Item kProcessItems[] = {
    {2, "file name", Kind::text},  {3, "directory", Kind::text},     {7, "file written", Kind::text},
    {6, "downloaded", Kind::text}, {10, "group size", Kind::number}, {15, "serial numbers", Kind::numbers},
    {16, "addresses", Kind::text}, {22, "information", Kind::text},
};

constexpr Item kManagerItems[] = {
    {2051, "serial number", Kind::number},
    {2055, "command timeout (s)", Kind::number},
};

std::uint32_t readNumber(const Pool& pool, const Process& process, std::uint32_t applId, std::uint32_t item) {
    std::uint32_t value = 0;
    std::int32_t size = sizeof value;
    check(KvApplMan_getApplInfo(pool, process.device, process.access, applId, item, &value, &size),
          "Reading item " + std::to_string(item));
    return value;
}

/// Reads a text or an array. A call with size 0 tells the size; it leaves a message, so it gets a pool of its own. When
/// something else is wrong, the second call meets it again.
template <typename Element>
std::vector<Element> readElements(const Pool& pool, const Process& process, std::uint32_t applId, std::uint32_t item) {
    const Pool sizeMessages;
    std::int32_t size = 0;
    KvApplMan_getApplInfo(sizeMessages, process.device, process.access, applId, item, nullptr, &size);

    std::vector<Element> elements(static_cast<std::size_t>(size) / sizeof(Element));
    check(KvApplMan_getApplInfo(pool, process.device, process.access, applId, item, elements.data(), &size),
          "Reading item " + std::to_string(item));
    return elements;
}

std::string readItem(const Pool& pool, const Process& process, std::uint32_t applId, const Item& item) {
    if (item.kind == Kind::number) return std::to_string(readNumber(pool, process, applId, item.id));
    if (item.kind == Kind::numbers) return joined(readElements<std::uint32_t>(pool, process, applId, item.id));
    return readElements<char>(pool, process, applId, item.id).data();
}

void printItem(const Pool& pool, const Process& process, std::uint32_t applId, const Item& item) {
    std::printf("    %-20s %s\n", item.name, readItem(pool, process, applId, item).c_str());
}

/// What the states of a process mean to the simulated targets.
enum State : std::uint32_t { kRunning = 4, kStopped = 6 };

void expectState(const Pool& pool, const Process& process, State expected) {
    const std::uint32_t state = readNumber(pool, process, process.id, kStateItem);
    if (state != expected)
        throw std::runtime_error(nameOf(process) + " is in state " + std::to_string(state) + ", not in " +
                                 std::to_string(expected));
    std::printf("  %s: %s\n", nameOf(process).c_str(), expected == kRunning ? "running" : "stopped");
}

// Steps

void createGroup(Demo& demo) {
    const Slots slots(demo.processes);
    demo.group.emplace(demo.pool, slots.devices.data(), slots.accessRestrictions.data(), kSlotCount);
}

void registerProcesses(Demo& demo) {
    for (Process& process : demo.processes) {
        check(KvApplMan_registerAppl_2(demo.pool, process.device, process.access, *demo.group, process.number,
                                       &process.id),
              "Registering " + nameOf(process));
        std::printf("  %s: application ID 0x%08x\n", nameOf(process).c_str(), process.id);
    }
}

void download(Demo& demo) {
    constexpr std::uint32_t kNoOption = 0;
    const Slots slots(demo.processes);
    ProgressLine line;
    const std::int32_t status =
        KvApplMan_downloadApplUtf8(demo.pool, slots.devices.data(), slots.accessRestrictions.data(), slots.ids.data(),
                                   slots.files.data(), kNoOption, kSlotCount, showProgress, &line, nullptr);
    check(line.ended(status), "Downloading");
}

void start(Demo& demo) {
    for (const Process& process : demo.processes) {
        check(KvApplMan_startAppl(demo.pool, process.device, process.access, process.id),
              "Starting " + nameOf(process));
        expectState(demo.pool, process, kRunning);
    }
}

void readInformation(Demo& demo) {
    for (const Process& process : demo.processes) {
        std::printf("  %s\n", nameOf(process).c_str());
        for (const Item& item : kProcessItems)
            printItem(demo.pool, process, process.id, item);
        std::printf("  target of %s\n", nameOf(process).c_str());
        for (const Item& item : kManagerItems)
            printItem(demo.pool, process, kManager, item);
    }
}

void stop(Demo& demo) {
    for (const Process& process : demo.processes) {
        check(KvApplMan_stopAppl(demo.pool, process.device, process.access, process.id), "Stopping " + nameOf(process));
        expectState(demo.pool, process, kStopped);
    }
}

void unload(Demo& demo) {
    for (const Process& process : demo.processes)
        check(KvApplMan_unloadAppl(demo.pool, process.device, process.access, process.id),
              "Unloading " + nameOf(process));
}

void deleteGroup(Demo& demo) { demo.group.reset(); }

constexpr Step<Demo> kSteps[] = {
    {"Create the group", createGroup},
    {"Register", registerProcesses},
    {"Download", download},
    {"Start", start},
    {"Read information", readInformation},
    {"Stop", stop},
    {"Unload", unload},
    {"Delete the group", deleteGroup},
};

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 5) {
        std::fprintf(stderr, "usage: demo_host ADDRESS1 FILE1 ADDRESS2 FILE2 (an address is a.b.c.d:port)\n");
        return 2;
    }

    return runDemo(kSteps, arguments + 1);
}
