// Several threads that do the same.
#pragma once

#include <cstddef>
#include <thread>
#include <vector>

/// Runs `work` with each number below `count` in a thread of its own, and waits for all.
template <class Work>
void inThreads(std::size_t count, const Work& work) {
    std::vector<std::jthread> threads;
    for (std::size_t number = 0; number < count; ++number) {
        threads.emplace_back([&work, number] { work(number); });
    }
}
