// Brings one process onto one target, starts it, reads its state and takes it away again: minimal_host ADDRESS FILE
#include <cstdio>

#include "KvApplMan.hpp"

int main(int argumentCount, char** arguments) try {
    if (argumentCount != 3) {
        std::fprintf(stderr, "usage: minimal_host ADDRESS FILE   (an address is a.b.c.d:port)\n");
        return 2;
    }
    const kvapplman::Target target(arguments[1]);
    kvapplman::Group group(target);
    const kvapplman::Application application = group.registerApplication(1);
    group.download({arguments[2]});
    application.start();
    const bool running = application.state() == kvapplman::State::running;
    std::printf("application 0x%x is %s\n", application.id(), running ? "running" : "not running");
    application.stop();
    application.unload();
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
