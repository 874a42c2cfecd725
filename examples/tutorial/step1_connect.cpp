// Step 1: reaches a target and asks what it is: host ADDRESS
#include <chrono>
#include <cstdint>
#include <exception>
#include <iostream>

#include "KvApplMan.hpp"

using kvapplman::Item;

int main(int argumentCount, char** arguments) try {
    if (argumentCount != 2) {
        std::cerr << "usage: host ADDRESS   (an address is a.b.c.d:port)\n";
        return 2;
    }
    const kvapplman::Target target(arguments[1]);
    const kvapplman::Application manager = target.manager();
    const std::uint32_t serialNumber = manager.info<Item::serialNumber>();
    const std::chrono::seconds timeout = manager.info<Item::commandTimeout>();
    std::cout << "target " << serialNumber << ": " << target.cores().size() << " cores, "
              << target.applicationIds().size() << " applications, commands take at most " << timeout.count() << " s\n";
    return 0;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
}
