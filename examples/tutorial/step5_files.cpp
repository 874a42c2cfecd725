// Step 5: a file of settings beside the program: host ADDRESS1 ADDRESS2 PROGRAM SETTINGS
#include <cstdint>
#include <exception>
#include <filesystem>
#include <iostream>
#include <vector>

#include "KvApplMan.hpp"

void showProgress(const kvapplman::Progress& at) {
    std::cout << static_cast<int>(at.fraction * 100) << " % " << at.phaseName << ' ' << at.fileName << '\n';
}

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

// cut: files
constexpr std::uint32_t kSettingsType = 3; // what it means is the target's business

void addSettings(const kvapplman::Application& application, const std::filesystem::path& settings) {
    application.loadFile(settings, kSettingsType);
    for (const kvapplman::AddedFile& file : application.files())
        std::cout << "the target holds " << file.name << ", type " << file.type << '\n';
}
// end

// cut: main
int main(int argumentCount, char** arguments) try {
    if (argumentCount != 5) {
        std::cerr << "usage: host ADDRESS1 ADDRESS2 PROGRAM SETTINGS\n";
        return 2;
    }
    const kvapplman::Target first(arguments[1]);
    const kvapplman::Target second(arguments[2]);
    const auto applications = deploy(first, second, arguments[3]);
    for (const kvapplman::Application& application : applications) {
        addSettings(application, arguments[4]);
        application.start();
    }
    for (const kvapplman::Application& application : applications)
        application.unload();
    return 0;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
}
// end
