// Step 7: what the deployment does when a target is at fault: deployment_test CASE PROGRAM SETTINGS ADDRESS1 ADDRESS2
#include <chrono>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "deployment.h"

void expect(bool holds, const char* what) {
    if (!holds) throw std::runtime_error(std::string("not as expected: ") + what);
}

// One target refuses the first start: the host is told so, and can take everything away.
void refusedStart(Deployment& deployment, const std::vector<std::string>& addresses) {
    try {
        deployment.keepUp();
        expect(false, "a refused start is an error");
    } catch (const kvapplman::Error& error) {
        expect(error.status() == KV_APPLMAN_STATUS_START, "the error names the start");
    }
    deployment.takeAway();
    for (const std::string& address : addresses)
        expect(kvapplman::Target(address).applicationIds().empty(), "nothing is left on a target");
}

// One target restarts in the middle of it and is away for a while: in the end each target runs one process.
void restart(Deployment& deployment, const std::vector<std::string>& addresses) {
    bool isUp = false;
    for (int attempt = 0; attempt < 100 && !isUp; ++attempt) {
        try {
            deployment.keepUp();
            isUp = !deployment.keepUp();
        } catch (const kvapplman::Error&) { std::this_thread::sleep_for(std::chrono::milliseconds(100)); }
    }
    expect(isUp, "the program is up again in time");
    for (const std::string& address : addresses)
        expect(kvapplman::Target(address).applicationIds(kvapplman::State::running).size() == 1, "one process runs");
}

int main(int argumentCount, char** arguments) try {
    if (argumentCount != 6) {
        std::cerr << "usage: deployment_test CASE PROGRAM SETTINGS ADDRESS1 ADDRESS2\n";
        return 2;
    }
    const std::vector<std::string> addresses{arguments[4], arguments[5]};
    Deployment deployment(addresses, arguments[2], arguments[3]);
    if (arguments[1] == std::string_view("refused")) refusedStart(deployment, addresses);
    else if (arguments[1] == std::string_view("restart")) restart(deployment, addresses);
    else throw std::invalid_argument("no such case");
    return 0;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
}
