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
     "failed. KvApplMan_getAvailableCoreIDs gives this status without a message when no list was passed to "
     "receive the cores.",
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
     "Read the target's own message and 0x12500056, which names the slot and the call. Repeat the download "
     "when the cause is gone, or unload the processes.",
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
     "Read the target's own message and 0x12500057, which names the slot. Repeat the download when the "
     "cause is gone, or unload the processes.",
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
     "Read the target's own message. After registration the process is there all the same and its ID was "
     "delivered: unload it and begin again with a new group.",
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
     "every function that talks to a target, but KvApplMan_registerAppl_2, which makes -110 of it"},
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
     "The file itself has been transferred. With another platform library, read what it reports in front.",
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
     "size of 0 asks for the size only, where the item has no fixed one. KvApplMan_getAvailableCoreIDs "
     "adds no message.",
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
     "The process is registered and its ID was delivered. Unload it and begin again with a new group: its "
     "number in this one is used up.",
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
    {"KV_APPLMAN_MSG_INVALID_ARGUMENT", "message", 1024,
     "Invalid argument or handle.",
     "",
     "An argument or a handle is missing or of no use.",
     "A null pointer, an application ID or number of 0 where it must not be, an access-restriction handle "
     "that names nothing (0x12600001 stands in front), two handles in each other's place (0x12600003), a "
     "text of a list that is null; seldom a lack of memory.",
     "The operation tells who checked: \"checkDeviceAndAccessRestrictionHandle\" stands for the two "
     "handles, \"KvApplMan_checkDevHandleList\" for a list without any device, the function's own name for "
     "its other arguments.",
     "every function that has a status; KvPlatform_addDevice, KvHIM_createAccessRestrictionHandle"},
    {"KV_APPLMAN_MSG_CANNOT_REGISTER", "message", 0x12500000,
     "Internal error. Kavora Support information: Cannot register real-time application.",
     "",
     "The target gave no application ID for a process.",
     "The target refused, and its own message says why (0x14a00808, 0x14a0080d); the call failed (0x1260… "
     "in front); or the target does not offer registration (0x12500034 and 0x1250000a in front).",
     "Read the message in front. When the call failed after it was sent, the target may have the process: "
     "it then refuses the number as taken (0x14a00808), which names the ID to unload.",
     "KvApplMan_registerAppl_2"},
    {"KV_APPLMAN_MSG_CANNOT_INITIALIZE", "message", 0x12500001,
     "Internal error. Kavora Support information: Cannot initialize real-time application.",
     "",
     "The target did not initialise a process.",
     "It refused (0x14a00801, 0x14a00802), reported that the initialisation failed, or did not finish in "
     "time (0x12500043).",
     "Read the target's message in front. 0x12500056 behind it names slot and call.",
     "KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_MSG_CANNOT_LOAD", "message", 0x12500002,
     "Cannot load real-time application.",
     "",
     "The target did not load the binary of a process, which had been transferred.",
     "The process runs or is paused (0x14a00801), the file is no program that the target can run "
     "(0x14a00816), the file is not there any more (0x14a0080b), or time ran out (0x12500043).",
     "Read the target's message in front. Stop a running process before it is loaded again.",
     "KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_MSG_CANNOT_APPLY", "message", 0x12500003,
     "Internal error. Kavora Support information: Cannot apply real-time application.",
     "",
     "The target did not apply the configuration of a process.",
     "Not all initialisation calls were made (0x14a0080c), another command of the process is under way "
     "(0x14a00802), or time ran out (0x12500043).",
     "Read the target's message in front. 0x12500057 behind it names the slot.",
     "KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_MSG_CANNOT_START", "message", 0x12500004,
     "Cannot start real-time application.",
     "",
     "The target did not start a process.",
     "The process is not ready, paused or stopped (0x14a00801), is unknown (0x14a00803), its program "
     "cannot be executed (0x14a00815), or time ran out (0x12500043).",
     "Read the target's message in front, and the state with item 0.",
     "KvApplMan_startAppl"},
    {"KV_APPLMAN_MSG_CANNOT_STOP", "message", 0x12500005,
     "Cannot stop real-time application.",
     "",
     "The target did not stop a process.",
     "The process neither runs nor is paused (0x14a00801), is unknown (0x14a00803), or time ran out "
     "(0x12500043).",
     "Read the target's message in front. A process that does not stop in time can be ended with "
     "KvApplMan_terminateAppl. A refusal is reported under \"KvApplMan_stopTerminateAppl\".",
     "KvApplMan_stopAppl"},
    {"KV_APPLMAN_MSG_CANNOT_UNLOAD", "message", 0x12500006,
     "Cannot unload real-time application.",
     "",
     "The target did not unload a process.",
     "The process is unknown (0x14a00803), another command of it is under way (0x14a00802), the target "
     "cannot remove its files (0x14a00811), or time ran out (0x12500043).",
     "Read the target's message in front. An unknown process needs no unloading.",
     "KvApplMan_unloadAppl"},
    {"KV_APPLMAN_MSG_INFORMATION_NOT_RECEIVED", "message", 0x12500007,
     "Internal error. Kavora Support information: Error occurred in receiving application information.",
     "",
     "The target did not answer for an information item.",
     "It does not know the process (0x14a00803) or cannot answer for the item, which has no default "
     "(0x14a00804). In a download also that the target named no place for the binary, or that the call for "
     "it failed.",
     "Read the message in front. The operation tells where it was: \"KvApplMan_getApplBinaryTargetPath\" "
     "is the place for the binary, \"KvApplMan_getApplInfo\" an item that was asked for by you or by the "
     "function itself.",
     "KvApplMan_getApplInfo, KvApplMan_getApplInfoList, KvApplMan_createApplGroupHandle_2, "
     "KvApplMan_registerAppl_2, KvApplMan_downloadApplUtf8, KvApplMan_startAppl, KvApplMan_stopAppl, "
     "KvApplMan_terminateAppl, KvApplMan_unloadAppl, KvApplMan_pauseAppl, KvApplMan_stepAppl, "
     "KvApplMan_loadFlashAppl"},
    {"KV_APPLMAN_MSG_NO_COMMAND_CHANNEL_CLIENT", "message", 0x12500008,
     "Internal error. Kavora Support information: Cannot create command channel client.",
     "",
     "There is no client for the target's command channel, so nothing was sent.",
     "The target cannot be connected (0x1250000f in front), the device was removed (0x12500044), or there "
     "is no memory (0x1250000e, 0x12600018).",
     "Read the first message. When it is one of 0x1260000e to 0x12600011, the way to the target is at "
     "fault: address, port, cable, firewall, or the target does not run.",
     "every function that talks to a target"},
    {"KV_APPLMAN_MSG_COMMAND_CHANNEL_CLIENT_NOT_RELEASED", "message", 0x12500009,
     "Internal error. Kavora Support information: Cannot delete command channel client.",
     "",
     "The client of a call was not given back.",
     "None at present: clients stay with their device, and giving one back always succeeds.",
     "If you see it, the library is another version than this page.",
     "every function that talks to a target, in principle"},
    {"KV_APPLMAN_MSG_REMOTE_CALL_FAILED", "message", 0x1250000a,
     "Internal error. Kavora Support information: Cannot perform remote call via command channel. Perhaps "
     "target system does not support function %1. Update target system for full functionality.",
     "%1 name of the function (text)",
     "A call to the target has failed. Its text guesses that the target is too old, but it comes with "
     "every call that fails, whatever the reason: the message in front of it names the cause.",
     "With 0x12600012 in front the target did not answer in time, with 0x12600013 the connection was lost, "
     "with 0x12600014 or 0x12600015 the answer is of no use. Only when no message 0x1260… stands in front "
     "did the target answer that it does not offer the function, and the text is right.",
     "Go by the message in front, and do not update a target because of this one alone. Whether the "
     "request was carried out is not known: read the state first. `kvtarget --lack-procedure` and "
     "`--fault` provoke both kinds.",
     "every function that talks to a target, but KvApplMan_createApplGroupHandle_2 for its opening of the "
     "group, KvApplMan_getAvailableCoreIDs and KvApplMan_getFlashApplications"},
    {"KV_APPLMAN_MSG_NO_FILE_TRANSFER_CLIENT", "message", 0x1250000b,
     "Internal error. Kavora Support information: Cannot create file-transfer client.",
     "",
     "There is no connection for file transfer.",
     "The target cannot be connected: one of 0x1260000e to 0x12600011 stands in front. Or the device was "
     "removed meanwhile (0x12600000).",
     "File transfer makes a connection of its own to the port of the command channel. If calls work and "
     "this does not, look for a limit of connections at the target or a firewall between.",
     "KvApplMan_downloadApplUtf8, KvApplMan_loadFileUtf8"},
    {"KV_APPLMAN_MSG_FILE_TRANSFER_CLIENT_NOT_DELETED", "message", 0x1250000c,
     "Internal error. Kavora Support information: Cannot delete file-transfer client.",
     "",
     "The connection for file transfer was not closed as it should.",
     "The platform library did not know its handle any more (0x12600019). With the platform library given "
     "here this does not occur.",
     "The transfer itself was successful when no other message stands in front.",
     "KvApplMan_downloadApplUtf8, KvApplMan_loadFileUtf8"},
    {"KV_APPLMAN_MSG_FILE_TRANSFER_FAILED", "message", 0x1250000d,
     "Internal error. Kavora Support information: Attempt to %1 file failed. Ensure that source path and "
     "target path are valid. Source path: '%2'. Target path: '%3/%4'.",
     "%1 what was tried (text), %2 source (text), %3 target directory (text), %4 target name (text)",
     "A file did not arrive on the target.",
     "The host cannot read it (0x1260001a), it changed while it was sent (0x1260001b), the target refused "
     "it (0x1260001c), or the connection failed (0x12600012, 0x12600013).",
     "Read the message in front. %3 and %4 are the place that the target itself had named. A file that was "
     "there before is still there, whole.",
     "KvApplMan_downloadApplUtf8, KvApplMan_loadFileUtf8"},
    {"KV_APPLMAN_MSG_CHANNEL_NOT_CONFIGURED", "message", 0x1250000e,
     "Internal error. Kavora Support information: Cannot set command channel configuration parameter.",
     "",
     "The command channel did not take its settings.",
     "The client has no memory (0x12600018), or a platform library other than the one given here refuses "
     "one of the settings that the library makes (0x12600017): TCP, program version 2, call timeout 15 s, "
     "no authentication.",
     "Look for a lack of memory on the host; with another platform library, at the parameter that it "
     "refuses.",
     "every function that talks to a target"},
    {"KV_APPLMAN_MSG_CHANNEL_NOT_ESTABLISHED", "message", 0x1250000f,
     "Internal error. Kavora Support information: Cannot establish command channel.",
     "",
     "The target could not be connected.",
     "The message in front says how it failed: refused (0x1260000e), unreachable (0x1260000f), no answer "
     "(0x12600010), or another error of the system (0x12600011).",
     "Check address and port of the device, and that the target runs. `kvtarget` prints its address when "
     "it is ready. The next call for the device tries again.",
     "every function that talks to a target"},
    {"KV_APPLMAN_MSG_INVALID_SIZE", "message", 0x12500012,
     "Internal error. Kavora Support information: Invalid parameter size.",
     "",
     "A size or a count does not fit.",
     "For a parameter: the size is negative, or not that of a parameter of fixed size. For a list of "
     "applications: the count is negative, or the target has more applications than the list takes.",
     "For the list, call again with as many elements as the count now says. KvApplMan_getApplInfoList "
     "takes no more than 128 applications; beyond that, use KvApplMan_getApplications.",
     "KvApplMan_setApplParameter, KvApplMan_getApplications, KvApplMan_getApplInfoList"},
    {"KV_APPLMAN_MSG_INVALID_TYPE", "message", 0x12500013,
     "Internal error. Kavora Support information: Invalid parameter type.",
     "",
     "The target answered with a value of another type than the item has.",
     "The target means something else by this item than the host, or its answer was damaged on the way.",
     "Compare the versions of target and host. No argument of the host can cause this.",
     "KvApplMan_getApplInfo, KvApplMan_getFlashApplInfo, KvApplMan_getApplInfoList, "
     "KvApplMan_createApplGroupHandle_2, KvApplMan_registerAppl_2, KvApplMan_downloadApplUtf8, "
     "KvApplMan_startAppl, KvApplMan_stopAppl, KvApplMan_terminateAppl, KvApplMan_unloadAppl, "
     "KvApplMan_pauseAppl, KvApplMan_stepAppl, KvApplMan_loadFlashAppl"},
    {"KV_APPLMAN_MSG_INVALID_PARAMETER", "message", 0x12500014,
     "Internal error. Kavora Support information: Invalid parameter.",
     "",
     "A number names no item, parameter or selector, or the buffer does not fit the item.",
     "With -205 the number is unknown. With -200 the buffer is smaller than the text or array, or its size "
     "is not exactly that of an item of fixed size, such as 4 bytes for a word.",
     "With -205 take the number from `KvApplManConstants.h`. With -200 and a text or array, the size now "
     "holds the bytes needed. KvApplMan_getApplInfoList gives it when a text of the list has 256 bytes or "
     "more.",
     "KvApplMan_getApplInfo, KvApplMan_getFlashApplInfo, KvApplMan_setApplParameter, "
     "KvApplMan_setFlashApplParameter, KvApplMan_getAvailableCoreIDs, KvApplMan_getApplInfoList"},
    {"KV_APPLMAN_MSG_INVALID_STATE", "message", 0x12500015,
     "Internal error. Kavora Support information: Invalid application state.",
     "",
     "An application state is unknown.",
     "KvApplMan_getApplications was asked for a state above 6. Or the target told a state that is not "
     "known here; then item 0 delivers -210 in place of the state and the result is 0.",
     "Use the names of KvApplManState. If the target told it, its version is newer than this library.",
     "KvApplMan_getApplications, KvApplMan_getApplInfo"},
    {"KV_APPLMAN_MSG_APPLICATIONS_NOT_RECEIVED", "message", 0x12500016,
     "Internal error. Kavora Support information: Cannot receive information about loaded real-time "
     "application.",
     "",
     "The target did not list its applications.",
     "The target refused the request; its own message stands in front.",
     "Read that message. `kvtarget --fault get-applications:refuse` provokes it.",
     "KvApplMan_getApplications, KvApplMan_getApplInfoList"},
    {"KV_APPLMAN_MSG_UNKNOWN_OPERATION_FAILED", "message", 0x12500020,
     "Operation failed. Kavora Support information: Operation is unknown. Operation error code: %1.",
     "%1 the status (number)",
     "A pause or a step failed while the target carried it out.",
     "The argument is -165 for a pause and -166 for a step. The target reported that it failed, perhaps "
     "because the process ended by itself meanwhile (0x14a00814), or time ran out (0x12500043).",
     "Nothing is unknown about the operation: go by the target's message in front, and by 0x12500038 or "
     "0x12500039 behind it, which name the process.",
     "KvApplMan_pauseAppl, KvApplMan_stepAppl"},
    {"KV_APPLMAN_MSG_DIRECTORY_TARGET_INVALID", "message", 0x12500021,
     "Attempt to load directory failed. Kavora Support information: Invalid target file path was received. "
     "Source file path: '%1'. Affected application: 0x%2. Target file path: '%3'. Target file name: '%4' "
     "(expecting NULL or empty string).",
     "%1 source (text), %2 application (hexadecimal), %3 target path (text), %4 target name (text)",
     "The target accepted a directory but named no place for it.",
     "The target returned no path, or a file name beside it, which a directory does not have. %3 and %4 "
     "show what it returned, with `<NULL>` for nothing.",
     "This is a fault of the target: compare its version with the host's. The directory is registered "
     "there; remove it with KvApplMan_removeFile.",
     "KvApplMan_loadFileUtf8"},
    {"KV_APPLMAN_MSG_DIRECTORIES_NOT_SUPPORTED", "message", 0x12500022,
     "Attempt to load directory failed. Kavora Support information: Feature is not supported by real-time "
     "system. It is recommended to update the firmware of the real-time system. Source path: '%1'. "
     "Affected application: 0x%2.",
     "%1 source (text), %2 application (hexadecimal)",
     "The target takes no directories.",
     "The target answered that it does not support type 512 (0x14a01077). This message takes the place of "
     "all that were collected before it.",
     "Load the files of the directory one by one, or update the target. `kvtarget --lack-file-type 512` "
     "provokes it.",
     "KvApplMan_loadFileUtf8"},
    {"KV_APPLMAN_MSG_COMMAND_TIMEOUT_UNKNOWN", "message", 0x12500023,
     "Operation failed. Internal error occurred. Kavora Support information: Attempt to get asynchronous "
     "command timeout value failed.",
     "",
     "The target accepted a command but its command timeout is not known, so it was not waited for.",
     "Item 2055 of the manager could not be read; the status and the messages in front are those of "
     "reading it. Or the target's timeout is 0; then the status is the command's own.",
     "The command may still be carried out: read the state before you send it again. For a timeout of 0, "
     "configure the target; `kvtarget --timeout 0` provokes it.",
     "KvApplMan_startAppl, KvApplMan_stopAppl, KvApplMan_terminateAppl, KvApplMan_unloadAppl, "
     "KvApplMan_pauseAppl, KvApplMan_stepAppl, KvApplMan_loadFlashAppl, KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_MSG_DIRECTORY_PATH_MISSING", "message", 0x12500026,
     "Attempt to load directory failed. Kavora Support information: Invalid parameter used. Ensure that "
     "valid source and target path are used. Source path: %1. Target path: %2.",
     "%1 source (text), %2 target (text)",
     "A directory within the tree that is loaded has no path that can be used.",
     "The system could not resolve its full path: it was removed while the tree was sent, or the path is "
     "too long for the system.",
     "Load the tree again when nothing changes it. What had been sent before stays on the target.",
     "KvApplMan_loadFileUtf8"},
    {"KV_APPLMAN_MSG_FILE_LIST_BUFFER_TOO_SMALL", "message", 0x12500027,
     "Attempt to get additional files list failed. Given list buffer is too small. Kavora Support "
     "information: Affected application: 0x%1. Given list length: %2. Total count of registered additional "
     "files: %3.",
     "%1 application (hexadecimal), %2 length of the list (number), %3 number of files (number)",
     "The application has more additional files than the list takes.",
     "%3 files are registered, %2 elements were given.",
     "Call again with %3 elements; the count holds this number now. Nothing was copied.",
     "KvApplMan_getFileInfo"},
    {"KV_APPLMAN_MSG_PARAMETER_NOT_SET", "message", 0x12500028,
     "Internal error. Kavora Support information: Cannot set real-time application parameter.",
     "",
     "The target refused a parameter.",
     "It does not know the process (0x14a00803) or the parameter (0x14a00804), or does not take the value "
     "(0x14a00805, 0x14a00817). In a download the parameters are what the target is told of the binary: "
     "name, directory, times, option.",
     "Read the target's message in front; it names the parameter by the target's number, which is listed "
     "in target.md.",
     "KvApplMan_setApplParameter, KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_MSG_ACCESS_LEVEL_NOT_CLAIMED", "message", 0x1250002a,
     "Internal error. Kavora Support information: Cannot claim requested AccessRestriction level.",
     "",
     "The access level for a new process was not granted, or not given back.",
     "The platform library refused level 0x30002, which the library wants while it writes the group's "
     "data, or 0x10001, which it asks for before it deletes the handle. The platform library given here "
     "grants every level; another may say that somebody else has the process for himself.",
     "See who else works on the process. It is registered and its ID was delivered. Unload it and begin "
     "again with a new group: its number in this one is used up.",
     "KvApplMan_registerAppl_2"},
    {"KV_APPLMAN_MSG_BINARY_NOT_FOUND", "message", 0x1250002b,
     "Attempt to load application failed. Application binary was not found at the specified path: '%1'. "
     "Ensure that valid application binary path is used.",
     "%1 path (text)",
     "The host has no such application binary.",
     "The path %1 names nothing or a directory; a relative path begins at the working directory of the "
     "host program. On Windows a file without the archive attribute is not seen.",
     "Correct the path, or set the attribute. Nothing was sent for this slot; 0x12500050 behind it names "
     "the slot.",
     "KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_MSG_FILE_LIST_REFUSED", "message", 0x1250002c,
     "Attempt to get additional files list failed. Errors were reported by target system, see message log "
     "for further information. Kavora Support information: Returned error code: %1. Affected application: "
     "0x%2.",
     "%1 error of the target (number), %2 application (hexadecimal)",
     "The target did not list the additional files of an application.",
     "%1 is the target's error code; the simulated target has 1 for an unknown application. Its message "
     "stands in front.",
     "Check the application ID against KvApplMan_getApplications.",
     "KvApplMan_getFileInfo"},
    {"KV_APPLMAN_MSG_FILE_TARGET_INVALID", "message", 0x12500030,
     "Attempt to load additional file failed. Kavora Support information: Invalid target file path (NULL "
     "or empty string) was returned by target system. Source file path: '%1'. File type: %2. Affected "
     "application: 0x%3. Target file path: '%4'. Target file name: '%5'.",
     "%1 source (text), %2 type (number), %3 application (hexadecimal), %4 target path (text), %5 target "
     "name (text)",
     "The target accepted a file but named no place for it.",
     "The target returned no path or no file name. %4 and %5 show what it returned, with `<NULL>` for "
     "nothing.",
     "This is a fault of the target: compare its version with the host's. The file is registered there; "
     "remove it with KvApplMan_removeFile.",
     "KvApplMan_loadFileUtf8"},
    {"KV_APPLMAN_MSG_LOAD_OPTIONS_NOT_SUPPORTED", "message", 0x12500031,
     "Internal error. Kavora Support information: Attempt to load file failed. Load file options are not "
     "supported. Used load file options: 0x%1.",
     "%1 the options (hexadecimal)",
     "Load options were given, and there are none.",
     "Bits 24 to 31 of the argument that holds the number of slots, or the file flags, are not 0. Often a "
     "negative number or a too large one was passed there.",
     "Keep these bits 0. The transfer was not begun, but the target has been told of the file already.",
     "KvApplMan_downloadApplUtf8, KvApplMan_loadFileUtf8"},
    {"KV_APPLMAN_MSG_SOURCE_NOT_FOUND", "message", 0x12500032,
     "Attempt to load %1 failed. Invalid source path used. Ensure that %1 exists at specified path. Kavora "
     "Support information: Source path: '%2'. Affected application: 0x%3. File type: '%4'.",
     "%1 which of both (text), %2 source (text), %3 application (hexadecimal), %4 type (number)",
     "The host has no such additional file or directory.",
     "The path %2 names nothing, or a directory where the type says file, or a file where it says "
     "directory (512). On Windows a file without the archive attribute is not seen.",
     "Correct path or type. The target was not asked.",
     "KvApplMan_loadFileUtf8"},
    {"KV_APPLMAN_MSG_GROUP_NOT_CREATED", "message", 0x12500033,
     "Internal error. Kavora Support information: Cannot create application group handle. Real-time "
     "environment reported error(s). See message log for further information.",
     "",
     "The target of the first device did not open a group.",
     "It refused, the call failed (0x1260… in front), or it has no groups and there is more than one slot "
     "(0x12500035 in front).",
     "Read the message in front. `kvtarget --fault open-group:refuse` provokes it.",
     "KvApplMan_createApplGroupHandle_2"},
    {"KV_APPLMAN_MSG_REGISTRATION_NOT_OFFERED", "message", 0x12500034,
     "Cannot register real-time application. RPC call failed. Check message log for error reports. Kavora "
     "Support information: Probably current target system does not support application groups "
     "(applications count: %1, application number: %2).",
     "%1 number of processes (number), %2 application number (number)",
     "The target does not offer registration.",
     "The target answered that it has no such procedure, which is what a target without application groups "
     "says.",
     "Update the target; this library registers in no other way. `kvtarget --lack-procedure register` "
     "provokes it.",
     "KvApplMan_registerAppl_2"},
    {"KV_APPLMAN_MSG_GROUPS_NOT_SUPPORTED", "message", 0x12500035,
     "Configuration error. Cannot create application group handle. Current real-time environment firmware "
     "version does not support application groups with multiple real-time applications.",
     "",
     "The target has no application groups, and a group of more than one slot was wanted.",
     "The target answered that it does not offer to open a group. For one slot this is tolerated.",
     "Update the target of the first device, or make a group of one slot per process. `kvtarget "
     "--lack-procedure open-group` provokes it.",
     "KvApplMan_createApplGroupHandle_2"},
    {"KV_APPLMAN_MSG_CORE_IDS_NOT_READ", "message", 0x12500036,
     "Internal error. Kavora Support information: Cannot read available CPU core IDs. Real-time "
     "environment reported error(s). See message log for further information.",
     "",
     "The target refused to list its processor cores.",
     "Its own message stands in front. A target that does not offer the request at all counts as one with "
     "core 1, and a call that fails as one without cores.",
     "Read the target's message. `kvtarget --fault get-core-ids:refuse` provokes it.",
     "KvApplMan_getAvailableCoreIDs"},
    {"KV_APPLMAN_MSG_FILE_NOT_REMOVED", "message", 0x12500037,
     "Attempt to remove additional file failed. Errors were reported by target system, see message log for "
     "further information. Kavora Support information: Error was set by remove additional file function on "
     "target system. Target file name: '%1'. File type: %2. Returned error code: %3. Affected application: "
     "0x%4.",
     "%1 name (text), %2 type (number), %3 error of the target (number), %4 application (hexadecimal)",
     "The target did not remove an additional file.",
     "%3 is the target's error code. The simulated target has 1 for an unknown application, 4 for a file "
     "that is not registered under this name and type, 5 for a file that its store could not remove.",
     "List the files with KvApplMan_getFileInfo, and give name and type as they stand there.",
     "KvApplMan_removeFile"},
    {"KV_APPLMAN_MSG_CANNOT_PAUSE", "message", 0x12500038,
     "Internal error. Kavora Support information: Cannot pause real-time application (0x%1). See message "
     "log for further information.",
     "%1 application (hexadecimal)",
     "A process was not paused.",
     "The target refused (0x14a00801: it does not run), or the pause failed or ran out of time "
     "(0x12500020).",
     "Read the messages in front. When the request itself could not be sent or was not answered, this "
     "message does not come.",
     "KvApplMan_pauseAppl"},
    {"KV_APPLMAN_MSG_CANNOT_STEP", "message", 0x12500039,
     "Internal error. Kavora Support information: Cannot step real-time application (0x%1). See message "
     "log for further information.",
     "%1 application (hexadecimal)",
     "A process made no step.",
     "The target refused (0x14a00801: it is not paused), or the step failed or ran out of time "
     "(0x12500020).",
     "Read the messages in front. When the request itself could not be sent or was not answered, this "
     "message does not come.",
     "KvApplMan_stepAppl"},
    {"KV_APPLMAN_MSG_INVALID_FLASH_REQUEST_MODE", "message", 0x1250003a,
     "Get flashed real-time applications failed. Invalid request mode ('%1') used.",
     "%1 the mode (number)",
     "The request mode %1 does not exist.",
     "A mode other than 0.",
     "Use KV_APPLMAN_FLASH_MODE_ALL. Nothing was sent.",
     "KvApplMan_getFlashApplications"},
    {"KV_APPLMAN_MSG_FLASH_APPLICATIONS_NOT_READ", "message", 0x1250003b,
     "Get flashed real-time applications failed. See message log for further information.",
     "",
     "The target refused to list the applications in its flash memory.",
     "Its own message stands in front.",
     "Read that message. `kvtarget --fault get-flash-applications:refuse` provokes it.",
     "KvApplMan_getFlashApplications"},
    {"KV_APPLMAN_MSG_FLASH_BUFFER_TOO_SMALL", "message", 0x1250003c,
     "Get flashed real-time applications failed. Given buffer (elements: %2) is too small, expected buffer "
     "for %1 elements.",
     "%1 number of applications (number), %2 length of the list (number)",
     "There are more flash applications than the list takes.",
     "The target has %1, the list takes %2.",
     "Call again with %1 elements; the count holds this number now. Nothing was copied.",
     "KvApplMan_getFlashApplications"},
    {"KV_APPLMAN_MSG_FLASH_INFORMATION_NOT_RECEIVED", "message", 0x1250003d,
     "Internal error. Kavora Support information: Error occurred in receiving flash application "
     "information.",
     "",
     "The target did not answer for an item of a flash application.",
     "There is no such flash application (0x14a00812), or the target does not have this item for one "
     "(0x14a00804). The simulated target has items 2, 22 and 1200.",
     "Check the ID against KvApplMan_getFlashApplications. There are no defaults for flash applications.",
     "KvApplMan_getFlashApplInfo"},
    {"KV_APPLMAN_MSG_FLASH_PARAMETER_NOT_SET", "message", 0x1250003e,
     "Internal error. Kavora Support information: Error occurred while setting flash application "
     "parameter.",
     "",
     "The target refused the values of a flash application.",
     "There is no such flash application (0x14a00812).",
     "Check the ID against KvApplMan_getFlashApplications.",
     "KvApplMan_setFlashApplParameter"},
    {"KV_APPLMAN_MSG_CANNOT_LOAD_FLASH", "message", 0x1250003f,
     "Load flash application failed. See message log for further information.",
     "",
     "An application was not loaded from flash memory.",
     "There is no such flash application (0x14a00812), another is being loaded (0x14a00802), or time ran "
     "out (0x12500043).",
     "Read the message in front. Check the ID against KvApplMan_getFlashApplications.",
     "KvApplMan_loadFlashAppl"},
    {"KV_APPLMAN_MSG_CANNOT_CLEAR_FLASH", "message", 0x12500040,
     "Clear flash application failed. See message log for further information.",
     "",
     "An application was not removed from flash memory.",
     "There is no such flash application (0x14a00812), or the target could not remove it.",
     "Read the target's message in front. Check the ID against KvApplMan_getFlashApplications.",
     "KvApplMan_clearFlashAppl"},
    {"KV_APPLMAN_MSG_FILE_NOT_REGISTERED", "message", 0x12500041,
     "Attempt to load application specific file(s) failed. Errors were reported by target system, see "
     "message log for further information. Kavora Support information: Error was set by register "
     "additional file function on target system. Source path: '%1'. File type: %2. Returned error code: "
     "%3. Affected application: 0x%4.",
     "%1 source (text), %2 type (number), %3 error of the target (number), %4 application (hexadecimal)",
     "The target refused an additional file or directory.",
     "%3 is the target's error code. The simulated target has 1 for an unknown application, 2 for an "
     "unknown type, 3 for a name that cannot be stored, 6 for too many files. Its message stands in front.",
     "Read that message. Type 6 is tried again as 2 by itself when the target does not know it.",
     "KvApplMan_loadFileUtf8"},
    {"KV_APPLMAN_MSG_WAIT_WITHOUT_CLIENT", "message", 0x12500042,
     "Internal error. Kavora Support information: Wait until command execution will be finished failed. "
     "Invalid pointer (NULL) to RPC client used.",
     "",
     "The library waited for a command without a client.",
     "None that a host could make: each command has its client when it begins to wait.",
     "If you see it, the library is another version than this page, or memory was overwritten.",
     "KvApplMan_startAppl, KvApplMan_stopAppl, KvApplMan_terminateAppl, KvApplMan_unloadAppl, "
     "KvApplMan_pauseAppl, KvApplMan_stepAppl, KvApplMan_loadFlashAppl, KvApplMan_downloadApplUtf8, in "
     "principle"},
    {"KV_APPLMAN_MSG_WAIT_TIMED_OUT", "message", 0x12500043,
     "Timeout occurred while waiting until command execution will finish on target system. See message log "
     "for further information. Kavora Support information: Timeout (in s): %1.",
     "%1 seconds (number)",
     "The target had not finished a command after the %1 seconds that it had asked for.",
     "The process hangs or takes longer than the target's command timeout (item 2055), or the target is "
     "overloaded.",
     "The target goes on with the command: read the state before you send another, which would be refused "
     "meanwhile (0x14a00802). `kvtarget --timeout 1 --delay 5000` provokes it.",
     "KvApplMan_startAppl, KvApplMan_stopAppl, KvApplMan_terminateAppl, KvApplMan_unloadAppl, "
     "KvApplMan_pauseAppl, KvApplMan_stepAppl, KvApplMan_loadFlashAppl, KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_MSG_DEVICE_HANDLE_INVALID", "message", 0x12500044,
     "Internal error. Kavora Support information: The device handle is invalid. Maybe the device handle "
     "was already removed.",
     "",
     "The device handle names no device.",
     "The value is no device handle or one of another kind, or the device was removed (0x12600000 in "
     "front). Its access-restriction handles go with a device, so mostly a removed one is noticed by these "
     "(1024). Without 0x12600000 in front there was no memory for the client.",
     "Keep a device until no call for it is under way, and use the handle that KvPlatform_addDevice "
     "delivered.",
     "every function that talks to a target"},
    {"KV_APPLMAN_MSG_GROUP_OUT_OF_MEMORY", "message", 0x12500045,
     "Create application group handle failed. Kavora Support information: Out of memory.",
     "",
     "There was no memory for the group handle.",
     "The host has no memory left.",
     "Free memory on the host. The target has opened a group that nobody uses; this does no harm.",
     "KvApplMan_createApplGroupHandle_2"},
    {"KV_APPLMAN_MSG_GROUP_SERIAL_UNREAD", "message", 0x12500046,
     "Create application group handle failed. Kavora Support information: Get CN serial number failed. "
     "Affected device (index): %1. Return code: %2.",
     "%1 slot from 0 (number), %2 status (number)",
     "The serial number of a slot's device was not read.",
     "%1 is the slot, from 0; %2 the status with which item 2051 of its manager was read, such as -180 or "
     "-185.",
     "Read the messages in front, and look that status up. It concerns this slot's target, the others have "
     "answered.",
     "KvApplMan_createApplGroupHandle_2"},
    {"KV_APPLMAN_MSG_GROUP_ADDRESS_UNREAD", "message", 0x12500047,
     "Create application group handle failed. Kavora Support information: Get serial number of '%1' device "
     "in given device list failed. Get parameter function return code: '%2'.",
     "%1 slot from 0 (number), %2 status (number)",
     "The address of a slot's device was not read.",
     "%1 is the slot, from 0. The device was removed while the group was created. The text speaks of a "
     "serial number, but it is the IPv4 address that is missing.",
     "Keep the devices of a group until the call has returned.",
     "KvApplMan_createApplGroupHandle_2"},
    {"KV_APPLMAN_MSG_GROUP_NOT_INITIALIZED", "message", 0x12500048,
     "Create application group handle failed. Kavora Support information: Initialization of application "
     "group handle data failed. See message log for further information.",
     "",
     "The group handle could not be filled, and was given up.",
     "A serial number or an address was not read (0x12500046, 0x12500047), or there was no memory; then no "
     "such message stands in front.",
     "Read the message in front.",
     "KvApplMan_createApplGroupHandle_2"},
    {"KV_APPLMAN_MSG_INVALID_APPL_NO", "message", 0x12500049,
     "Configuration error. Register application process failed. Invalid application number '%1' used. "
     "Register applications in ascending application number order and make sure that application number is "
     "in range 1..%2.",
     "%1 the number (number), %2 number of slots (number)",
     "The application number is not the one whose turn it is.",
     "Numbers count the slots of the group from 1 and are registered in ascending order, each once; empty "
     "slots are left out. After a registration that failed before the target gave an ID, the same number "
     "is on.",
     "Register the first slot with a device that has no process yet; the group handle's lastApplNo tells "
     "the last one. To begin again, create a new group handle.",
     "KvApplMan_registerAppl_2"},
    {"KV_APPLMAN_MSG_REGISTRATION_SERIAL_UNREAD", "message", 0x1250004a,
     "Register application process failed. Kavora Support information: Get CN serial number failed. "
     "Affected device (index): %1. Return code: %2.",
     "%1 application number (number), %2 status (number)",
     "The serial number of the device was not read, so the process was not registered.",
     "%1 is the application number, although the text says index; %2 the status with which item 2051 of "
     "the manager was read, such as -180 or -185.",
     "Read the messages in front, and look that status up. Registering the same number again is right.",
     "KvApplMan_registerAppl_2"},
    {"KV_APPLMAN_MSG_WRONG_DEVICE", "message", 0x1250004b,
     "Configuration error. Kavora Support information: Applications are not registered on the same device "
     "as specified during application group creation. Application number: '%1'. Expected serial number: "
     "'%2'. Current serial number: '%3'.",
     "%1 application number (number), %2 serial number of the slot (number), %3 of the device (number)",
     "The process was to be registered on another device than its slot had when the group was created.",
     "The slot has serial number %2, the device that was given has %3: the handles are in another order "
     "now, or the device at this address was exchanged.",
     "Pass the device of slot %1. After an exchange create a new group. Give each `kvtarget` a serial "
     "number of its own (`--serial`), else they cannot be told apart.",
     "KvApplMan_registerAppl_2"},
    {"KV_APPLMAN_MSG_GROUP_PARAMETER_NOT_SET", "message", 0x1250004c,
     "Register application process failed. Kavora Support information: Set internal parameter (ID: '%2') "
     "for application process (ID: 0x%1) failed. See message log for further information.",
     "%1 application (hexadecimal), %2 target parameter (number)",
     "The target refused the group's data for a new process.",
     "%2 is 29 for the serial numbers and 30 for the addresses of the group. That a target does not know "
     "them at all (0x14a00804) is tolerated, so there is another reason; its message stands in front.",
     "The process is registered and its ID was delivered. Unload it and begin again with a new group: its "
     "number in this one is used up.",
     "KvApplMan_registerAppl_2"},
    {"KV_APPLMAN_MSG_DEVICE_LIST_TOO_LONG", "message", 0x1250004d,
     "Internal error. Kavora Support information: Check access restriction handle list failed. Maximum "
     "supported list length: %1. Current list length: %2.",
     "%1 the most (number), %2 how many (number)",
     "The group has more slots than there can be.",
     "%2 slots were given, %1 is the most. Empty slots count.",
     "Divide the processes into several groups.",
     "KvApplMan_createApplGroupHandle_2"},
    {"KV_APPLMAN_MSG_GROUP_SIZE_UNREAD", "message", 0x1250004e,
     "Cannot load application process. Kavora Support information: Cannot access the total number of "
     "application processes of application group. See message log for further information.",
     "",
     "The size of the group could not be read from the first target of the download.",
     "Item 10 of the first process was not answered: the application ID is unknown (0x14a00803), perhaps "
     "because the target was restarted since registration, or the call failed.",
     "Read the messages in front. After a restart of the target, create the group and register the "
     "processes anew.",
     "KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_MSG_WRONG_GROUP_SIZE", "message", 0x1250004f,
     "Cannot load application process. Kavora Support information: Make sure that download function will "
     "be called once for all applications of an application group. Given applications: %1. Expected "
     "applications count: %2.",
     "%1 slots (number), %2 processes of the group (number)",
     "The download is for another number of slots than the group has.",
     "%1 slots were given, the group has %2. A group is downloaded as a whole, empty slots included.",
     "Call the download once with all slots of the group, with a null device for the empty ones.",
     "KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_MSG_LOAD_FAILED", "message", 0x12500050,
     "Cannot load application process. See message log for further information. Kavora Support "
     "information: Affected application process: %1. Total number of application processes in application "
     "group: %2.",
     "%1 slot from 1 (number), %2 number of slots (number)",
     "The download of a group has ended at slot %1 of %2, counted from 1.",
     "The binary of this slot was not found (0x1250002b), not transferred (0x1250000d) or not loaded "
     "(0x12500002), or a parameter was refused (0x12500028).",
     "Read the messages in front. The slots before it are loaded and stay so until they are unloaded.",
     "KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_MSG_ADDRESSES_OUT_OF_MEMORY", "message", 0x12500051,
     "Cannot get application process parameter. Kavora Support information: Out of memory.",
     "",
     "There was no memory for the text of a group's addresses.",
     "The host has no memory left. It is item 16 that was read.",
     "Free memory on the host and read the item again.",
     "KvApplMan_getApplInfo"},
    {"KV_APPLMAN_MSG_ACCESS_HANDLE_NOT_CREATED", "message", 0x12500052,
     "Register application process failed. Kavora Support information: Cannot create access restriction "
     "handle to set internal parameter for application process (ID: 0x%1).",
     "%1 application (hexadecimal)",
     "The access-restriction handle for writing the group's data was not made.",
     "The device was removed meanwhile (0x12600000), or there is no memory (0x12600009).",
     "The process is registered and its ID was delivered. Unload it and begin again with a new group: its "
     "number in this one is used up.",
     "KvApplMan_registerAppl_2"},
    {"KV_APPLMAN_MSG_ACCESS_HANDLE_NOT_DELETED", "message", 0x12500053,
     "Register application process failed. Kavora Support information: Cannot delete access restriction "
     "handle for application process (ID: 0x%1).",
     "%1 application (hexadecimal)",
     "The access-restriction handle for writing the group's data was not deleted.",
     "The device was removed meanwhile, and its handles with it (0x12600001).",
     "Keep the device until the call has returned. The process is registered and its ID was delivered.",
     "KvApplMan_registerAppl_2"},
    {"KV_APPLMAN_MSG_INIT_CALLS_UNREAD", "message", 0x12500054,
     "Cannot load application process. Kavora Support information: Cannot access initialization call "
     "counter. See message log for further information.",
     "",
     "A target did not tell how often its process wants to be initialised.",
     "Item 2050 was not answered: the application ID is unknown (0x14a00803), or the call failed. A target "
     "that does not know the item counts as one that loads completely.",
     "Read the messages in front, and check the application IDs of all slots.",
     "KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_MSG_INIT_CALLS_INCONSISTENT", "message", 0x12500055,
     "Cannot load application process. Kavora Support information: Inconsistent initialization call "
     "counter values detected, cannot mix complete application load with partial application load "
     "sequence. Make sure that target system firmware is compatible.",
     "",
     "The targets of the group do not load in the same way.",
     "Item 2050 is 0 for some processes, which want to be loaded completely at once, and above 0 for "
     "others, which want initialisation calls. The targets are of different versions.",
     "Bring the targets to the same version, or divide the group. Two `kvtarget`, one with `--init-calls "
     "0`, provoke it.",
     "KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_MSG_INIT_FAILED", "message", 0x12500056,
     "Cannot load application process. See message log for further information. Kavora Support "
     "information: Initialization failed. Affected application process: %1. Total number of application "
     "processes in application group: %2. Initialization call: %3 of %4.",
     "%1 slot from 1 (number), %2 number of slots (number), %3 call (number), %4 number of calls (number)",
     "The download of a group has ended while slot %1 of %2, counted from 1, was initialised.",
     "Initialisation call %3 of %4 failed on this target (0x12500001), or its connection did (0x1250000a, "
     "0x12500008).",
     "Read the messages in front. All slots are loaded: repeat the download when the cause is gone, or "
     "unload them.",
     "KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_MSG_APPLY_FAILED", "message", 0x12500057,
     "Cannot load application process. See message log for further information. Kavora Support "
     "information: Apply configuration failed. Affected application process: %1. Total number of "
     "application processes in application group: %2.",
     "%1 slot from 1 (number), %2 number of slots (number)",
     "The download of a group has ended while the configuration of slot %1 of %2, counted from 1, was "
     "applied.",
     "Applying failed on this target (0x12500003), or its connection did (0x1250000a, 0x12500008).",
     "Read the messages in front. The slots before it are ready: repeat the download when the cause is "
     "gone, or unload all of them.",
     "KvApplMan_downloadApplUtf8"},
    {"KV_APPLMAN_MSG_DIRECTORY_NOT_FOUND", "message", 0x12500058,
     "Attempt to load directory failed. Kavora Support information: No file or directory found. Ensure "
     "that given path is valid and that directory is not empty. Source path: '%1'.",
     "%1 source (text)",
     "A directory on the host could not be opened.",
     "It was removed meanwhile, may not be read by this user, or a link in the tree leads back to a "
     "directory that is being sent. An empty directory is no failure, although the text says so.",
     "Check the permissions of %1 and the links in the tree. What had been sent before stays on the "
     "target.",
     "KvApplMan_loadFileUtf8"},
    {"KV_APPLMAN_MSG_TARGET_DIRECTORY_NOT_CREATED", "message", 0x12500059,
     "Attempt to load directory failed. Kavora Support information: Cannot create directory on target "
     "system. Target base directory: '%1'. Target directory name: '%2'. Internal error code: %3.",
     "%1 directory (text), %2 name (text), %3 error (number)",
     "The target did not make a directory of the tree.",
     "It refused the name or could not store it (0x1260001d in front), or the connection failed "
     "(0x12600013).",
     "Read the message in front. %3 is only the platform library's -1.",
     "KvApplMan_loadFileUtf8"},
    {"KV_APPLMAN_MSG_DIRECTORY_NOT_READ", "message", 0x1250005a,
     "Attempt to load directory failed. Kavora Support information: Unexpected error occurred. Not all "
     "files were processed. Source path: '%1'. OS error code: %2.",
     "%1 source (text), %2 error of the system (number)",
     "A directory on the host could not be read to its end.",
     "%2 is the error of the host's system.",
     "Look the error up for your system and check the file system of %1. What had been sent before stays "
     "on the target.",
     "KvApplMan_loadFileUtf8"},
    {"KV_APPLMAN_MSG_INFO_LIST_ARGUMENT_MISSING", "message", 0x1250005b,
     "Attempt to get application information list failed. Invalid parameter (NULL) used.",
     "",
     "The list or its count is null.",
     "A null pointer for an argument that must receive something.",
     "Pass the addresses of a list pointer and of a count.",
     "KvApplMan_getApplInfoList"},
    {"KV_APPLMAN_MSG_APPLICATION_NOT_LOADED", "message", 0x1250005c,
     "Attempt to get application information failed. Kavora Support information: Unknown or invalid "
     "application name used. Specified application '%1' is not loaded on target system.",
     "%1 the name (text)",
     "No application on the target has this name.",
     "The name is compared with the file name of each binary, without its last extension and "
     "case-sensitive. The result is 0 all the same, with an empty list.",
     "List all by passing no name, and see what is there.",
     "KvApplMan_getApplInfoList"},
    {"KV_APPLMAN_MSG_CANNOT_TERMINATE", "message", 0x12500060,
     "Attempt to terminate application process failed.",
     "",
     "The target did not terminate a process.",
     "Nothing is loaded for it (0x14a00801), it is unknown (0x14a00803), or time ran out (0x12500043).",
     "Read the target's message in front. A process that is only registered is taken away with "
     "KvApplMan_unloadAppl.",
     "KvApplMan_terminateAppl"},
    {"KV_PLATFORM_MSG_DEVICE_UNKNOWN", "message", 0x12600000,
     "The device handle names no device. Check that the device was added and is not removed yet.",
     "",
     "A device handle names no device.",
     "The device was removed, or the value is another handle or none.",
     "Use the handle that KvPlatform_addDevice delivered, and only until KvPlatform_removeDevice. Behind "
     "it the library adds what it wanted of the device, such as 0x12500044.",
     "KvPlatform_removeDevice, KvHIM_createAccessRestrictionHandle, every function that talks to a target"},
    {"KV_PLATFORM_MSG_ACCESS_HANDLE_UNKNOWN", "message", 0x12600001,
     "The access-restriction handle names nothing. Check that neither it was deleted nor its device "
     "removed.",
     "",
     "An access-restriction handle names nothing.",
     "It was deleted, its device was removed and the handle with it, or the value never was a handle.",
     "Make a new one with KvHIM_createAccessRestrictionHandle. When a device is removed and added again, "
     "its access-restriction handles have to be made again, too.",
     "KvHIM_deleteAccessRestrictionHandle, every function that talks to a target"},
    {"KV_PLATFORM_MSG_FILTER_UNKNOWN", "message", 0x12600002,
     "The filter handle names no filter. Check that the filter was created and is not deleted yet.",
     "",
     "A filter handle names no filter.",
     "None that a host could make: the library makes its filters and deletes them itself.",
     "If you see it, library and platform library are of different versions.",
     "none that a host calls"},
    {"KV_PLATFORM_MSG_PARAMETER_UNKNOWN", "message", 0x12600003,
     "Parameter %1 does not exist for this kind of handle. Check the parameter number and the handle.",
     "%1 parameter (number)",
     "A handle has no parameter %1.",
     "With 12, a device handle was passed where the access-restriction handle belongs. Others do not occur "
     "with this library.",
     "Check the order of the arguments: first the device, then its access-restriction handle.",
     "every function that talks to a target"},
    {"KV_PLATFORM_MSG_PARAMETER_INDEX_UNKNOWN", "message", 0x12600004,
     "Parameter %1 has no element %2. Use index 0.",
     "%1 parameter (number), %2 index (number)",
     "Parameter %1 of a handle has no element %2.",
     "None that a host could make: the library asks for element 0 only.",
     "If you see it, the library is another version than this page.",
     "none that a host calls"},
    {"KV_PLATFORM_MSG_PARAMETER_SIZE_WRONG", "message", 0x12600005,
     "The size given for parameter %1 does not fit. Use %2 bytes.",
     "%1 parameter (number), %2 bytes needed (number)",
     "Parameter %1 of a handle has %2 bytes, and another size was given.",
     "None that a host could make: the library gives the right size.",
     "If you see it, library and platform library are of different versions.",
     "none that a host calls"},
    {"KV_PLATFORM_MSG_PARAMETER_VALUE_REFUSED", "message", 0x12600006,
     "Parameter %1 cannot take the value %2.",
     "%1 parameter (number), %2 value (number)",
     "Parameter %1 of a filter cannot have the value %2.",
     "None that a host could make: the library sets the values that there are.",
     "If you see it, library and platform library are of different versions.",
     "none that a host calls"},
    {"KV_PLATFORM_MSG_PARAMETER_TEXT_BROKEN", "message", 0x12600007,
     "The text for parameter %1 does not end with its only zero byte. Check text and length.",
     "%1 parameter (number)",
     "The text for parameter %1 of a device does not end with its only zero byte.",
     "None that a host could make: the only such text is the host's time, which the library writes.",
     "If you see it, library and platform library are of different versions.",
     "KvApplMan_registerAppl_2, in principle"},
    {"KV_PLATFORM_MSG_ADDRESS_MALFORMED", "message", 0x12600008,
     "\"%1\" is not a device address. Use the form a.b.c.d:port with numbers from 0 to 255 and a port from "
     "1 to 65535.",
     "%1 the text (text)",
     "The text %1 is not the address of a device.",
     "A host name, an address without port, a space, or a number out of its range.",
     "Pass \"a.b.c.d:port\". Host names are not looked up here: resolve them before.",
     "KvPlatform_addDevice"},
    {"KV_PLATFORM_MSG_OUT_OF_MEMORY", "message", 0x12600009,
     "There is not enough memory for a new %1.",
     "%1 what was to be made (text)",
     "There was no memory for a new %1.",
     "The host has no memory left, or a limit of the process is reached.",
     "Free memory on the host. Nothing half made stays behind; the call can be repeated.",
     "KvPlatform_addDevice, KvHIM_createAccessRestrictionHandle, every function that talks to a target"},
    {"KV_PLATFORM_MSG_LEVEL_REFUSED", "message", 0x1260000a,
     "The access level 0x%1 is refused for the application process 0x%2.",
     "%1 level (hexadecimal), %2 application (hexadecimal)",
     "The access level 0x%1 was refused for the process 0x%2.",
     "The platform library given here grants every level, but in its own tests. Another one refuses a "
     "level when somebody else has the process for himself.",
     "See who else works on the process.",
     "KvApplMan_registerAppl_2"},
    {"KV_PLATFORM_MSG_FILTER_KIND_UNKNOWN", "message", 0x1260000b,
     "There is no filter of kind %1. Use kind 1, devices.",
     "%1 kind (number)",
     "There is no filter of kind %1.",
     "None that a host could make: the library makes filters of kind 1 only.",
     "If you see it, library and platform library are of different versions.",
     "none that a host calls"},
    {"KV_PLATFORM_MSG_FILTER_INCOMPLETE", "message", 0x1260000c,
     "The filter cannot be applied, because no address was set for it. Set parameter 6 first.",
     "",
     "A filter was applied without an address.",
     "None that a host could make: the library sets the address first.",
     "If you see it, library and platform library are of different versions.",
     "none that a host calls"},
    {"KV_PLATFORM_MSG_FILTER_NOT_APPLIED", "message", 0x1260000d,
     "The devices cannot be listed, because the filter was not applied after its last change.",
     "",
     "A filter was used that was not applied.",
     "None that a host could make: the library applies its filters.",
     "If you see it, library and platform library are of different versions.",
     "none that a host calls"},
    {"KV_PLATFORM_MSG_RPC_CONNECTION_REFUSED", "message", 0x1260000e,
     "The target %1 refused the connection. Check that it is running and that the port is right.",
     "%1 address (text)",
     "Nobody listens at the address of the target.",
     "The target's program is not running or still starting, the port is wrong, or a firewall refuses the "
     "connection.",
     "Start the target and compare the port with what it prints. While a target restarts this is normal: "
     "try again after a moment.",
     "every function that talks to a target"},
    {"KV_PLATFORM_MSG_RPC_HOST_UNREACHABLE", "message", 0x1260000f,
     "The target %1 cannot be reached. Check the address, the cable and the network settings.",
     "%1 address (text)",
     "There is no way from this host to the address of the target.",
     "The host has no route to this network, the target is off or unplugged so that nobody answers for its "
     "address, or a router or firewall said so.",
     "Check cable, address and network mask on both sides, and whether `ping` reaches the address.",
     "every function that talks to a target"},
    {"KV_PLATFORM_MSG_RPC_CONNECT_TIMED_OUT", "message", 0x12600010,
     "The target %1 did not answer when connecting. Check that it is switched on and that no firewall "
     "stands between.",
     "%1 address (text)",
     "The target did not answer within 5 seconds when it was to be connected.",
     "It is switched off or hangs, or a firewall drops packets without a word.",
     "Check that the target is on and the port open. Each such call costs 5 seconds, and calls for other "
     "devices that look for their channel wait meanwhile.",
     "every function that talks to a target"},
    {"KV_PLATFORM_MSG_RPC_CONNECT_FAILED", "message", 0x12600011,
     "Connecting to the target %1 failed with system error %2.",
     "%1 address (text), %2 error of the system (number)",
     "Connecting failed with an error of the host's system.",
     "%2 is the number of the error on this system, for example that too many files are open in the "
     "process.",
     "Look the number up: errno on Linux, a Winsock error on Windows.",
     "every function that talks to a target"},
    {"KV_PLATFORM_MSG_RPC_CALL_TIMED_OUT", "message", 0x12600012,
     "The target %1 did not answer the call of procedure %2 in time. Check whether it is overloaded or "
     "hangs.",
     "%1 address (text), %2 procedure (number)",
     "The target did not answer a call in time, which is 15 seconds.",
     "The target hangs or is overloaded, while its system still acknowledges what it is sent. %2 is the "
     "procedure. One that was switched off or unplugged shows as 0x12600013 on a Linux host, but may show "
     "as this on Windows.",
     "Check that the target is alive. The request may have been carried out: read the state before you "
     "send it again. `kvtarget --fault start:hang` provokes it.",
     "every function that talks to a target"},
    {"KV_PLATFORM_MSG_RPC_CONNECTION_LOST", "message", 0x12600013,
     "The connection to the target %1 was lost during the call of procedure %2. Check whether the target "
     "was restarted.",
     "%1 address (text), %2 procedure (number)",
     "The connection broke while a call was under way.",
     "The target was restarted, has crashed or has closed the connection; a firewall cut it; or, on a "
     "Linux host, the target was switched off or unplugged and has acknowledged nothing for 10 seconds.",
     "See whether the target was restarted: item 2052 of application 0 tells when it was started. If so, "
     "application IDs and groups from before are void. The next call connects anew. `kvtarget --fault "
     "start:close` provokes it.",
     "every function that talks to a target"},
    {"KV_PLATFORM_MSG_RPC_REPLY_MALFORMED", "message", 0x12600014,
     "The target %1 answered the call of procedure %2 with a reply that cannot be read. Check that its "
     "version fits this host.",
     "%1 address (text), %2 procedure (number)",
     "The target's answer cannot be read.",
     "Its version means another record by this procedure, something else than a target listens at this "
     "port, or the answer was damaged. %2 is the procedure. Seldom the host had no memory for the answer.",
     "Check that the port is that of a target, and compare versions. `kvtarget --fault get-param:tag` "
     "provokes it.",
     "every function that talks to a target"},
    {"KV_PLATFORM_MSG_RPC_CALL_REFUSED", "message", 0x12600015,
     "The target %1 refused the call of procedure %2 with RPC status %3. Check that its version fits this "
     "host.",
     "%1 address (text), %2 procedure (number), %3 RPC status (number)",
     "The target's RPC layer refused a call.",
     "%3 is the reason: 1 no such program, 2 another version of it, 4 arguments that it cannot read, 5 an "
     "error of its system; from 100 on it denied the caller: 100 another RPC version, 101 it wants "
     "authentication. 3, no such procedure, comes for file transfer only.",
     "With 1, 2 or 4 compare versions, and check that the port is that of a target; with 5 look into the "
     "target's log. `kvtarget --fault any:accept-status=5` provokes it.",
     "every function that talks to a target"},
    {"KV_PLATFORM_MSG_RPC_REQUEST_NOT_ENCODED", "message", 0x12600016,
     "The request of procedure %2 to the target %1 could not be encoded. Check for lack of memory.",
     "%1 address (text), %2 procedure (number)",
     "A request could not be put together, so nothing was sent.",
     "The host has no memory, or the request is over 256 MiB, such as a parameter with an enormous list.",
     "Make the parameter smaller, or free memory.",
     "every function that talks to a target"},
    {"KV_PLATFORM_MSG_RPC_PARAMETER_REFUSED", "message", 0x12600017,
     "The RPC client for the target %1 cannot set parameter %2 to %3.",
     "%1 address (text), %2 parameter (number), %3 value (number)",
     "The client of a command channel does not take %3 for its parameter %2.",
     "None that a host could make: the library sets values that this platform library takes.",
     "If you see it, library and platform library are of different versions. 0x1250000e follows.",
     "every function that talks to a target, in principle"},
    {"KV_PLATFORM_MSG_RPC_CLIENT_UNUSABLE", "message", 0x12600018,
     "The RPC client for \"%1\" cannot be used. Check the address, and for lack of memory.",
     "%1 address (text)",
     "The client for a target cannot be used.",
     "There is no memory for it. An address that is none cannot be the reason: KvPlatform_addDevice "
     "refuses it.",
     "Free memory on the host; the next call tries again.",
     "every function that talks to a target"},
    {"KV_PLATFORM_MSG_TRANSFER_HANDLE_UNKNOWN", "message", 0x12600019,
     "The file-transfer handle names nothing. Check that it was created and is not deleted yet.",
     "",
     "A file-transfer handle names nothing.",
     "None that a host could make: the library makes these handles and deletes them itself.",
     "If you see it, the library is another version than this page.",
     "KvApplMan_downloadApplUtf8, KvApplMan_loadFileUtf8, in principle"},
    {"KV_PLATFORM_MSG_TRANSFER_SOURCE_UNREADABLE", "message", 0x1260001a,
     "The file \"%1\" cannot be read. Check that it exists, is a regular file and may be read.",
     "%1 path (text)",
     "The host cannot open or read the file %1.",
     "The user of the host program may not read it, it was removed meanwhile, another program holds it "
     "(Windows), it is no regular file or a link that leads nowhere, or the medium has an error.",
     "Check the permissions of the file on the host.",
     "KvApplMan_downloadApplUtf8, KvApplMan_loadFileUtf8"},
    {"KV_PLATFORM_MSG_TRANSFER_SOURCE_CHANGED", "message", 0x1260001b,
     "The file \"%1\" changed while it was sent. Send it again when nothing writes to it.",
     "%1 path (text)",
     "The file %1 became shorter while it was sent.",
     "Another program writes to it, such as a compiler or linker that is not done yet.",
     "Send it again when nothing writes to it. The target has discarded what it received.",
     "KvApplMan_downloadApplUtf8, KvApplMan_loadFileUtf8"},
    {"KV_PLATFORM_MSG_TRANSFER_REFUSED", "message", 0x1260001c,
     "The target %1 refused to %2 and answered %3. Check the target's storage and the file name.",
     "%1 address (text), %2 operation (text), %3 result (number)",
     "The target refused a step of a file transfer.",
     "%3 is its answer: -1 the name cannot be stored, -2 no such transfer, -3 a wrong place in the file, "
     "-4 not all bytes came, -5 its store could not do it (full, not writable, too many transfers at "
     "once), -6 an earlier step had failed. With \"set its time\" in %2 it is the host's time that was "
     "refused, and registration goes on.",
     "With -5 look at the space and the rights in the target's store; with -1 at the name. `kvtarget "
     "--fault file.commit:refuse` provokes it.",
     "KvApplMan_downloadApplUtf8, KvApplMan_loadFileUtf8, KvApplMan_registerAppl_2"},
    {"KV_PLATFORM_MSG_TRANSFER_DIRECTORY_REFUSED", "message", 0x1260001d,
     "The target %1 refused the directory \"%2\" and answered %3. Check its name and the target's storage.",
     "%1 address (text), %2 directory (text), %3 result (number)",
     "The target refused to make the directory %2.",
     "%3 is its answer: -1 the name cannot be stored there, such as one with a colon, a dot at its end or "
     "a device name like NUL; -5 its store could not do it, perhaps because a file has this name.",
     "Rename the directory on the host, or look at the target's store. A directory that is there already "
     "is no failure.",
     "KvApplMan_loadFileUtf8"},
    {"TARGET_NOT_ALLOWED_IN_STATE", "message", 0x14a00801,
     "Command refused. The command '%1' is not allowed in the present state of the application. Affected "
     "application: 0x%2. State on target system: %3.",
     "%1 command (text), %2 process (hexadecimal), %3 state (number)",
     "The process is not in a state in which the target takes this command.",
     "%3 is the state as the target counts it: 0 registered, 1 loaded, 2 ready, 3 running, 5 paused, 6 "
     "stopped. For example a start before the download, or a second stop.",
     "Read item 0 before the command. target.md lists which command goes in which state.",
     "KvApplMan_startAppl, KvApplMan_stopAppl, KvApplMan_terminateAppl, KvApplMan_pauseAppl, "
     "KvApplMan_stepAppl, KvApplMan_downloadApplUtf8"},
    {"TARGET_COMMAND_UNDER_WAY", "message", 0x14a00802,
     "Command refused. The command '%1' cannot begin while another command of the application is under "
     "way. Affected application: 0x%2.",
     "%1 command (text), %2 process (hexadecimal)",
     "The process is still busy with another command.",
     "Another thread or host gave it one, or one that had timed out on the host (0x12500043) is still "
     "being carried out. With process 0 it is a load from flash memory.",
     "Wait until the command is over, then give yours again. A command that never ends needs a restart of "
     "the target.",
     "KvApplMan_startAppl, KvApplMan_stopAppl, KvApplMan_terminateAppl, KvApplMan_unloadAppl, "
     "KvApplMan_pauseAppl, KvApplMan_stepAppl, KvApplMan_downloadApplUtf8, KvApplMan_loadFlashAppl"},
    {"KV_APPLMAN_TARGET_MSG_UNKNOWN_PROCESS", "message", 0x14a00803,
     "The target system does not know the application. Maybe it was unloaded, or the target system was "
     "restarted since its registration. Affected application: 0x%1.",
     "%1 process (hexadecimal)",
     "The target does not know the application ID.",
     "The process was unloaded, also by another host; the target was restarted since registration, which "
     "forgets all processes; the ID belongs to another target.",
     "List the IDs with KvApplMan_getApplications. After a restart, which item 2052 of application 0 "
     "shows, create the group anew. While an unload is waited for, this message counts as done and is "
     "dropped.",
     "every function that takes an application ID"},
    {"KV_APPLMAN_TARGET_MSG_UNSUPPORTED_PARAMETER", "message", 0x14a00804,
     "The target system cannot answer for the parameter. Parameter: %1. Affected application: 0x%2.",
     "%1 parameter (number), %2 process (hexadecimal)",
     "The target has no such parameter, or no value of it, for this process or for the manager.",
     "The item belongs to a process and the manager (application 0) was asked, or the other way round; the "
     "target is older than the item; nothing was ever written.",
     "Ask the right one. %1 is the target's number of the parameter, not the host's; target.md lists "
     "these. Where the library has a default or tolerates it, the message is taken away again and the call "
     "succeeds.",
     "KvApplMan_getApplInfo, KvApplMan_setApplParameter, KvApplMan_getApplInfoList, "
     "KvApplMan_getFlashApplInfo, KvApplMan_downloadApplUtf8; for the serial number of a device "
     "KvApplMan_createApplGroupHandle_2 and KvApplMan_registerAppl_2"},
    {"TARGET_WRONG_VALUE_TYPE", "message", 0x14a00805,
     "Invalid parameter value. The value has another type than the parameter. Parameter: %1. Type of the "
     "parameter: %2. Type of the value: %3.",
     "%1 parameter (number), %2 tag wanted (number), %3 tag given (number)",
     "A parameter was to be written with a value of another type.",
     "%2 is the tag of the parameter's type, %3 that of the value, as protocol.md lists them. This library "
     "gives each parameter its type, so a host with another one, or another version, has sent it.",
     "Compare the versions of target and host.",
     "KvApplMan_setApplParameter, KvApplMan_setFlashApplParameter, in principle"},
    {"TARGET_READ_ONLY_PARAMETER", "message", 0x14a00806,
     "The parameter is read-only. Parameter: %1.",
     "%1 parameter (number)",
     "A parameter that can only be read was to be written.",
     "This library offers only parameters that the simulated target lets be written, so a host with "
     "another one has sent it.",
     "Compare the versions of target and host.",
     "KvApplMan_setApplParameter, in principle"},
    {"TARGET_BAD_APPLICATION_NUMBER", "message", 0x14a00807,
     "Registration refused. Make sure that the application number is in the range from 1 to the size of "
     "the application group. Application number: %1. Size of the application group: %2.",
     "%1 application number (number), %2 group size (number)",
     "The application number is 0 or above the size of the group.",
     "The library checks this before (0x12500049), so the group handle was changed by the host program.",
     "Only read a group handle, never write to it.",
     "KvApplMan_registerAppl_2"},
    {"TARGET_NUMBER_TAKEN", "message", 0x14a00808,
     "Registration refused. The application group has an application of this number already. Application "
     "number: %1. Application that has it: 0x%2.",
     "%1 application number (number), %2 process that has it (hexadecimal)",
     "The group already has a process of this number.",
     "An earlier registration reached the target, but its answer did not reach the host (0x12600012, "
     "0x12600013), and it was tried again. Or two copies of a group handle are used.",
     "%2 is the process that has the number: unload it and register again.",
     "KvApplMan_registerAppl_2"},
    {"TARGET_UNKNOWN_GROUP", "message", 0x14a00809,
     "Registration refused. The target system has given this identity to no application group. Maybe it "
     "was restarted since. Identity: %1, %2.",
     "%1 first identity word (number), %2 second identity word (number)",
     "The group's identity begins like those of this target, but it was never given.",
     "The group handle was changed by the host program. A restart is not the reason: a restarted target "
     "takes the identities from before for those of another target.",
     "Only read a group handle, never write to it.",
     "KvApplMan_registerAppl_2"},
    {"TARGET_OTHER_GROUP_SIZE", "message", 0x14a0080a,
     "Registration refused. The target system knows the application group with another size. Given size: "
     "%1. Known size: %2.",
     "%1 group size given (number), %2 group size known (number)",
     "The target knows this group with another size.",
     "The group handle was changed by the host program.",
     "Only read a group handle, never write to it.",
     "KvApplMan_registerAppl_2"},
    {"TARGET_BINARY_MISSING", "message", 0x14a0080b,
     "Load application failed. The application binary was not found on the target system. Target path: "
     "'%1/%2'.",
     "%1 directory (text), %2 file name (text)",
     "The binary that is to be loaded does not lie where it belongs on the target.",
     "Its file was removed from the store after the transfer, or two downloads for the same process ran at "
     "once and gave it different names.",
     "Look into the store for the place that the message names, and download again.",
     "KvApplMan_downloadApplUtf8"},
    {"TARGET_NOT_INITIALISED", "message", 0x14a0080c,
     "Apply refused. Not all initialization calls were made. Affected application: 0x%1. Initialization "
     "calls: %2 of %3.",
     "%1 process (hexadecimal), %2 initialisation calls made (number), %3 calls wanted (number)",
     "The process has not had all the initialisation calls that it wants.",
     "Two downloads for the same process ran at once: a load begins the count anew. One download alone "
     "makes all calls before it applies.",
     "Download again, and only once at a time.",
     "KvApplMan_downloadApplUtf8"},
    {"TARGET_LIMIT_REACHED", "message", 0x14a0080d,
     "The limit of the target system is reached. Maximum: %1.",
     "%1 the most there can be (number)",
     "The target keeps %1 of these, and no more.",
     "At registration it is the number of processes, 4096; when a file is loaded, the number of a "
     "process's additional files, 1024; when a parameter is written, the number of those that mean nothing "
     "to the target, 256.",
     "Unload processes or remove files that nobody needs. Processes that host programs left behind are "
     "often the reason: KvApplMan_getApplications lists them.",
     "KvApplMan_registerAppl_2, KvApplMan_loadFileUtf8"},
    {"TARGET_UNKNOWN_STATE", "message", 0x14a0080e,
     "There is no such application state. State: %1.",
     "%1 state (number)",
     "There is no application state of this number.",
     "This library asks for states that there are, so a host with another one has sent it.",
     "Compare the versions of target and host.",
     "KvApplMan_getApplications, in principle"},
    {"TARGET_BAD_FILE_NAME", "message", 0x14a0080f,
     "The target system cannot store a file of this name. Target path: '%1/%2'.",
     "%1 directory (text), %2 file name (text)",
     "The target cannot store a file under this name.",
     "The name or a part of the path is empty, ends with a dot or a space, has a colon or a control "
     "character, is a device name like NUL or COM1, or would lead out of the store. Names over 255 and "
     "paths over 2048 bytes are refused, too.",
     "Pass another target path or target name. The rules are in target.md.",
     "KvApplMan_loadFileUtf8"},
    {"TARGET_FILE_NOT_REGISTERED", "message", 0x14a00810,
     "Remove file failed. No such file is registered. File name: '%1'. File type: %2.",
     "%1 file name (text), %2 type (number)",
     "No file of this name and type is registered for the application.",
     "It was removed already, was loaded under another type (6 may have become 2), or the name is given "
     "with its path.",
     "List the files with KvApplMan_getFileInfo, and give name and type as they stand there.",
     "KvApplMan_removeFile"},
    {"TARGET_FILE_NOT_REMOVED", "message", 0x14a00811,
     "Remove file failed. The target system cannot remove the file. Target path: '%1/%2'.",
     "%1 directory (text), %2 file name (text)",
     "The target could not delete a file or a folder.",
     "The target may not delete it or something in it, or, on Windows, a program holds it open. At an "
     "unload it is the folder of a process whose programs are run. What is not there any more counts as "
     "removed.",
     "Look into the target's store, and at who owns what is there.",
     "KvApplMan_removeFile, KvApplMan_unloadAppl"},
    {"TARGET_UNKNOWN_FLASH_APPLICATION", "message", 0x14a00812,
     "There is no such application in the flash memory. Flash application: %1.",
     "%1 flash application (number)",
     "There is no application of this ID in flash memory.",
     "It was cleared, or the target was started without it: the simulated target has in flash what "
     "`--flash` says.",
     "List the IDs with KvApplMan_getFlashApplications.",
     "KvApplMan_getFlashApplInfo, KvApplMan_setFlashApplParameter, KvApplMan_loadFlashAppl, "
     "KvApplMan_clearFlashAppl"},
    {"TARGET_UNKNOWN_CORE_KIND", "message", 0x14a00813,
     "There is no such kind of processor cores. Kind: %1.",
     "%1 kind of the request (number)",
     "There is no such kind of processor cores.",
     "This library asks for kinds that there are, so a host with another one has sent it.",
     "Compare the versions of target and host.",
     "KvApplMan_getAvailableCoreIDs, in principle"},
    {"TARGET_PROGRAM_ENDED", "message", 0x14a00814,
     "The program of application 0x%1 has ended by itself: %2.",
     "%1 process (hexadecimal), %2 exit code or signal (text)",
     "The process has ended by itself.",
     "%2 is its exit code or the signal that killed it. It returned from its main function, crashed, or "
     "went into the background, which counts as the end.",
     "This is a warning, also in calls that succeed, until a command for the process does. Read what the "
     "program printed: `output.log` in its folder of the target's store. Start it again when the cause is "
     "gone. The command `crash` of `kvtarget --control` provokes it.",
     "every function that takes an application ID"},
    {"TARGET_PROGRAM_NOT_STARTED", "message", 0x14a00815,
     "Start application failed. The program of application 0x%1 cannot be executed: %2.",
     "%1 process (hexadecimal), %2 reason (text)",
     "The program of the process cannot be executed.",
     "%2 says why, such as a missing interpreter or loader, no rights, or more programs than the target "
     "runs at once (`--most-programs`). With `--run` an application from flash memory has no program and "
     "does not start.",
     "Try the program in the target's store by hand, under the target's user.",
     "KvApplMan_startAppl"},
    {"TARGET_NO_PROGRAM", "message", 0x14a00816,
     "Load application failed. The file '%1/%2' is no program that the target system could run: %3.",
     "%1 directory (text), %2 file name (text), %3 reason (text)",
     "What was downloaded is not a program that the target can run.",
     "%3 says why: it is neither an ELF file nor a script that begins with #!, is for another kind of "
     "machine, is a library, or has the name of the target's log.",
     "Download a program that was built for the target's machine. Only a target with `--run` looks at "
     "this.",
     "KvApplMan_downloadApplUtf8"},
    {"TARGET_UNKNOWN_CORE", "message", 0x14a00817,
     "Programs on the target system cannot run on core %1. Number of cores: %2.",
     "%1 core (number), %2 number of cores (number)",
     "Programs on the target cannot run on core %1.",
     "Cores are counted from 1 to %2. The target counts those processors that it may use itself.",
     "Choose among those that KvApplMan_getAvailableCoreIDs lists.",
     "KvApplMan_setApplParameter"},
    {"KV_APPLMAN_TARGET_MSG_UNSUPPORTED_FILE_TYPE", "message", 0x14a01077,
     "The target system does not support files of this type. File type: %1.",
     "%1 type (number)",
     "The target has no additional files of this type.",
     "The type is none that the target knows; the simulated target knows 0 to 16 and 512. An older target "
     "may lack 6 or 512.",
     "Use another type. Type 6 is tried as 2 by itself, and for 512 the message becomes 0x12500022. "
     "`kvtarget --lack-file-type` provokes it.",
     "KvApplMan_loadFileUtf8"},
};
// clang-format on

} // namespace

std::span<const Explanation> explanations() noexcept { return kExplanations; }

} // namespace tool
