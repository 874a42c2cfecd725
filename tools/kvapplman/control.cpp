// start, stop, terminate, unload, pause, step, state: one application
#include <memory>
#include <string>

#include "application_commands.h"
#include "command.h"
#include "values.h"

namespace tool {
namespace {

using kvapplman::Application;

Action bindControl(CLI::App& app, void (Application::*command)() const, const char* done) {
    const auto name = std::make_shared<std::string>();
    addApplication(app, *name);
    return [name, command, done](Context& context) {
        return askApplication(context, *name, [&](const Application& application) {
            (application.*command)();
            return Told{Json::object(), "application " + std::to_string(application.id()) + " " + done + "\n"};
        });
    };
}

} // namespace

Action bindStart(CLI::App& app) { return bindControl(app, &Application::start, "is started"); }
Action bindStop(CLI::App& app) { return bindControl(app, &Application::stop, "is stopped"); }
Action bindTerminate(CLI::App& app) { return bindControl(app, &Application::terminate, "is terminated"); }
Action bindUnload(CLI::App& app) { return bindControl(app, &Application::unload, "is unloaded"); }
Action bindPause(CLI::App& app) { return bindControl(app, &Application::pause, "is paused"); }
Action bindStep(CLI::App& app) { return bindControl(app, &Application::step, "has made a step"); }

Action bindState(CLI::App& app) {
    const auto name = std::make_shared<std::string>();
    addApplication(app, *name);
    return [name](Context& context) {
        return askApplication(context, *name, [](const Application& application) {
            const std::string state = textOf(application.state());
            return Told{{{"state", state}}, state + "\n"};
        });
    };
}

} // namespace tool
