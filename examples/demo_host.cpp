// Brings two processes of one group onto two targets, starts them, reads what the targets tell of them, and takes them
// away again: demo_host ADDRESS1 FILE1 ADDRESS2 FILE2

#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "KvApplMan.hpp"
#include "progress_line.h"
#include "steps.h"
#include "text.h"

namespace {

using kvapplman::Application;
using kvapplman::Item;
using kvapplman::State;

constexpr std::uint32_t kSlotCount = 3; // the middle one stays empty

struct Process {
    std::string name() const { return "process " + std::to_string(number); }
    std::size_t slot() const { return number - 1; }

    std::uint32_t number; // position in the group, from 1
    kvapplman::Target target;
    std::filesystem::path file;
    std::optional<Application> application{}; // from registration on
};

struct Demo {
    explicit Demo(char** arguments)
        : processes{Process{1, kvapplman::Target(arguments[0]), arguments[1]},
                    Process{3, kvapplman::Target(arguments[2]), arguments[3]}} {}

    std::array<Process, 2> processes;
    std::optional<kvapplman::Group> group{};
};

constexpr Item kProcessItems[] = {
    Item::fileName,  Item::directory,          Item::fileTimeText,   Item::downloadTimeText,
    Item::groupSize, Item::groupSerialNumbers, Item::groupAddresses, Item::informationText,
};
constexpr Item kManagerItems[] = {Item::serialNumber, Item::commandTimeout};

template <std::size_t kCount>
void printItems(const Application& application, const Item (&items)[kCount]) {
    for (const Item item : items)
        std::printf("    %-20s %s\n", rowOf(kvapplman::kItems, item).name, textOf(application.info(item)).c_str());
}

void expectState(const Process& process, State expected) {
    const State state = process.application->state();
    if (state != expected)
        throw std::runtime_error(process.name() + " is " + textOf(state) + ", not " + textOf(expected));
    std::printf("  %s: %s\n", process.name().c_str(), textOf(state).c_str());
}

// Steps

void createGroup(Demo& demo) {
    std::vector<const kvapplman::Target*> targets(kSlotCount);
    for (const Process& process : demo.processes)
        targets[process.slot()] = &process.target;
    demo.group.emplace(targets);
}

void registerProcesses(Demo& demo) {
    for (Process& process : demo.processes) {
        process.application = demo.group->registerApplication(process.number);
        std::printf("  %s: application ID 0x%08x\n", process.name().c_str(), process.application->id());
    }
}

void download(Demo& demo) {
    std::vector<std::filesystem::path> files(kSlotCount);
    for (const Process& process : demo.processes)
        files[process.slot()] = process.file;
    ProgressLine line;
    kvapplman::DownloadOptions options;
    options.progress = [&](const kvapplman::Progress& progress) { line.show(progress); };
    demo.group->download(files, options);
    line.complete();
}

void start(Demo& demo) {
    for (const Process& process : demo.processes) {
        process.application->start();
        expectState(process, State::running);
    }
}

void readInformation(Demo& demo) {
    for (const Process& process : demo.processes) {
        std::printf("  %s\n", process.name().c_str());
        printItems(*process.application, kProcessItems);
        std::printf("  target of %s\n", process.name().c_str());
        printItems(process.target.manager(), kManagerItems);
    }
}

void stop(Demo& demo) {
    for (const Process& process : demo.processes) {
        process.application->stop();
        expectState(process, State::stopped);
    }
}

void unload(Demo& demo) {
    for (const Process& process : demo.processes)
        process.application->unload();
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
