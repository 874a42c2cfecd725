// Step 3: the same, and tells how far it is: host ADDRESS PROGRAM
#include <exception>
#include <filesystem>
#include <iostream>

#include "KvApplMan.hpp"

const char* stateOf(const kvapplman::Application& application) {
    return rowOf(kvapplman::kStates, application.state()).name;
}

// cut: progress
void showProgress(const kvapplman::Progress& at) {
    std::cout << static_cast<int>(at.fraction * 100) << " % " << at.phaseName << ' ' << at.fileName << '\n';
}

void showMessages(const char* function, const kvapplman::Messages& messages) {
    for (const kvapplman::Message& message : messages)
        std::cout << function << " says: " << message.text << '\n';
}
// end

// cut: run
void run(kvapplman::Target& target, const std::filesystem::path& program) {
    target.onMessages(showMessages);
    kvapplman::Group group(target);
    const kvapplman::Application application = group.registerApplication(1);
    kvapplman::DownloadOptions options;
    options.progress = showProgress;
    group.download({program}, options);
    application.start();
    std::cout << "the program is " << stateOf(application) << '\n';
    application.stop();
    application.unload();
}
// end

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
