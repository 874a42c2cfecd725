// cut: top
// Step 4: one group on two targets: host ADDRESS1 ADDRESS2 PROGRAM
#include <cstdint>
#include <exception>
#include <filesystem>
#include <iostream>
#include <vector>

#include "KvApplMan.hpp"

using kvapplman::Item;
// end

const char* stateOf(const kvapplman::Application& application) {
    return rowOf(kvapplman::kStates, application.state()).name;
}

void showProgress(const kvapplman::Progress& at) {
    std::cout << static_cast<int>(at.fraction * 100) << " % " << at.phaseName << ' ' << at.fileName << '\n';
}

// cut: deploy
std::vector<kvapplman::Application> deploy(const kvapplman::Target& first, const kvapplman::Target& second,
                                           const std::filesystem::path& program) {
    kvapplman::Group group({&first, &second});
    std::vector<kvapplman::Application> applications;
    for (std::uint32_t number = 1; number <= group.slotCount(); ++number)
        applications.push_back(group.registerApplication(number));
    kvapplman::DownloadOptions options;
    options.progress = showProgress;
    group.download({program, program}, options);
    return applications;
}
// end

// cut: tell
void tell(const kvapplman::Application& application) {
    std::cout << stateOf(application) << ", one of " << application.info<Item::groupSize>() << ", group on";
    for (const std::uint32_t serialNumber : application.info<Item::groupSerialNumbers>())
        std::cout << ' ' << serialNumber;
    std::cout << '\n';
}
// end

// cut: main
int main(int argumentCount, char** arguments) try {
    if (argumentCount != 4) {
        std::cerr << "usage: host ADDRESS1 ADDRESS2 PROGRAM\n";
        return 2;
    }
    const kvapplman::Target first(arguments[1]);
    const kvapplman::Target second(arguments[2]);
    const auto applications = deploy(first, second, arguments[3]);
    for (const kvapplman::Application& application : applications)
        application.start();
    for (const kvapplman::Application& application : applications)
        tell(application);
    for (const kvapplman::Application& application : applications)
        application.unload();
    return 0;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
}
// end
