// What `kvapplman explain` knows. Written by scripts/errors from docs/errors.md.in and the tables of the sources.
#include "explanations.h"

namespace tool {
namespace {

// clang-format off
constexpr Explanation kExplanations[] = {
    {"KV_APPLMAN_OK", "status", static_cast<std::uint32_t>(0),
     "success",
     "",
     "The call has done what it is for.",
     "The pool can hold messages all the same: warnings of the target, such as 0x14a00814, or what was "
     "reported by a step that may fail, such as telling the target the host's time during registration.",
     "Go by the status, not by the pool. Empty the pool with KvPlatform_clearPool when you have read it, "
     "so that old messages are not taken for those of the next call.",
     "every function that has a status"},
    {"KV_APPLMAN_STATUS_ARGUMENT", "status", static_cast<std::uint32_t>(-100),
     "an argument, a handle or memory is missing",
     "",
     "An argument, a handle or memory is missing.",
     "A null pointer; an access-restriction handle that was deleted, or whose device was removed; the "
     "handle of a device that was removed (0x12500044); a list of more than 128 slots (0x1250004d); seldom "
     "a lack of memory.",
     "Check the arguments against the header. The operation and the line of the message tell which check "
     "failed. KvApplMan_getAvailableCoreIDs gives this status without a message when the list is null and "
     "0 cores were offered.",
     "every function that has a status"},
    {"KV_APPLMAN_STATUS_REGISTRATION", "status", static_cast<std::uint32_t>(-110),
     "an application process was not registered",
     "",
     "An application process was not registered.",
     "The application number is not the next one (0x12500049), the device is not the one of the slot "
     "(0x1250004b), its serial number could not be read (0x1250004a), or the target refused or did not "
     "answer (0x12500000).",
     "Read the message in front. No application ID was given out as far as the host knows, so there is "
     "nothing to unload; when the reply was lost, the target may have the process all the same, and "
     "KvApplMan_getApplications lists it.",
     "KvApplMan_registerAppl_2"},
    {"KV_APPLMAN_STATUS_INITIALISATION", "status", static_cast<std::uint32_t>(-120),
     "not initialised",
     "",
     "An application process was not initialised during a download.",
     "The target refused the initialisation, reported that it failed, or did not finish it within its "
     "command timeout.",
     "Read the target's own message and 0x12500056, which names the slot and the call. Unload the "
     "processes of the group and register them anew.",
     "KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_STATUS_LOAD", "status", static_cast<std::uint32_t>(-130),
     "not loaded",
     "",
     "A download cannot go on with loading.",
     "The target could not load the binary (0x12500002); the number of slots is not that of the group "
     "(0x1250004f); the targets of the group do not load in the same way (0x12500055).",
     "Read the messages in front of 0x12500050, which names the slot. What was transferred before stays on "
     "the targets until the processes are unloaded.",
     "KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_STATUS_APPLY", "status", static_cast<std::uint32_t>(-140),
     "its configuration was not applied",
     "",
     "The configuration of an application process was not applied during a download.",
     "The target refused to apply, reported that it failed, or did not finish it within its command "
     "timeout.",
     "Read the target's own message and 0x12500057, which names the slot. Unload the processes of the "
     "group and register them anew.",
     "KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_STATUS_START", "status", static_cast<std::uint32_t>(-150),
     "not started",
     "",
     "An application process was not started.",
     "It is not in a state in which it can be started (0x14a00801), its program cannot be executed "
     "(0x14a00815), or the target did not finish in time (0x12500043).",
     "Read its state with item 0. A process can be started when it is ready, stopped or paused; a "
     "registered one wants a download first.",
     "KvApplMan_startAppl"},
    {"KV_APPLMAN_STATUS_STOP", "status", static_cast<std::uint32_t>(-160),
     "not stopped",
     "",
     "An application process was not stopped.",
     "It neither runs nor is paused (0x14a00801), perhaps because it has ended by itself (0x14a00814), or "
     "the target did not finish in time (0x12500043).",
     "Read its state with item 0. If it hangs, KvApplMan_terminateAppl ends it; afterwards it has to be "
     "loaded again.",
     "KvApplMan_stopAppl"},
    {"KV_APPLMAN_STATUS_TERMINATE", "status", static_cast<std::uint32_t>(-161),
     "not terminated",
     "",
     "An application process was not terminated.",
     "Nothing is loaded for it (0x14a00801), the target does not know it (0x14a00803), or the target did "
     "not finish in time (0x12500043).",
     "Read its state with item 0. A process that is only registered is taken away with "
     "KvApplMan_unloadAppl.",
     "KvApplMan_terminateAppl"},
    {"KV_APPLMAN_STATUS_PAUSE", "status", static_cast<std::uint32_t>(-165),
     "not paused",
     "",
     "An application process was not paused.",
     "It does not run (0x14a00801), or the target did not finish in time (0x12500043).",
     "Read its state with item 0; only a running process can be paused.",
     "KvApplMan_pauseAppl"},
    {"KV_APPLMAN_STATUS_STEP", "status", static_cast<std::uint32_t>(-166),
     "no step was made",
     "",
     "An application process made no step.",
     "It is not paused (0x14a00801), or the target did not finish in time (0x12500043).",
     "Read its state with item 0; pause the process first.",
     "KvApplMan_stepAppl"},
    {"KV_APPLMAN_STATUS_UNLOAD", "status", static_cast<std::uint32_t>(-170),
     "not unloaded",
     "",
     "An application process was not unloaded.",
     "The target does not know the ID (0x14a00803), another command of the process is under way "
     "(0x14a00802), or the target did not finish in time (0x12500043). That the target forgets the process "
     "while it is waited for counts as done.",
     "With 0x14a00803 there is nothing left to unload. Otherwise wait until the other command is over and "
     "unload again.",
     "KvApplMan_unloadAppl"},
    {"KV_APPLMAN_STATUS_INFORMATION", "status", static_cast<std::uint32_t>(-175),
     "an information item was not received",
     "",
     "The target did not answer for an information item.",
     "The target does not know the process (0x14a00803), or cannot answer for the item and there is no "
     "default (0x14a00804). Within a command or a download the item is one that the library itself needs, "
     "such as the command timeout.",
     "Check the application ID and the item. Items 2049 to 2055 are asked of application 0, the manager; "
     "most others of a process.",
     "KvApplMan_getApplInfo, KvApplMan_getFlashApplInfo, KvApplMan_getApplInfoList, "
     "KvApplMan_downloadApplUtf8, KvApplMan_startAppl, KvApplMan_stopAppl, KvApplMan_terminateAppl, "
     "KvApplMan_unloadAppl, KvApplMan_pauseAppl, KvApplMan_stepAppl, KvApplMan_loadFlashAppl"},
    {"KV_APPLMAN_STATUS_PARAMETER", "status", static_cast<std::uint32_t>(-176),
     "the target refused a parameter",
     "",
     "The target refused a parameter.",
     "The target does not know the process (0x14a00803) or the parameter (0x14a00804), or takes no such "
     "value (0x14a00805, 0x14a00817). At registration it is the group's data that were refused "
     "(0x1250004c).",
     "Read the target's own message. After registration the process is there all the same: its ID was "
     "delivered, so unload it before you try again.",
     "KvApplMan_setApplParameter, KvApplMan_setFlashApplParameter, KvApplMan_registerAppl_2, "
     "KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_STATUS_CHANNEL", "status", static_cast<std::uint32_t>(-180),
     "no command channel to the target",
     "",
     "There is no command channel to the target.",
     "The target is not running, is switched off or cannot be reached from this host, or the port is "
     "wrong; then 0x1260000e to 0x12600011 comes first and says which.",
     "Check address and port of the device, and that the target runs. The next call for the device tries "
     "to connect again; nothing has to be reset.",
     "every function that talks to a target"},
    {"KV_APPLMAN_STATUS_REMOTE_CALL", "status", static_cast<std::uint32_t>(-185),
     "the call to the target failed or was not answered in time",
     "",
     "A call to the target failed or was not answered in time.",
     "The connection was lost (0x12600013), the target did not answer within 15 seconds (0x12600012), "
     "answered with something that cannot be read (0x12600014), refused the call (0x12600015), or does not "
     "offer the function (0x1250000a alone).",
     "Read the message in front of 0x1250000a. Whether the target has carried out the request is not "
     "known: read the state before you send it again.",
     "every function that talks to a target, but KvApplMan_createApplGroupHandle_2, "
     "KvApplMan_getAvailableCoreIDs and KvApplMan_getFlashApplications"},
    {"KV_APPLMAN_STATUS_FT_CREATE", "status", static_cast<std::uint32_t>(-190),
     "no file-transfer client",
     "",
     "There is no file-transfer channel to the target.",
     "File transfer uses a connection of its own to the same port, and it was not established: the target "
     "has gone or takes no further connection.",
     "Read the message in front of 0x1250000b, and treat it like a missing command channel (-180).",
     "KvApplMan_downloadApplUtf8, KvApplMan_loadFileUtf8"},
    {"KV_APPLMAN_STATUS_FT_DELETE", "status", static_cast<std::uint32_t>(-191),
     "the file-transfer client was not deleted",
     "",
     "The file-transfer channel was not closed as it should.",
     "The platform library does not know the handle any more. With the platform library given here this "
     "does not occur.",
     "The file itself has been transferred. With another platform library, look at what its function "
     "KvHIM_deleteFTClientHandle reports.",
     "KvApplMan_downloadApplUtf8, KvApplMan_loadFileUtf8"},
    {"KV_APPLMAN_STATUS_TRANSFER", "status", static_cast<std::uint32_t>(-195),
     "a file or directory was not transferred",
     "",
     "A file or directory was not transferred.",
     "The host cannot read the file (0x1260001a), it changed meanwhile (0x1260001b), the target refused it "
     "(0x1260001c, 0x1260001d), the connection was lost (0x12600013), or load options were given "
     "(0x12500031).",
     "Read the message in front of 0x1250000d. The target keeps the earlier file under this name, if there "
     "was one; a half file never gets its final name.",
     "KvApplMan_downloadApplUtf8, KvApplMan_loadFileUtf8"},
    {"KV_APPLMAN_STATUS_SIZE", "status", static_cast<std::uint32_t>(-200),
     "a size, buffer or value does not fit",
     "",
     "A size, a buffer or a value does not fit.",
     "A buffer or list is too small; an item of fixed size was asked for with another size; the target has "
     "no groups and there is more than one slot (0x12500035).",
     "The needed size or count stands in the in/out argument: make the buffer that large and call again. A "
     "size of 0 asks for the size only, where the item has no fixed one.",
     "KvApplMan_getApplInfo, KvApplMan_getFlashApplInfo, KvApplMan_getApplications, "
     "KvApplMan_getApplInfoList, KvApplMan_getAvailableCoreIDs, KvApplMan_getFlashApplications, "
     "KvApplMan_setApplParameter, KvApplMan_createApplGroupHandle_2"},
    {"KV_APPLMAN_STATUS_TYPE", "status", static_cast<std::uint32_t>(-204),
     "the target answered with another type",
     "",
     "The target answered with a value of another type than the item has.",
     "The target's version means something else by this item, or its answer was damaged.",
     "Check that target and host fit together. No argument of the host can cause this.",
     "KvApplMan_getApplInfo, KvApplMan_getFlashApplInfo, KvApplMan_getApplInfoList, "
     "KvApplMan_downloadApplUtf8, KvApplMan_startAppl, KvApplMan_stopAppl, KvApplMan_terminateAppl, "
     "KvApplMan_unloadAppl, KvApplMan_pauseAppl, KvApplMan_stepAppl, KvApplMan_loadFlashAppl"},
    {"KV_APPLMAN_STATUS_IDENTIFIER", "status", static_cast<std::uint32_t>(-205),
     "unknown item, parameter or selector",
     "",
     "There is no such item, parameter or selector.",
     "A number that is none of KvApplManItem, KvApplManParam or KvApplManCores; for a flash application a "
     "parameter other than item 1200.",
     "Use the names of `KvApplManConstants.h`. Not every item can be written: those that can are "
     "KvApplManParam.",
     "KvApplMan_getApplInfo, KvApplMan_getFlashApplInfo, KvApplMan_setApplParameter, "
     "KvApplMan_setFlashApplParameter, KvApplMan_getAvailableCoreIDs"},
    {"KV_APPLMAN_STATUS_STATE", "status", static_cast<std::uint32_t>(-210),
     "unknown application state; item 0 delivers it as a state",
     "",
     "There is no such application state.",
     "The state to list is above 6. Item 0 delivers this number in place of a state when the target's "
     "state is not known here; the function's result is 0 then.",
     "Use the names of KvApplManState. When item 0 delivers it, the target has states of a newer version.",
     "KvApplMan_getApplications; KvApplMan_getApplInfo as the value of item 0"},
    {"KV_APPLMAN_STATUS_APPLICATIONS", "status", static_cast<std::uint32_t>(-215),
     "the list of applications was not received",
     "",
     "The target did not list its applications.",
     "The target refused the request.",
     "Read the target's own message, which stands in front of 0x12500016.",
     "KvApplMan_getApplications, KvApplMan_getApplInfoList"},
    {"KV_APPLMAN_STATUS_ACCESS_HANDLE", "status", static_cast<std::uint32_t>(-245),
     "no access-restriction handle for a process, or it was not deleted",
     "",
     "An access-restriction handle for a new process could not be made, used or deleted.",
     "The device was removed meanwhile, or the access level that the library wants for a moment was "
     "refused (0x1260000a).",
     "The process is registered: its ID was delivered, but the group's data did not reach it. Unload it "
     "and register again.",
     "KvApplMan_registerAppl_2"},
    {"KV_APPLMAN_STATUS_BINARY_NOT_FOUND", "status", static_cast<std::uint32_t>(-250),
     "the host has no such application binary",
     "",
     "The host has no such application binary.",
     "The path is wrong, is relative to another folder than the host program's, or names a directory. On "
     "Windows a file without the archive attribute is not seen.",
     "Check the path that 0x1250002b shows. Nothing was transferred for this slot.",
     "KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_STATUS_FILE_SOURCE", "status", static_cast<std::uint32_t>(-830),
     "the host has no such additional file or directory",
     "",
     "The host has no such additional file or directory.",
     "The path is wrong; the type says directory (512) and the path names a file, or the other way round. "
     "On Windows a file without the archive attribute is not seen.",
     "Check path and type in 0x12500032. The target was not asked.",
     "KvApplMan_loadFileUtf8"},
    {"KV_APPLMAN_STATUS_FILE_REMOVE", "status", static_cast<std::uint32_t>(-831),
     "an additional file was not removed",
     "",
     "The target did not remove an additional file.",
     "It has no file of this name and type (0x14a00810), could not delete it (0x14a00811), or does not "
     "know the application (0x14a00803).",
     "List the files with KvApplMan_getFileInfo; name and type must be those under which the file was "
     "loaded.",
     "KvApplMan_removeFile"},
    {"KV_APPLMAN_STATUS_FILE_LOAD", "status", static_cast<std::uint32_t>(-832),
     "an additional file or directory was not loaded",
     "",
     "The target did not take an additional file or directory.",
     "It refused to register the file (0x12500041), named no place for it (0x12500021, 0x12500030), or "
     "knows no directories (0x12500022).",
     "Read the target's own message in front. Nothing was transferred.",
     "KvApplMan_loadFileUtf8"},
    {"KV_APPLMAN_STATUS_FILE_INFORMATION", "status", static_cast<std::uint32_t>(-833),
     "the list of additional files was not received, or does not fit",
     "",
     "The list of additional files was not delivered.",
     "The list is too small (0x12500027), or the target refused (0x1250002c).",
     "With 0x12500027 the count tells how many elements are needed: call again with so many. Otherwise "
     "read the target's own message.",
     "KvApplMan_getFileInfo"},
    {"KV_APPLMAN_STATUS_GROUP_HANDLE", "status", static_cast<std::uint32_t>(-840),
     "the group handle was not created",
     "",
     "The handle of an application group was not created.",
     "The target of the first device refused to open the group or did not answer (0x12500033), a serial "
     "number or address could not be read (0x12500046, 0x12500047), or there was no memory (0x12500045).",
     "Read the messages in front; 0x12500046 and 0x12500047 name the slot. No handle was made, so none has "
     "to be deleted.",
     "KvApplMan_createApplGroupHandle_2"},
    {"KV_APPLMAN_STATUS_CORE_IDS", "status", static_cast<std::uint32_t>(-841),
     "the processor cores were not read",
     "",
     "The target could not tell its processor cores.",
     "The target refused the request.",
     "Read the target's own message in front of 0x12500036. A call that fails altogether is no failure "
     "here: it reads as no cores, with the reason in the pool.",
     "KvApplMan_getAvailableCoreIDs"},
    {"KV_APPLMAN_STATUS_FLASH_MODE", "status", static_cast<std::uint32_t>(-850),
     "invalid request mode for the list of flash applications",
     "",
     "The request mode for the list of flash applications is invalid.",
     "A mode other than 0.",
     "Use KV_APPLMAN_FLASH_MODE_ALL.",
     "KvApplMan_getFlashApplications"},
    {"KV_APPLMAN_STATUS_FLASH_LIST", "status", static_cast<std::uint32_t>(-851),
     "the list of flash applications was not read",
     "",
     "The target did not list its flash applications.",
     "The target refused the request.",
     "Read the target's own message in front of 0x1250003b. A call that fails altogether is no failure "
     "here: it reads as an empty list, with the reason in the pool.",
     "KvApplMan_getFlashApplications"},
    {"KV_APPLMAN_STATUS_FLASH_LOAD", "status", static_cast<std::uint32_t>(-852),
     "a flash application was not loaded",
     "",
     "An application was not loaded from flash memory.",
     "The target has no such application in flash memory (0x14a00812), loads another one just now "
     "(0x14a00802), or did not finish in time (0x12500043).",
     "List the flash applications with KvApplMan_getFlashApplications and check the ID.",
     "KvApplMan_loadFlashAppl"},
    {"KV_APPLMAN_STATUS_FLASH_CLEAR", "status", static_cast<std::uint32_t>(-853),
     "a flash application was not cleared",
     "",
     "An application was not removed from flash memory.",
     "The target has no such application in flash memory (0x14a00812), or could not remove it.",
     "List the flash applications with KvApplMan_getFlashApplications and check the ID.",
     "KvApplMan_clearFlashAppl"},
};
// clang-format on

} // namespace

std::span<const Explanation> explanations() noexcept { return kExplanations; }

} // namespace tool
