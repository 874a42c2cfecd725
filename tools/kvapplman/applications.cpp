#include "applications.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "failure.h"
#include "numbers.h"
#include "times.h"

namespace tool {
namespace {

using kvapplman::Item;
using kvapplman::ListedApplication;

constexpr const char* kManagerName = "manager";

/// The target compares names without their last extension.
std::vector<ListedApplication> candidatesFor(const kvapplman::Target& target, const std::string& name) {
    std::vector<ListedApplication> found = target.applications(name);
    const std::size_t dot = name.rfind('.');
    if (!found.empty() || dot == std::string::npos || dot == 0) { return found; }
    found = target.applications(name.substr(0, dot));
    std::erase_if(found, [&](const ListedApplication& candidate) {
        return target.application(candidate.id).info<Item::fileName>() != name;
    });
    return found;
}

} // namespace

std::uint32_t applicationIdOf(const kvapplman::Target& target, const std::string& text) {
    if (const auto number = wordFrom(text)) { return *number; }
    if (text == kManagerName) { return KV_APPLMAN_MANAGER; }
    const std::vector<ListedApplication> candidates = candidatesFor(target, text);
    if (candidates.size() == 1) { return candidates.front().id; }
    if (candidates.empty()) {
        throw Failed(ExitCode::refused,
                     "The target has no application \"" + text + "\". kvapplman apps lists those that it has.");
    }
    std::string lines = "Several applications are called \"" + text + "\". Give the ID of one of them:";
    for (const ListedApplication& candidate : candidates) {
        lines += "\n  " + std::to_string(candidate.id) + "  " + candidate.infoText;
    }
    throw Failed(ExitCode::usage, lines);
}

void checkBoot(const kvapplman::Target& target, const CommonOptions& options) {
    if (!options.boot) { return; }
    const kvapplman::Time started = target.manager().info<Item::startTime>();
    if (started == *options.boot) { return; }
    throw Failed(ExitCode::refused, "The target has started at " + textOf(started) + ", not at " +
                                        textOf(*options.boot) +
                                        ": application IDs from before mean nothing any more. kvapplman apps lists "
                                        "those of now.");
}

} // namespace tool
