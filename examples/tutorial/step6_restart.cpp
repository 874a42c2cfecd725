// Step 6: keeps the program up for a while, whatever becomes of the targets:
// host ADDRESS1 ADDRESS2 PROGRAM SETTINGS SECONDS
#include <chrono>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <thread>

#include "deployment.h"

void keepUp(Deployment& deployment, std::chrono::seconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) {
        try {
            if (deployment.keepUp()) std::cout << "the program was brought up" << std::endl;
        } catch (const kvapplman::Error& error) {
            std::cout << "not yet: " << error.messages().front().text << std::endl;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
    }
}

int main(int argumentCount, char** arguments) try {
    if (argumentCount != 6) {
        std::cerr << "usage: host ADDRESS1 ADDRESS2 PROGRAM SETTINGS SECONDS\n";
        return 2;
    }
    Deployment deployment({arguments[1], arguments[2]}, arguments[3], arguments[4]);
    keepUp(deployment, std::chrono::seconds(std::atoi(arguments[5])));
    deployment.takeAway();
    return 0;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
}
