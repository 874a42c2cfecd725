// deploy, run: groups of applications onto devices
#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "command.h"
#include "deployer.h"
#include "system.h"

namespace tool {
namespace {

constexpr const char* kEmptySlot = "-";
constexpr std::size_t kMostSlots = KV_APPLMAN_MOST_SLOTS;

struct Wishes {
    std::vector<std::string> files{};
    bool group = false;
    bool each = false;
    bool start = false;
    std::size_t jobs = 4;
};

[[noreturn]] void failUsage(const std::string& text) { throw Failed(ExitCode::usage, text); }

/// Applications of files that cannot be there are not even registered.
std::filesystem::path existing(const std::string& file) {
    std::filesystem::path path = pathOf(file);
    std::error_code failure;
    if (!std::filesystem::is_regular_file(path, failure)) {
        throw Failed(ExitCode::hostFile, "There is no file \"" + file + "\".");
    }
    return path;
}

/// One of several, or the only one for all.
template <class Thing>
const Thing& ofSlot(const std::vector<Thing>& things, std::size_t slot) {
    return things.size() == 1 ? things.front() : things[slot];
}

/// One group over the devices.
Deployment groupOf(const std::vector<Device>& devices, const std::vector<std::string>& files) {
    const std::size_t count = std::max(devices.size(), files.size());
    for (const std::size_t given : {devices.size(), files.size()}) {
        if (given != 1 && given != count) {
            failUsage("A group takes one device for all slots or one per slot, and so it is with files: these are " +
                      std::to_string(devices.size()) + " devices and " + std::to_string(files.size()) + " files.");
        }
    }
    if (count > kMostSlots) { failUsage("A group has " + std::to_string(kMostSlots) + " slots at most."); }
    Deployment deployment;
    for (std::size_t slot = 0; slot < count; ++slot) {
        const std::string& file = ofSlot(files, slot);
        const Device& device = ofSlot(devices, slot);
        const bool empty = file == kEmptySlot || device.address.empty();
        deployment.slots.push_back(empty ? Slot{} : Slot{device, existing(file)});
    }
    if (std::ranges::all_of(deployment.slots, &Slot::empty)) { failUsage("Every slot of the group is empty."); }
    return deployment;
}

std::vector<Deployment> groupsOf(const Wishes& wishes, const Context& context) {
    if (wishes.group) { return {groupOf(slotsOf(context.options, context.configuration), wishes.files)}; }
    const std::vector<Device> devices = devicesOf(context.options, context.configuration);
    if (devices.size() > 1 && !wishes.each) {
        failUsage(
            "These are several devices: --each brings the same onto each of them, --group makes one group over them.");
    }
    std::vector<Deployment> groups;
    groups.reserve(devices.size());
    for (const Device& device : devices) {
        groups.push_back(groupOf({device}, wishes.files));
    }
    return groups;
}

ExitCode deploy(const Wishes& wishes, const Context& context, bool stays) {
    std::vector<Deployment> groups = groupsOf(wishes, context);
    for (Deployment& group : groups) {
        group.arguments = context.programArguments;
        group.start = wishes.start || !stays;
        group.follow = !stays;
    }
    JobLimits limits{.atATime = stays ? wishes.jobs : groups.size()};
    if (context.options.timeout) { limits.deadline = Clock::now() + *context.options.timeout; }
    return Deployer{context.output, std::move(groups), stays}.run(limits);
}

std::shared_ptr<Wishes> addWishes(CLI::App& app) {
    auto wishes = std::make_shared<Wishes>();
    app.add_option("FILE", wishes->files, "program of each process of the group; \"-\" is an empty slot")
        ->type_name("")
        ->required();
    const auto group =
        app.add_flag("--group", wishes->group, "one group over the devices, which are its slots in this order");
    app.add_flag("--each", wishes->each, "the same onto each device, a group for each")->excludes(group);
    return wishes;
}

} // namespace

Action bindDeploy(CLI::App& app) {
    const auto wishes = addWishes(app);
    app.add_flag("--start", wishes->start, "start what was loaded");
    app.add_option("--jobs", wishes->jobs, "devices at a time, with --each")
        ->type_name("NUMBER")
        ->check(CLI::Range(1, 1024))
        ->capture_default_str();
    return [wishes](Context& context) { return deploy(*wishes, context, true); };
}

Action bindRun(CLI::App& app) {
    const auto wishes = addWishes(app);
    return [wishes](Context& context) { return deploy(*wishes, context, false); };
}

} // namespace tool
