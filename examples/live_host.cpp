// Runs one program on two targets that run programs (kvtarget --run): both count; the first is paused, stepped and goes on,
// the second crashes and is reported: live_host ADDRESS1 ADDRESS2 PROGRAM

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "KvApplMan.hpp"
#include "progress_line.h"
#include "steps.h"
#include "text.h"

namespace {

using kvapplman::Application;
using kvapplman::Item;
using kvapplman::Param;
using kvapplman::State;
using Milliseconds = std::chrono::milliseconds;

constexpr Milliseconds kPatience(10000);
constexpr const char* kBetweenNumbers = "100"; // milliseconds
constexpr const char* kLastNumber = "40";      // of the second process

struct Demo {
    explicit Demo(char** arguments) : targets{arguments[0], arguments[1]}, program(arguments[2]) {}

    struct Targets {
        Targets(const char* firstAddress, const char* secondAddress) : first(firstAddress), second(secondAddress) {}
        kvapplman::Target first;
        kvapplman::Target second;
    } targets;
    std::filesystem::path program;
    std::optional<kvapplman::Group> group{};
    std::optional<Application> first{};
    std::optional<Application> second{};
};

void tell(const char* name, const Application& application) {
    std::printf("  %s: %s; %s\n", name, textOf(application.state()).c_str(),
                application.info<Item::informationText>().c_str());
}

void expectState(const Application& application, State expected) {
    const State state = application.state();
    if (state != expected) throw std::runtime_error("A process is " + textOf(state) + ", not " + textOf(expected));
}

/// So that somebody who watches sees what the programs print meanwhile.
void watch(Milliseconds time) { std::this_thread::sleep_for(time); }

// Steps

void deploy(Demo& demo) {
    demo.group.emplace(std::vector<const kvapplman::Target*>{&demo.targets.first, &demo.targets.second});
    demo.first = demo.group->registerApplication(1);
    demo.second = demo.group->registerApplication(2);
    demo.first->set<Param::arguments>({kBetweenNumbers});
    demo.second->set<Param::arguments>({kBetweenNumbers, kLastNumber});
    ProgressLine line;
    kvapplman::DownloadOptions options;
    options.progress = [&](const kvapplman::Progress& progress) { line.show(progress); };
    demo.group->download({demo.program, demo.program}, options);
    line.complete();
}

void start(Demo& demo) {
    demo.first->start();
    demo.second->start();
    watch(Milliseconds(700));
    tell("first", *demo.first);
    tell("second", *demo.second);
    expectState(*demo.first, State::running);
    expectState(*demo.second, State::running);
}

void pause(Demo& demo) {
    demo.first->pause();
    expectState(*demo.first, State::paused);
    watch(Milliseconds(500));
}

void step(Demo& demo) {
    for (int i = 0; i < 3; ++i) {
        demo.first->step();
        expectState(*demo.first, State::paused);
        watch(Milliseconds(300));
    }
}

void goOn(Demo& demo) {
    demo.first->start();
    expectState(*demo.first, State::running);
    watch(Milliseconds(400));
}

void awaitCrash(Demo& demo) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (demo.second->state() != State::stopped) {
        if (std::chrono::steady_clock::now() > end) throw std::runtime_error("The second process does not crash");
        watch(Milliseconds(50));
    }
    bool reported = false;
    demo.targets.second.onMessages([&](const char*, const kvapplman::Messages& messages) {
        if (!reported) std::printf("  %s\n", messages.front().text.c_str());
        reported = true;
    });
    tell("second", *demo.second);
    demo.targets.second.onMessages({});
    if (!reported) throw std::runtime_error("Nothing was said of the crash");
}

void stop(Demo& demo) {
    expectState(*demo.first, State::running);
    demo.first->stop();
    tell("first", *demo.first);
    expectState(*demo.first, State::stopped);
}

void unload(Demo& demo) {
    demo.first->unload();
    demo.second->unload();
    demo.group.reset();
}

constexpr Step<Demo> kSteps[] = {
    {"Deploy", deploy},       {"Start both", start},   {"Pause the first", pause},
    {"Step the first", step}, {"Let it go on", goOn},  {"Wait for the crash", awaitCrash},
    {"Stop the first", stop}, {"Unload both", unload},
};

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 4) {
        std::fprintf(stderr, "usage: live_host ADDRESS1 ADDRESS2 PROGRAM (an address is a.b.c.d:port)\n");
        return 2;
    }

    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ); // each line takes its place among those of the targets
    return runDemo(kSteps, arguments + 1);
}
