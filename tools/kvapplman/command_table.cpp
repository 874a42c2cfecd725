// Every command, in the order in which help shows them.
#include "command.h"

namespace tool {
namespace {

constexpr CommandFamily kFamilies[] = {
    {"info", "get, list: information items of applications and of the application manager."},
    {"param", "get, set: parameters of applications and of the application manager."},
    {"files", "add, list, remove: additional files of applications."},
    {"flash", "list, info, set, load, clear: applications in flash memory."},
    {"completion", "bash: a script by which the shell completes commands."},
};

constexpr Command kCommands[] = {
    {"run", "Runs programs: deploys and starts them, tells how they end, and takes them away again.", bindRun, "",
     Needs::program},
    {"deploy", "Brings programs onto devices and leaves them there.", bindDeploy, "", Needs::program},
    {"start", "Starts a loaded application, or lets a paused one go on.", bindStart},
    {"stop", "Stops an application; it may be started again.", bindStop},
    {"terminate", "Ends an application at once; it has to be loaded again.", bindTerminate},
    {"unload", "Takes an application away from its target.", bindUnload},
    {"pause", "Pauses a running application.", bindPause},
    {"step", "Lets a paused application make one step.", bindStep},
    {"state", "Tells the state of an application.", bindState},
    {"info get", "Reads information items: the value alone of one item, a table of several.", bindInfoGet},
    {"info list", "Reads all information items that the target offers for an application.", bindInfoList},
    {"param get", "Reads parameters, those that can be read.", bindParamGet},
    {"param set", "Writes a parameter.", bindParamSet},
    {"apps", "Lists applications.", bindApps},
    {"cores", "Lists processor cores.", bindCores},
    {"files add", "Brings additional files and directories to an application.", bindFilesAdd},
    {"files list", "Lists the additional files of an application.", bindFilesList},
    {"files remove", "Removes an additional file or directory of an application.", bindFilesRemove},
    {"flash list", "Lists the applications in flash memory.", bindFlashList},
    {"flash info", "Reads information items of an application in flash memory.", bindFlashInfo},
    {"flash set", "Writes the values of an application in flash memory.", bindFlashSet},
    {"flash load", "Loads an application from flash memory.", bindFlashLoad},
    {"flash clear", "Removes an application from flash memory.", bindFlashClear},
    {"watch", "Shows all applications of all devices, as they change.", bindWatch},
    {"ping", "Measures how long a device takes to connect and to answer a call.", bindPing},
    {"explain", "Explains a message or a status.", bindExplain, "", Needs::nothing},
    {"completion bash", "Prints a script by which bash completes commands.", bindCompletionBash, "", Needs::nothing},
    {"manual", "Prints the manual page, as roff.", bindManual, "", Needs::nothing},
    {"help", "Shows how a command is used.", bindHelp, "", Needs::nothing},
};

} // namespace

std::span<const Command> commands() { return kCommands; }

std::span<const CommandFamily> commandFamilies() { return kFamilies; }

} // namespace tool
