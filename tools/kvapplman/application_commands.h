// What commands about one application have in common.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "applications.h"
#include "each_device.h"
#include "values.h"

namespace tool {

inline constexpr const char* kApplicationHelp = "its ID, its name, or \"manager\" for the application manager";

/// Adds the argument that names the application.
inline void addApplication(CLI::App& app, std::string& application) {
    app.add_option("APPLICATION", application, kApplicationHelp)->type_name("")->required();
}

using AskApplication = std::function<Told(const kvapplman::Application& application)>;

/// Asks an application on each device. What is told begins with its ID.
inline ExitCode askApplication(Context& context, const std::string& application, const AskApplication& ask) {
    return askEachDevice(context, [&](const kvapplman::Target& target) {
        const kvapplman::Application found = applicationOf(target, application);
        Told told = ask(found);
        told.fields["id"] = found.id();
        return told;
    });
}

} // namespace tool
