// The message catalogue, a row per message: name, code, signature of the arguments (null = none), text.
// UNREPORTED: a code that keeps its place and that nobody adds.
// Whoever includes this file defines both macros, every time; it takes them back at its end.

MESSAGE(cannotRegister, 0x12500000, nullptr,
        "Internal error. Kavora Support information: Cannot register real-time application.")
MESSAGE(cannotInitialize, 0x12500001, nullptr,
        "Internal error. Kavora Support information: Cannot initialize real-time application.")
MESSAGE(cannotLoad, 0x12500002, nullptr, "Cannot load real-time application.")
MESSAGE(cannotApply, 0x12500003, nullptr,
        "Internal error. Kavora Support information: Cannot apply real-time application.")
MESSAGE(cannotStart, 0x12500004, nullptr, "Cannot start real-time application.")
MESSAGE(cannotStop, 0x12500005, nullptr, "Cannot stop real-time application.")
MESSAGE(cannotUnload, 0x12500006, nullptr, "Cannot unload real-time application.")
MESSAGE(informationNotReceived, 0x12500007, nullptr,
        "Internal error. Kavora Support information: Error occurred in receiving application information.")
MESSAGE(noCommandChannelClient, 0x12500008, nullptr,
        "Internal error. Kavora Support information: Cannot create command channel client.")
MESSAGE(commandChannelClientNotReleased, 0x12500009, nullptr,
        "Internal error. Kavora Support information: Cannot delete command channel client.")
MESSAGE(remoteCallFailed, 0x1250000a, "%s",
        "Internal error. Kavora Support information: Cannot perform remote call via command channel. Perhaps target "
        "system does not support function %1. Update target system for full functionality.")
MESSAGE(noFileTransferClient, 0x1250000b, nullptr,
        "Internal error. Kavora Support information: Cannot create file-transfer client.")
MESSAGE(fileTransferClientNotDeleted, 0x1250000c, nullptr,
        "Internal error. Kavora Support information: Cannot delete file-transfer client.")
MESSAGE(fileTransferFailed, 0x1250000d, "%s%s%s%s",
        "Internal error. Kavora Support information: Attempt to %1 file failed. Ensure that source path and target "
        "path are valid. Source path: '%2'. Target path: '%3/%4'.")
MESSAGE(channelNotConfigured, 0x1250000e, nullptr,
        "Internal error. Kavora Support information: Cannot set command channel configuration parameter.")
MESSAGE(channelNotEstablished, 0x1250000f, nullptr,
        "Internal error. Kavora Support information: Cannot establish command channel.")
UNREPORTED(0x12500010, "Internal error. Kavora Support information: Operation failed. Out of memory.")
UNREPORTED(0x12500011, "Internal error. Kavora Support information: Cannot perform task update call.")
MESSAGE(invalidSize, 0x12500012, nullptr, "Internal error. Kavora Support information: Invalid parameter size.")
MESSAGE(invalidType, 0x12500013, nullptr, "Internal error. Kavora Support information: Invalid parameter type.")
MESSAGE(invalidParameter, 0x12500014, nullptr, "Internal error. Kavora Support information: Invalid parameter.")
MESSAGE(invalidState, 0x12500015, nullptr, "Internal error. Kavora Support information: Invalid application state.")
MESSAGE(applicationsNotReceived, 0x12500016, nullptr,
        "Internal error. Kavora Support information: Cannot receive information about loaded real-time application.")
UNREPORTED(0x12500017, "Obsolete error code.")
UNREPORTED(0x12500018, "Obsolete error code.")
UNREPORTED(0x12500019, "Obsolete error code.")
UNREPORTED(0x1250001a, "Obsolete error code.")
UNREPORTED(0x1250001b, "Obsolete error code.")
UNREPORTED(0x1250001c, "Obsolete error code.")
UNREPORTED(0x1250001d, "Internal error. Kavora Support information: Invalid real-time application identifier.")
UNREPORTED(0x1250001e, "Obsolete error code.")
UNREPORTED(0x1250001f, "Obsolete error code.")
MESSAGE(unknownOperationFailed, 0x12500020, "%d",
        "Operation failed. Kavora Support information: Operation is unknown. Operation error code: %1.")
MESSAGE(directoryTargetInvalid, 0x12500021, "%s%x%s%s",
        "Attempt to load directory failed. Kavora Support information: Invalid target file path was received. Source "
        "file path: '%1'. Affected application: 0x%2. Target file path: '%3'. Target file name: '%4' (expecting NULL "
        "or empty string).")
MESSAGE(directoriesNotSupported, 0x12500022, "%s%x",
        "Attempt to load directory failed. Kavora Support information: Feature is not supported by real-time system. "
        "It is recommended to update the firmware of the real-time system. Source path: '%1'. Affected application: "
        "0x%2.")
MESSAGE(commandTimeoutUnknown, 0x12500023, nullptr,
        "Operation failed. Internal error occurred. Kavora Support information: Attempt to get asynchronous command "
        "timeout value failed.")
UNREPORTED(0x12500024, "Internal error. Kavora Support information: Function was called with an invalid argument.")
UNREPORTED(0x12500025, "Internal error. Kavora Support information: Error occurred during application status request.")
MESSAGE(directoryPathMissing, 0x12500026, "%s%s",
        "Attempt to load directory failed. Kavora Support information: Invalid parameter used. Ensure that valid "
        "source and target path are used. Source path: %1. Target path: %2.")
MESSAGE(fileListBufferTooSmall, 0x12500027, "%x%u%u",
        "Attempt to get additional files list failed. Given list buffer is too small. Kavora Support information: "
        "Affected application: 0x%1. Given list length: %2. Total count of registered additional files: %3.")
MESSAGE(parameterNotSet, 0x12500028, nullptr,
        "Internal error. Kavora Support information: Cannot set real-time application parameter.")
UNREPORTED(0x12500029,
           "Internal error. Kavora Support information: Cannot retrieve access ID from HostInterfaceManager "
           "AccessRestriction Handle.")
MESSAGE(accessLevelNotClaimed, 0x1250002a, nullptr,
        "Internal error. Kavora Support information: Cannot claim requested AccessRestriction level.")
MESSAGE(binaryNotFound, 0x1250002b, "%s",
        "Attempt to load application failed. Application binary was not found at the specified path: '%1'. Ensure "
        "that valid application binary path is used.")
MESSAGE(fileListRefused, 0x1250002c, "%d%x",
        "Attempt to get additional files list failed. Errors were reported by target system, see message log for "
        "further information. Kavora Support information: Returned error code: %1. Affected application: 0x%2.")
UNREPORTED(0x1250002d, "Internal error. Kavora Support information: Cannot create event receive thread.")
UNREPORTED(0x1250002e, "Internal error. Kavora Support information: Cannot delete event receive thread.")
UNREPORTED(0x1250002f, "Cannot reset real-time environment.")
MESSAGE(fileTargetInvalid, 0x12500030, "%s%u%x%s%s",
        "Attempt to load additional file failed. Kavora Support information: Invalid target file path (NULL or empty "
        "string) was returned by target system. Source file path: '%1'. File type: %2. Affected application: 0x%3. "
        "Target file path: '%4'. Target file name: '%5'.")
MESSAGE(loadOptionsNotSupported, 0x12500031, "%x",
        "Internal error. Kavora Support information: Attempt to load file failed. Load file options are not "
        "supported. Used load file options: 0x%1.")
MESSAGE(sourceNotFound, 0x12500032, "%s%s%x%u",
        "Attempt to load %1 failed. Invalid source path used. Ensure that %1 exists at specified path. Kavora Support "
        "information: Source path: '%2'. Affected application: 0x%3. File type: '%4'.")
MESSAGE(groupNotCreated, 0x12500033, nullptr,
        "Internal error. Kavora Support information: Cannot create application group handle. Real-time environment "
        "reported error(s). See message log for further information.")
MESSAGE(registrationNotOffered, 0x12500034, "%u%u",
        "Cannot register real-time application. RPC call failed. Check message log for error reports. Kavora Support "
        "information: Probably current target system does not support application groups (applications count: %1, "
        "application number: %2).")
MESSAGE(groupsNotSupported, 0x12500035, nullptr,
        "Configuration error. Cannot create application group handle. Current real-time environment firmware version "
        "does not support application groups with multiple real-time applications.")
MESSAGE(coreIdsNotRead, 0x12500036, nullptr,
        "Internal error. Kavora Support information: Cannot read available CPU core IDs. Real-time environment "
        "reported error(s). See message log for further information.")
MESSAGE(fileNotRemoved, 0x12500037, "%s%u%d%x",
        "Attempt to remove additional file failed. Errors were reported by target system, see message log for further "
        "information. Kavora Support information: Error was set by remove additional file function on target system. "
        "Target file name: '%1'. File type: %2. Returned error code: %3. Affected application: 0x%4.")
MESSAGE(cannotPause, 0x12500038, "%x",
        "Internal error. Kavora Support information: Cannot pause real-time application (0x%1). See message log for "
        "further information.")
MESSAGE(cannotStep, 0x12500039, "%x",
        "Internal error. Kavora Support information: Cannot step real-time application (0x%1). See message log for "
        "further information.")
MESSAGE(invalidFlashRequestMode, 0x1250003a, "%u",
        "Get flashed real-time applications failed. Invalid request mode ('%1') used.")
MESSAGE(flashApplicationsNotRead, 0x1250003b, nullptr,
        "Get flashed real-time applications failed. See message log for further information.")
MESSAGE(flashBufferTooSmall, 0x1250003c, "%u%u",
        "Get flashed real-time applications failed. Given buffer (elements: %2) is too small, expected buffer for %1 "
        "elements.")
MESSAGE(flashInformationNotReceived, 0x1250003d, nullptr,
        "Internal error. Kavora Support information: Error occurred in receiving flash application information.")
MESSAGE(flashParameterNotSet, 0x1250003e, nullptr,
        "Internal error. Kavora Support information: Error occurred while setting flash application parameter.")
MESSAGE(cannotLoadFlash, 0x1250003f, nullptr, "Load flash application failed. See message log for further information.")
MESSAGE(cannotClearFlash, 0x12500040, nullptr,
        "Clear flash application failed. See message log for further information.")
MESSAGE(fileNotRegistered, 0x12500041, "%s%u%d%x",
        "Attempt to load application specific file(s) failed. Errors were reported by target system, see message log "
        "for further information. Kavora Support information: Error was set by register additional file function on "
        "target system. Source path: '%1'. File type: %2. Returned error code: %3. Affected application: 0x%4.")
MESSAGE(waitWithoutClient, 0x12500042, nullptr,
        "Internal error. Kavora Support information: Wait until command execution will be finished failed. Invalid "
        "pointer (NULL) to RPC client used.")
MESSAGE(waitTimedOut, 0x12500043, "%d",
        "Timeout occurred while waiting until command execution will finish on target system. See message log for "
        "further information. Kavora Support information: Timeout (in s): %1.")
MESSAGE(deviceHandleInvalid, 0x12500044, nullptr,
        "Internal error. Kavora Support information: The device handle is invalid. Maybe the device handle was "
        "already removed.")
MESSAGE(groupOutOfMemory, 0x12500045, nullptr,
        "Create application group handle failed. Kavora Support information: Out of memory.")
MESSAGE(groupSerialUnread, 0x12500046, "%u%d",
        "Create application group handle failed. Kavora Support information: Get CN serial number failed. Affected "
        "device (index): %1. Return code: %2.")
MESSAGE(groupAddressUnread, 0x12500047, "%u%d",
        "Create application group handle failed. Kavora Support information: Get serial number of '%1' device in "
        "given device list failed. Get parameter function return code: '%2'.")
MESSAGE(groupNotInitialized, 0x12500048, nullptr,
        "Create application group handle failed. Kavora Support information: Initialization of application group "
        "handle data failed. See message log for further information.")
MESSAGE(invalidApplNo, 0x12500049, "%u%u",
        "Configuration error. Register application process failed. Invalid application number '%1' used. Register "
        "applications in ascending application number order and make sure that application number is in range 1..%2.")
MESSAGE(registrationSerialUnread, 0x1250004a, "%u%d",
        "Register application process failed. Kavora Support information: Get CN serial number failed. Affected "
        "device (index): %1. Return code: %2.")
MESSAGE(wrongDevice, 0x1250004b, "%u%u%u",
        "Configuration error. Kavora Support information: Applications are not registered on the same device as "
        "specified during application group creation. Application number: '%1'. Expected serial number: '%2'. Current "
        "serial number: '%3'.")
MESSAGE(groupParameterNotSet, 0x1250004c, "%x%u",
        "Register application process failed. Kavora Support information: Set internal parameter (ID: '%2') for "
        "application process (ID: 0x%1) failed. See message log for further information.")
MESSAGE(deviceListTooLong, 0x1250004d, "%u%u",
        "Internal error. Kavora Support information: Check access restriction handle list failed. Maximum supported "
        "list length: %1. Current list length: %2.")
MESSAGE(groupSizeUnread, 0x1250004e, nullptr,
        "Cannot load application process. Kavora Support information: Cannot access the total number of application "
        "processes of application group. See message log for further information.")
MESSAGE(wrongGroupSize, 0x1250004f, "%u%u",
        "Cannot load application process. Kavora Support information: Make sure that download function will be called "
        "once for all applications of an application group. Given applications: %1. Expected applications count: %2.")
MESSAGE(loadFailed, 0x12500050, "%u%u",
        "Cannot load application process. See message log for further information. Kavora Support information: "
        "Affected application process: %1. Total number of application processes in application group: %2.")
MESSAGE(addressesOutOfMemory, 0x12500051, nullptr,
        "Cannot get application process parameter. Kavora Support information: Out of memory.")
MESSAGE(accessHandleNotCreated, 0x12500052, "%x",
        "Register application process failed. Kavora Support information: Cannot create access restriction handle to "
        "set internal parameter for application process (ID: 0x%1).")
MESSAGE(accessHandleNotDeleted, 0x12500053, "%x",
        "Register application process failed. Kavora Support information: Cannot delete access restriction handle for "
        "application process (ID: 0x%1).")
MESSAGE(initCallsUnread, 0x12500054, nullptr,
        "Cannot load application process. Kavora Support information: Cannot access initialization call counter. See "
        "message log for further information.")
MESSAGE(initCallsInconsistent, 0x12500055, nullptr,
        "Cannot load application process. Kavora Support information: Inconsistent initialization call counter values "
        "detected, cannot mix complete application load with partial application load sequence. Make sure that target "
        "system firmware is compatible.")
MESSAGE(initFailed, 0x12500056, "%u%u%u%u",
        "Cannot load application process. See message log for further information. Kavora Support information: "
        "Initialization failed. Affected application process: %1. Total number of application processes in "
        "application group: %2. Initialization call: %3 of %4.")
MESSAGE(applyFailed, 0x12500057, "%u%u",
        "Cannot load application process. See message log for further information. Kavora Support information: Apply "
        "configuration failed. Affected application process: %1. Total number of application processes in application "
        "group: %2.")
MESSAGE(directoryNotFound, 0x12500058, "%s",
        "Attempt to load directory failed. Kavora Support information: No file or directory found. Ensure that given "
        "path is valid and that directory is not empty. Source path: '%1'.")
MESSAGE(targetDirectoryNotCreated, 0x12500059, "%s%s%d",
        "Attempt to load directory failed. Kavora Support information: Cannot create directory on target system. "
        "Target base directory: '%1'. Target directory name: '%2'. Internal error code: %3.")
MESSAGE(directoryNotRead, 0x1250005a, "%s%u",
        "Attempt to load directory failed. Kavora Support information: Unexpected error occurred. Not all files were "
        "processed. Source path: '%1'. OS error code: %2.")
MESSAGE(infoListArgumentMissing, 0x1250005b, nullptr,
        "Attempt to get application information list failed. Invalid parameter (NULL) used.")
MESSAGE(applicationNotLoaded, 0x1250005c, "%s",
        "Attempt to get application information failed. Kavora Support information: Unknown or invalid application "
        "name used. Specified application '%1' is not loaded on target system.")
UNREPORTED(0x1250005d,
           "Internal error. Kavora Support information: Attempt to %1 directory failed. Ensure that source path and "
           "target path are valid. Source path: '%2'. Target path: '%3'.")
UNREPORTED(0x1250005e,
           "Attempt to load directory failed. Kavora Support information: Cannot open directory. Ensure that given "
           "path is valid. Source path: '%1'.")
UNREPORTED(0x1250005f, "The obsolete function '%1' is no longer supported. Use the function '%2' instead.")
MESSAGE(cannotTerminate, 0x12500060, nullptr, "Attempt to terminate application process failed.")

#undef MESSAGE
#undef UNREPORTED
