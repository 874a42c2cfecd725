// The message catalogue: every code of the library, its text and the signature of its arguments.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/error_lists.h"

namespace applman {

inline constexpr std::uint32_t kMessageBase = 0x12500000;
inline constexpr std::size_t kMessageCount = 97;

/// The messages that are reported, by code. The catalogue holds more: codes keep their places when they go out of use.
enum class Msg : std::uint32_t {
    invalidArgument = 1024, // the error-handling library's generic code; its text is there
    cannotRegister = 0x12500000,
    cannotInitialize = 0x12500001,
    cannotLoad = 0x12500002,
    cannotApply = 0x12500003,
    cannotStart = 0x12500004,
    cannotStop = 0x12500005,
    cannotUnload = 0x12500006,
    informationNotReceived = 0x12500007,
    noCommandChannelClient = 0x12500008,
    commandChannelClientNotReleased = 0x12500009,
    remoteCallFailed = 0x1250000a,
    noFileTransferClient = 0x1250000b,
    fileTransferClientNotDeleted = 0x1250000c,
    fileTransferFailed = 0x1250000d,
    channelNotConfigured = 0x1250000e,
    channelNotEstablished = 0x1250000f,
    invalidSize = 0x12500012,
    invalidType = 0x12500013,
    invalidParameter = 0x12500014,
    invalidState = 0x12500015,
    applicationsNotReceived = 0x12500016,
    unknownOperationFailed = 0x12500020,
    directoryTargetInvalid = 0x12500021,
    directoriesNotSupported = 0x12500022,
    commandTimeoutUnknown = 0x12500023,
    directoryPathMissing = 0x12500026,
    fileListBufferTooSmall = 0x12500027,
    parameterNotSet = 0x12500028,
    accessLevelNotClaimed = 0x1250002a,
    binaryNotFound = 0x1250002b,
    fileListRefused = 0x1250002c,
    fileTargetInvalid = 0x12500030,
    loadOptionsNotSupported = 0x12500031,
    sourceNotFound = 0x12500032,
    groupNotCreated = 0x12500033,
    registrationNotOffered = 0x12500034,
    groupsNotSupported = 0x12500035,
    coreIdsNotRead = 0x12500036,
    fileNotRemoved = 0x12500037,
    cannotPause = 0x12500038,
    cannotStep = 0x12500039,
    invalidFlashRequestMode = 0x1250003a,
    flashApplicationsNotRead = 0x1250003b,
    flashBufferTooSmall = 0x1250003c,
    flashInformationNotReceived = 0x1250003d,
    flashParameterNotSet = 0x1250003e,
    cannotLoadFlash = 0x1250003f,
    cannotClearFlash = 0x12500040,
    fileNotRegistered = 0x12500041,
    waitWithoutClient = 0x12500042,
    waitTimedOut = 0x12500043,
    deviceHandleInvalid = 0x12500044,
    groupOutOfMemory = 0x12500045,
    groupSerialUnread = 0x12500046,
    groupAddressUnread = 0x12500047,
    groupNotInitialized = 0x12500048,
    invalidApplNo = 0x12500049,
    registrationSerialUnread = 0x1250004a,
    wrongDevice = 0x1250004b,
    groupParameterNotSet = 0x1250004c,
    deviceListTooLong = 0x1250004d,
    groupSizeUnread = 0x1250004e,
    wrongGroupSize = 0x1250004f,
    loadFailed = 0x12500050,
    addressesOutOfMemory = 0x12500051,
    accessHandleNotCreated = 0x12500052,
    accessHandleNotDeleted = 0x12500053,
    initCallsUnread = 0x12500054,
    initCallsInconsistent = 0x12500055,
    initFailed = 0x12500056,
    applyFailed = 0x12500057,
    directoryNotFound = 0x12500058,
    targetDirectoryNotCreated = 0x12500059,
    directoryNotRead = 0x1250005a,
    infoListArgumentMissing = 0x1250005b,
    applicationNotLoaded = 0x1250005c,
    cannotTerminate = 0x12500060,
};

struct MessageRow {
    std::uint32_t code;
    const char* signature; // null when the message has no arguments
    const char* text;
};

inline constexpr std::array<MessageRow, kMessageCount> kMessages{{
    {0x12500000, nullptr, "Internal error. Kavora Support information: Cannot register real-time application."},
    {0x12500001, nullptr, "Internal error. Kavora Support information: Cannot initialize real-time application."},
    {0x12500002, nullptr, "Cannot load real-time application."},
    {0x12500003, nullptr, "Internal error. Kavora Support information: Cannot apply real-time application."},
    {0x12500004, nullptr, "Cannot start real-time application."},
    {0x12500005, nullptr, "Cannot stop real-time application."},
    {0x12500006, nullptr, "Cannot unload real-time application."},
    {0x12500007, nullptr,
     "Internal error. Kavora Support information: Error occurred in receiving application information."},
    {0x12500008, nullptr, "Internal error. Kavora Support information: Cannot create command channel client."},
    {0x12500009, nullptr, "Internal error. Kavora Support information: Cannot delete command channel client."},
    {0x1250000a, "%s",
     "Internal error. Kavora Support information: Cannot perform remote call via command channel. Perhaps target "
     "system does not support function %1. Update target system for full functionality."},
    {0x1250000b, nullptr, "Internal error. Kavora Support information: Cannot create file-transfer client."},
    {0x1250000c, nullptr, "Internal error. Kavora Support information: Cannot delete file-transfer client."},
    {0x1250000d, "%s%s%s%s",
     "Internal error. Kavora Support information: Attempt to %1 file failed. Ensure that source path and target path "
     "are valid. Source path: '%2'. Target path: '%3/%4'."},
    {0x1250000e, nullptr,
     "Internal error. Kavora Support information: Cannot set command channel configuration parameter."},
    {0x1250000f, nullptr, "Internal error. Kavora Support information: Cannot establish command channel."},
    {0x12500010, nullptr, "Internal error. Kavora Support information: Operation failed. Out of memory."},
    {0x12500011, nullptr, "Internal error. Kavora Support information: Cannot perform task update call."},
    {0x12500012, nullptr, "Internal error. Kavora Support information: Invalid parameter size."},
    {0x12500013, nullptr, "Internal error. Kavora Support information: Invalid parameter type."},
    {0x12500014, nullptr, "Internal error. Kavora Support information: Invalid parameter."},
    {0x12500015, nullptr, "Internal error. Kavora Support information: Invalid application state."},
    {0x12500016, nullptr,
     "Internal error. Kavora Support information: Cannot receive information about loaded real-time application."},
    {0x12500017, nullptr, "Obsolete error code."},
    {0x12500018, nullptr, "Obsolete error code."},
    {0x12500019, nullptr, "Obsolete error code."},
    {0x1250001a, nullptr, "Obsolete error code."},
    {0x1250001b, nullptr, "Obsolete error code."},
    {0x1250001c, nullptr, "Obsolete error code."},
    {0x1250001d, nullptr, "Internal error. Kavora Support information: Invalid real-time application identifier."},
    {0x1250001e, nullptr, "Obsolete error code."},
    {0x1250001f, nullptr, "Obsolete error code."},
    {0x12500020, "%d", "Operation failed. Kavora Support information: Operation is unknown. Operation error code: %1."},
    {0x12500021, "%s%x%s%s",
     "Attempt to load directory failed. Kavora Support information: Invalid target file path was received. Source file "
     "path: '%1'. Affected application: 0x%2. Target file path: '%3'. Target file name: '%4' (expecting NULL or empty "
     "string)."},
    {0x12500022, "%s%x",
     "Attempt to load directory failed. Kavora Support information: Feature is not supported by real-time system. It "
     "is recommended to update the firmware of the real-time system. Source path: '%1'. Affected application: 0x%2."},
    {0x12500023, nullptr,
     "Operation failed. Internal error occurred. Kavora Support information: Attempt to get asynchronous command "
     "timeout value failed."},
    {0x12500024, nullptr, "Internal error. Kavora Support information: Function was called with an invalid argument."},
    {0x12500025, nullptr,
     "Internal error. Kavora Support information: Error occurred during application status request."},
    {0x12500026, "%s%s",
     "Attempt to load directory failed. Kavora Support information: Invalid parameter used. Ensure that valid source "
     "and target path are used. Source path: %1. Target path: %2."},
    {0x12500027, "%x%u%u",
     "Attempt to get additional files list failed. Given list buffer is too small. Kavora Support information: "
     "Affected application: 0x%1. Given list length: %2. Total count of registered additional files: %3."},
    {0x12500028, nullptr, "Internal error. Kavora Support information: Cannot set real-time application parameter."},
    {0x12500029, nullptr,
     "Internal error. Kavora Support information: Cannot retrieve access ID from HostInterfaceManager "
     "AccessRestriction Handle."},
    {0x1250002a, nullptr,
     "Internal error. Kavora Support information: Cannot claim requested AccessRestriction level."},
    {0x1250002b, "%s",
     "Attempt to load application failed. Application binary was not found at the specified path: '%1'. Ensure that "
     "valid application binary path is used."},
    {0x1250002c, "%d%x",
     "Attempt to get additional files list failed. Errors were reported by target system, see message log for further "
     "information. Kavora Support information: Returned error code: %1. Affected application: 0x%2."},
    {0x1250002d, nullptr, "Internal error. Kavora Support information: Cannot create event receive thread."},
    {0x1250002e, nullptr, "Internal error. Kavora Support information: Cannot delete event receive thread."},
    {0x1250002f, nullptr, "Cannot reset real-time environment."},
    {0x12500030, "%s%u%x%s%s",
     "Attempt to load additional file failed. Kavora Support information: Invalid target file path (NULL or empty "
     "string) was returned by target system. Source file path: '%1'. File type: %2. Affected application: 0x%3. Target "
     "file path: '%4'. Target file name: '%5'."},
    {0x12500031, "%x",
     "Internal error. Kavora Support information: Attempt to load file failed. Load file options are not supported. "
     "Used load file options: 0x%1."},
    {0x12500032, "%s%s%x%u",
     "Attempt to load %1 failed. Invalid source path used. Ensure that %1 exists at specified path. Kavora Support "
     "information: Source path: '%2'. Affected application: 0x%3. File type: '%4'."},
    {0x12500033, nullptr,
     "Internal error. Kavora Support information: Cannot create application group handle. Real-time environment "
     "reported error(s). See message log for further information."},
    {0x12500034, "%u%u",
     "Cannot register real-time application. RPC call failed. Check message log for error reports. Kavora Support "
     "information: Probably current target system does not support application groups (applications count: %1, "
     "application number: %2)."},
    {0x12500035, nullptr,
     "Configuration error. Cannot create application group handle. Current real-time environment firmware version does "
     "not support application groups with multiple real-time applications."},
    {0x12500036, nullptr,
     "Internal error. Kavora Support information: Cannot read available CPU core IDs. Real-time environment reported "
     "error(s). See message log for further information."},
    {0x12500037, "%s%u%d%x",
     "Attempt to remove additional file failed. Errors were reported by target system, see message log for further "
     "information. Kavora Support information: Error was set by remove additional file function on target system. "
     "Target file name: '%1'. File type: %2. Returned error code: %3. Affected application: 0x%4."},
    {0x12500038, "%x",
     "Internal error. Kavora Support information: Cannot pause real-time application (0x%1). See message log for "
     "further information."},
    {0x12500039, "%x",
     "Internal error. Kavora Support information: Cannot step real-time application (0x%1). See message log for "
     "further information."},
    {0x1250003a, "%u", "Get flashed real-time applications failed. Invalid request mode ('%1') used."},
    {0x1250003b, nullptr, "Get flashed real-time applications failed. See message log for further information."},
    {0x1250003c, "%u%u",
     "Get flashed real-time applications failed. Given buffer (elements: %2) is too small, expected buffer for %1 "
     "elements."},
    {0x1250003d, nullptr,
     "Internal error. Kavora Support information: Error occurred in receiving flash application information."},
    {0x1250003e, nullptr,
     "Internal error. Kavora Support information: Error occurred while setting flash application parameter."},
    {0x1250003f, nullptr, "Load flash application failed. See message log for further information."},
    {0x12500040, nullptr, "Clear flash application failed. See message log for further information."},
    {0x12500041, "%s%u%d%x",
     "Attempt to load application specific file(s) failed. Errors were reported by target system, see message log for "
     "further information. Kavora Support information: Error was set by register additional file function on target "
     "system. Source path: '%1'. File type: %2. Returned error code: %3. Affected application: 0x%4."},
    {0x12500042, nullptr,
     "Internal error. Kavora Support information: Wait until command execution will be finished failed. Invalid "
     "pointer (NULL) to RPC client used."},
    {0x12500043, "%d",
     "Timeout occurred while waiting until command execution will finish on target system. See message log for further "
     "information. Kavora Support information: Timeout (in s): %1."},
    {0x12500044, nullptr,
     "Internal error. Kavora Support information: The device handle is invalid. Maybe the device handle was already "
     "removed."},
    {0x12500045, nullptr, "Create application group handle failed. Kavora Support information: Out of memory."},
    {0x12500046, "%u%d",
     "Create application group handle failed. Kavora Support information: Get CN serial number failed. Affected device "
     "(index): %1. Return code: %2."},
    {0x12500047, "%u%d",
     "Create application group handle failed. Kavora Support information: Get serial number of '%1' device in given "
     "device list failed. Get parameter function return code: '%2'."},
    {0x12500048, nullptr,
     "Create application group handle failed. Kavora Support information: Initialization of application group handle "
     "data failed. See message log for further information."},
    {0x12500049, "%u%u",
     "Configuration error. Register application process failed. Invalid application number '%1' used. Register "
     "applications in ascending application number order and make sure that application number is in range 1..%2."},
    {0x1250004a, "%u%d",
     "Register application process failed. Kavora Support information: Get CN serial number failed. Affected device "
     "(index): %1. Return code: %2."},
    {0x1250004b, "%u%u%u",
     "Configuration error. Kavora Support information: Applications are not registered on the same device as specified "
     "during application group creation. Application number: '%1'. Expected serial number: '%2'. Current serial "
     "number: '%3'."},
    {0x1250004c, "%x%u",
     "Register application process failed. Kavora Support information: Set internal parameter (ID: '%2') for "
     "application process (ID: 0x%1) failed. See message log for further information."},
    {0x1250004d, "%u%u",
     "Internal error. Kavora Support information: Check access restriction handle list failed. Maximum supported list "
     "length: %1. Current list length: %2."},
    {0x1250004e, nullptr,
     "Cannot load application process. Kavora Support information: Cannot access the total number of application "
     "processes of application group. See message log for further information."},
    {0x1250004f, "%u%u",
     "Cannot load application process. Kavora Support information: Make sure that download function will be called "
     "once for all applications of an application group. Given applications: %1. Expected applications count: %2."},
    {0x12500050, "%u%u",
     "Cannot load application process. See message log for further information. Kavora Support information: Affected "
     "application process: %1. Total number of application processes in application group: %2."},
    {0x12500051, nullptr, "Cannot get application process parameter. Kavora Support information: Out of memory."},
    {0x12500052, "%x",
     "Register application process failed. Kavora Support information: Cannot create access restriction handle to set "
     "internal parameter for application process (ID: 0x%1)."},
    {0x12500053, "%x",
     "Register application process failed. Kavora Support information: Cannot delete access restriction handle for "
     "application process (ID: 0x%1)."},
    {0x12500054, nullptr,
     "Cannot load application process. Kavora Support information: Cannot access initialization call counter. See "
     "message log for further information."},
    {0x12500055, nullptr,
     "Cannot load application process. Kavora Support information: Inconsistent initialization call counter values "
     "detected, cannot mix complete application load with partial application load sequence. Make sure that target "
     "system firmware is compatible."},
    {0x12500056, "%u%u%u%u",
     "Cannot load application process. See message log for further information. Kavora Support information: "
     "Initialization failed. Affected application process: %1. Total number of application processes in application "
     "group: %2. Initialization call: %3 of %4."},
    {0x12500057, "%u%u",
     "Cannot load application process. See message log for further information. Kavora Support information: Apply "
     "configuration failed. Affected application process: %1. Total number of application processes in application "
     "group: %2."},
    {0x12500058, "%s",
     "Attempt to load directory failed. Kavora Support information: No file or directory found. Ensure that given path "
     "is valid and that directory is not empty. Source path: '%1'."},
    {0x12500059, "%s%s%d",
     "Attempt to load directory failed. Kavora Support information: Cannot create directory on target system. Target "
     "base directory: '%1'. Target directory name: '%2'. Internal error code: %3."},
    {0x1250005a, "%s%u",
     "Attempt to load directory failed. Kavora Support information: Unexpected error occurred. Not all files were "
     "processed. Source path: '%1'. OS error code: %2."},
    {0x1250005b, nullptr, "Attempt to get application information list failed. Invalid parameter (NULL) used."},
    {0x1250005c, "%s",
     "Attempt to get application information failed. Kavora Support information: Unknown or invalid application name "
     "used. Specified application '%1' is not loaded on target system."},
    {0x1250005d, nullptr,
     "Internal error. Kavora Support information: Attempt to %1 directory failed. Ensure that source path and target "
     "path are valid. Source path: '%2'. Target path: '%3'."},
    {0x1250005e, nullptr,
     "Attempt to load directory failed. Kavora Support information: Cannot open directory. Ensure that given path is "
     "valid. Source path: '%1'."},
    {0x1250005f, nullptr, "The obsolete function '%1' is no longer supported. Use the function '%2' instead."},
    {0x12500060, nullptr, "Attempt to terminate application process failed."},
}};

constexpr bool messagesAreInOrder() {
    for (std::size_t index = 0; index < kMessages.size(); ++index) {
        if (kMessages[index].code != kMessageBase + index) { return false; }
    }
    return true;
}
static_assert(messagesAreInOrder());

constexpr std::uint32_t codeOf(Msg message) { return static_cast<std::uint32_t>(message); }

constexpr const char* signatureOf(Msg message) {
    return message == Msg::invalidArgument ? nullptr : kMessages[codeOf(message) - kMessageBase].signature;
}

/// The descriptor under which the catalogue is registered with the error manager.
extern const KvResText kMessageTable;

} // namespace applman
