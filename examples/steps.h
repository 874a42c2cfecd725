// A program as a list of named steps, each of which tells how long it took.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <vector>

template <class Demo>
struct Step {
    const char* name;
    void (*run)(Demo&);
};

template <class Demo, std::size_t kCount>
void runSteps(const Step<Demo> (&steps)[kCount], Demo& demo) {
    using Milliseconds = std::chrono::duration<double, std::milli>;
    std::vector<Milliseconds> times;
    for (const Step<Demo>& step : steps) {
        std::puts(step.name);
        const auto begin = std::chrono::steady_clock::now();
        step.run(demo);
        times.emplace_back(std::chrono::steady_clock::now() - begin);
    }

    std::puts("How long it took");
    for (std::size_t i = 0; i < times.size(); ++i)
        std::printf("  %-26s %10.1f ms\n", steps[i].name, times[i].count());
}

/// Runs all steps on a Demo of the arguments. Result: the exit code; a failure has printed every message.
template <class Demo, std::size_t kCount>
int runDemo(const Step<Demo> (&steps)[kCount], char** arguments) {
    try {
        Demo demo(arguments);
        runSteps(steps, demo);
        return 0;
    } catch (const std::exception& failure) {
        std::fflush(stdout);
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
