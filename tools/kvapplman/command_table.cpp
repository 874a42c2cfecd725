// Every command, in the order in which help shows them.
#include "command.h"

namespace tool {
namespace {

constexpr CommandFamily kFamilies[] = {
    {"info", "Information items of applications and of the application manager"},
    {"param", "Parameters of applications and of the application manager"},
    {"files", "Additional files of applications"},
    {"flash", "Applications in flash memory"},
    {"completion", "Completion of commands for shells"},
};

constexpr Command kCommands[] = {
    {"run", "Runs programs: deploys and starts them, tells how they end, and takes them away again.", bindRun, "", true},
    {"deploy", "Brings programs onto devices and leaves them there.", bindDeploy, "", true},
    {"watch", "Shows all applications of all devices, as they change.", bindWatch},
    {"help", "Shows how a command is used.", bindHelp},
};

} // namespace

std::span<const Command> commands() { return kCommands; }

std::span<const CommandFamily> commandFamilies() { return kFamilies; }

} // namespace tool
