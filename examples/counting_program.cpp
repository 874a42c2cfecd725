// A program for targets, which run it as an application process: it prints numbers, from 1 on, until it is asked to end:
// counting_program [MILLISECONDS [LAST]]   (time between two numbers; the number at which it crashes)

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

volatile std::sig_atomic_t askedToEnd = 0;

long argument(int count, char** arguments, int index, long otherwise) {
    return index < count ? std::strtol(arguments[index], nullptr, 10) : otherwise;
}

} // namespace

int main(int argumentCount, char** arguments) {
    const std::chrono::milliseconds pause(argument(argumentCount, arguments, 1, 1000));
    const long last = argument(argumentCount, arguments, 2, 0);
    const char* const number = std::getenv("KVTARGET_APPL_NO");
    std::signal(SIGTERM, [](int) { askedToEnd = 1; });

    for (long count = 1; askedToEnd == 0; ++count) {
        std::printf("counter %s: %ld\n", number != nullptr ? number : "", count);
        std::fflush(stdout); // a target takes the output through a pipe
        if (count == last) std::abort();
        std::this_thread::sleep_for(pause);
    }
    std::printf("counter %s: asked to end\n", number != nullptr ? number : "");
    return 0;
}
