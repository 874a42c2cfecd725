// Step 2: brings a program onto a target, starts it and takes it away again: host ADDRESS PROGRAM
#include <exception>
#include <filesystem>
#include <iostream>

#include "KvApplMan.hpp"

const char* stateOf(const kvapplman::Application& application) {
    return rowOf(kvapplman::kStates, application.state()).name;
}

void run(const kvapplman::Target& target, const std::filesystem::path& program) {
    kvapplman::Group group(target);
    const kvapplman::Application application = group.registerApplication(1);
    group.download({program});
    application.start();
    std::cout << "the program is " << stateOf(application) << '\n';
    application.stop();
    std::cout << "the program is " << stateOf(application) << '\n';
    application.unload();
}

int main(int argumentCount, char** arguments) try {
    if (argumentCount != 3) {
        std::cerr << "usage: host ADDRESS PROGRAM\n";
        return 2;
    }
    kvapplman::Target target(arguments[1]);
    run(target, arguments[2]);
    return 0;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
}
