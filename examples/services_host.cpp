// What a target does for an application besides running it: additional files, lists, cores, pause and step, flash memory:
// services_host ADDRESS BINARY FILE DIRECTORY

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "KvApplMan.hpp"
#include "progress_line.h"
#include "steps.h"
#include "text.h"

namespace {

using kvapplman::Item;
using kvapplman::toUtf8;

constexpr std::uint32_t kFileType = 3; // any number but that of directories; what it means is the target's business

struct Demo {
    explicit Demo(char** arguments)
        : target(arguments[0]), binary(arguments[1]), file(arguments[2]), directory(arguments[3]) {}

    const kvapplman::Target target;
    const std::filesystem::path binary;
    const std::filesystem::path file;
    const std::filesystem::path directory;
    std::optional<kvapplman::Group> group{};
    std::optional<kvapplman::Application> application{};
    std::vector<std::uint32_t> flashIds{};
};

void expect(bool holds, const char* what) {
    if (!holds) throw std::runtime_error(std::string("Not as expected: ") + what);
}

// Steps

void bringUp(Demo& demo) {
    demo.group.emplace(demo.target);
    demo.application = demo.group->registerApplication(1);
    demo.group->download({demo.binary});
    demo.application->start();
}

void load(Demo& demo, const std::filesystem::path& path, std::uint32_t type) {
    ProgressLine line;
    kvapplman::FileOptions options;
    options.progress = [&](const kvapplman::Progress& progress) { line.show(progress); };
    demo.application->loadFile(path, type, options);
    line.complete();
}

void loadFile(Demo& demo) { load(demo, demo.file, kFileType); }
void loadDirectory(Demo& demo) { load(demo, demo.directory, KV_APPLMAN_FILE_TYPE_DIRECTORY); }

void listFiles(Demo& demo) {
    const auto listed = demo.application->files();
    for (const kvapplman::AddedFile& file : listed)
        std::printf("  %-16s type %-4u in %s\n", file.name.c_str(), file.type, file.directory.c_str());
    expect(listed.size() == 2, "a file and a directory are registered");
}

void removeFile(Demo& demo) {
    demo.application->removeFile(toUtf8(demo.file.filename()), kFileType);
    expect(demo.application->files().size() == 1, "the directory is left");
}

void listApplications(Demo& demo) {
    const auto listed = demo.target.applications(toUtf8(demo.binary.stem()));
    for (const kvapplman::ListedApplication& application : listed)
        std::printf("  0x%08x %s\n", application.id, application.infoText.c_str());
    expect(listed.size() == 1 && listed[0].id == demo.application->id(), "one application has this name");
}

void showCores(Demo& demo) {
    const auto all = demo.target.cores(kvapplman::Cores::all);
    const auto free = demo.target.cores(kvapplman::Cores::free);
    std::printf("  all: %s\n  free: %s\n", textOf(all).c_str(), textOf(free).c_str());
    expect(!all.empty() && free.size() < all.size(), "a target has cores, and the process runs on one of them");
}

void pauseAndStep(Demo& demo) {
    demo.application->pause();
    for (int i = 0; i < 3; ++i)
        demo.application->step();
    demo.application->start();
}

void showFlash(Demo& demo) {
    demo.flashIds = demo.target.flashApplicationIds();
    expect(!demo.flashIds.empty(), "the target was given an application in flash memory");
    for (const std::uint32_t id : demo.flashIds)
        std::printf("  %u: %s\n", id, demo.target.flashApplication(id).info<Item::fileName>().c_str());
}

void configureFlash(Demo& demo) {
    const auto application = demo.target.flashApplication(demo.flashIds.front());
    const std::vector<std::int64_t> values{1, -2, std::int64_t{1} << 40};
    application.setValues(values);
    expect(application.info<Item::flashValues>() == values, "the values are those that were set");
    std::printf("  %zu values of 64 bits set and read back\n", values.size());
}

void loadFlash(Demo& demo) {
    const std::size_t before = demo.target.applicationIds().size();
    demo.target.flashApplication(demo.flashIds.front()).load();
    expect(demo.target.applicationIds().size() == before + 1, "there is one application more");
}

void clearFlash(Demo& demo) {
    demo.target.flashApplication(demo.flashIds.front()).clear();
    expect(demo.target.flashApplicationIds().size() == demo.flashIds.size() - 1, "one flash application less");
}

void takeAway(Demo& demo) {
    demo.application->stop();
    demo.application->unload();
    demo.group.reset();
}

constexpr Step<Demo> kSteps[] = {
    {"Bring an application up", bringUp},
    {"Load an additional file", loadFile},
    {"Load a directory tree", loadDirectory},
    {"List the files", listFiles},
    {"Remove one", removeFile},
    {"List applications by name", listApplications},
    {"Show the cores", showCores},
    {"Pause, step and go on", pauseAndStep},
    {"Show the flash memory", showFlash},
    {"Configure a flash program", configureFlash},
    {"Load from flash", loadFlash},
    {"Clear flash", clearFlash},
    {"Take the application away", takeAway},
};

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 5) {
        std::fprintf(stderr, "usage: services_host ADDRESS BINARY FILE DIRECTORY (an address is a.b.c.d:port)\n");
        return 2;
    }
    return runDemo(kSteps, arguments + 1);
}
