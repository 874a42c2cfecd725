// What a command is: a row of the table of commands, and what it gets to do its work.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "devices.h"
#include "failure.h"
#include "options.h"
#include "output.h"

namespace CLI {
class App;
}

namespace tool {

struct Context {
    const CommonOptions& options;
    Output& output;
    const CLI::App& root;                        ///< the whole command line, for those who tell about it
    std::vector<std::string> programArguments{}; ///< what stands behind "--"
    Configuration configuration{};
};

/// Does the work. What it throws becomes a failure of the whole command.
using Action = std::function<ExitCode(Context&)>;

/// Adds a command's own options and arguments; what it returns is called after they have their values.
using Bind = Action (*)(CLI::App& app);

/// What a command is given.
enum class Needs : std::uint8_t {
    devices, ///< those of the options, of the environment or of the configuration, which is read for it
    program, ///< devices, and what stands behind "--"
    nothing,
};

struct Command {
    const char* name; ///< "info get": two words are a command of a family
    const char* help; ///< one sentence
    Bind bind;
    const char* details = ""; ///< what else help and the manual page tell
    Needs needs = Needs::devices;
};

/// A word that only stands before others.
struct CommandFamily {
    const char* name;
    const char* help;
};

std::span<const Command> commands();
std::span<const CommandFamily> commandFamilies();

// A function per command, each in the source of its family.
Action bindDeploy(CLI::App& app);
Action bindRun(CLI::App& app);
Action bindWatch(CLI::App& app);
Action bindStart(CLI::App& app);
Action bindStop(CLI::App& app);
Action bindTerminate(CLI::App& app);
Action bindUnload(CLI::App& app);
Action bindPause(CLI::App& app);
Action bindStep(CLI::App& app);
Action bindState(CLI::App& app);
Action bindInfoGet(CLI::App& app);
Action bindInfoList(CLI::App& app);
Action bindParamGet(CLI::App& app);
Action bindParamSet(CLI::App& app);
Action bindApps(CLI::App& app);
Action bindCores(CLI::App& app);
Action bindFilesAdd(CLI::App& app);
Action bindFilesList(CLI::App& app);
Action bindFilesRemove(CLI::App& app);
Action bindFlashList(CLI::App& app);
Action bindFlashInfo(CLI::App& app);
Action bindFlashSet(CLI::App& app);
Action bindFlashLoad(CLI::App& app);
Action bindFlashClear(CLI::App& app);
Action bindPing(CLI::App& app);
Action bindExplain(CLI::App& app);
Action bindCompletionBash(CLI::App& app);
Action bindManual(CLI::App& app);
Action bindHelp(CLI::App& app);

} // namespace tool
