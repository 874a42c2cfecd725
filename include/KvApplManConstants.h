/// @file
/// Names for the numbers that go into and come out of the functions of KvApplicationManagerAP.h. C99 and C++11.
///
/// The numbers are those of the library's own tables; its build proves it. What the library only hands through, the
/// target defines: such a name says what the simulated target makes of the number, and its comment has [target]. A name
/// that ends in a number is one that nobody gives a meaning.
///
/// One constant a line, its number written out, so that scripts can read them.
#ifndef KV_APPL_MAN_CONSTANTS_H
#define KV_APPL_MAN_CONSTANTS_H

/// What a function returns. A result of the host interface library that is passed through can be another number, a
/// positive one too. Which function gives what, its own documentation says.
enum KvApplManStatus {
    KV_APPLMAN_OK = 0,                         ///< success
    KV_APPLMAN_STATUS_ARGUMENT = -100,         ///< an argument, a handle or memory is missing
    KV_APPLMAN_STATUS_REGISTRATION = -110,     ///< an application process was not registered
    KV_APPLMAN_STATUS_INITIALISATION = -120,   ///< not initialised
    KV_APPLMAN_STATUS_LOAD = -130,             ///< not loaded
    KV_APPLMAN_STATUS_APPLY = -140,            ///< its configuration was not applied
    KV_APPLMAN_STATUS_START = -150,            ///< not started
    KV_APPLMAN_STATUS_STOP = -160,             ///< not stopped
    KV_APPLMAN_STATUS_TERMINATE = -161,        ///< not terminated
    KV_APPLMAN_STATUS_PAUSE = -165,            ///< not paused
    KV_APPLMAN_STATUS_STEP = -166,             ///< no step was made
    KV_APPLMAN_STATUS_UNLOAD = -170,           ///< not unloaded
    KV_APPLMAN_STATUS_INFORMATION = -175,      ///< an information item was not received
    KV_APPLMAN_STATUS_PARAMETER = -176,        ///< the target refused a parameter
    KV_APPLMAN_STATUS_CHANNEL = -180,          ///< no command channel to the target
    KV_APPLMAN_STATUS_REMOTE_CALL = -185,      ///< the call to the target failed or was not answered in time
    KV_APPLMAN_STATUS_FT_CREATE = -190,        ///< no file-transfer client
    KV_APPLMAN_STATUS_FT_DELETE = -191,        ///< the file-transfer client was not deleted
    KV_APPLMAN_STATUS_TRANSFER = -195,         ///< a file or directory was not transferred
    KV_APPLMAN_STATUS_SIZE = -200,             ///< a size, buffer or value does not fit
    KV_APPLMAN_STATUS_TYPE = -204,             ///< the target answered with another type
    KV_APPLMAN_STATUS_IDENTIFIER = -205,       ///< unknown item, parameter or selector
    KV_APPLMAN_STATUS_STATE = -210,            ///< unknown application state; item 0 delivers it as a state
    KV_APPLMAN_STATUS_APPLICATIONS = -215,     ///< the list of applications was not received
    KV_APPLMAN_STATUS_ACCESS_HANDLE = -245,    ///< no access-restriction handle for a process, or it was not deleted
    KV_APPLMAN_STATUS_BINARY_NOT_FOUND = -250, ///< the host has no such application binary
    KV_APPLMAN_STATUS_FILE_SOURCE = -830,      ///< the host has no such additional file or directory
    KV_APPLMAN_STATUS_FILE_REMOVE = -831,      ///< an additional file was not removed
    KV_APPLMAN_STATUS_FILE_LOAD = -832,        ///< an additional file or directory was not loaded
    KV_APPLMAN_STATUS_FILE_INFORMATION = -833, ///< the list of additional files was not received, or does not fit
    KV_APPLMAN_STATUS_GROUP_HANDLE = -840,     ///< the group handle was not created
    KV_APPLMAN_STATUS_CORE_IDS = -841,         ///< the processor cores were not read
    KV_APPLMAN_STATUS_FLASH_MODE = -850,       ///< invalid request mode for the list of flash applications
    KV_APPLMAN_STATUS_FLASH_LIST = -851,       ///< the list of flash applications was not read
    KV_APPLMAN_STATUS_FLASH_LOAD = -852,       ///< a flash application was not loaded
    KV_APPLMAN_STATUS_FLASH_CLEAR = -853       ///< a flash application was not cleared
};

/// Information items: `infoId` of KvApplMan_getApplInfo and KvApplMan_getFlashApplInfo. Behind each the form in which
/// it is delivered: word = 32 bits, quad = 64 bits signed. Times are seconds since 1970-01-01 00:00 UTC.
enum KvApplManItem {
    KV_APPLMAN_ITEM_STATE = 0,                   ///< word: a KvApplManState
    KV_APPLMAN_ITEM_FILE_NAME = 2,               ///< text: file name of the binary
    KV_APPLMAN_ITEM_DIRECTORY = 3,               ///< text: its directory on the host
    KV_APPLMAN_ITEM_FILE_TIME = 4,               ///< quad: time of the binary's last change
    KV_APPLMAN_ITEM_DOWNLOAD_TIME = 5,           ///< quad: time of its download
    KV_APPLMAN_ITEM_DOWNLOAD_TIME_TEXT = 6,      ///< text: the same as "YYYY-MM-DD hh:mm:ss"
    KV_APPLMAN_ITEM_FILE_TIME_TEXT = 7,          ///< text: likewise, of item 4
    KV_APPLMAN_ITEM_QUAD_8 = 8,                  ///< quad
    KV_APPLMAN_ITEM_WORD_9 = 9,                  ///< word
    KV_APPLMAN_ITEM_GROUP_SIZE = 10,             ///< word: number of processes in the group
    KV_APPLMAN_ITEM_WORDS_11 = 11,               ///< words
    KV_APPLMAN_ITEM_TEXT_12 = 12,                ///< text
    KV_APPLMAN_ITEM_TEXT_13 = 13,                ///< text
    KV_APPLMAN_ITEM_TEXT_14 = 14,                ///< text
    KV_APPLMAN_ITEM_GROUP_SERIAL_NUMBERS = 15,   ///< words: per process of the group the CN serial number of its device
    KV_APPLMAN_ITEM_GROUP_ADDRESSES = 16,        ///< text "a.b.c.d;...": likewise the IPv4 address, or nothing
    KV_APPLMAN_ITEM_TEXT_17 = 17,                ///< text
    KV_APPLMAN_ITEM_TEXT_18 = 18,                ///< text
    KV_APPLMAN_ITEM_TEXT_19 = 19,                ///< text
    KV_APPLMAN_ITEM_TEXT_20 = 20,                ///< text
    KV_APPLMAN_ITEM_WORD_21 = 21,                ///< word
    KV_APPLMAN_ITEM_INFORMATION_TEXT = 22,       ///< text: what KvApplMan_getApplInfoList lists beside the ID
    KV_APPLMAN_ITEM_TEXT_128 = 128,              ///< text
    KV_APPLMAN_ITEM_TEXT_1002 = 1002,            ///< text: parameter 1002
    KV_APPLMAN_ITEM_TEXT_1003 = 1003,            ///< text: parameter 1003
    KV_APPLMAN_ITEM_QUAD_1004 = 1004,            ///< quad: parameter 1004
    KV_APPLMAN_ITEM_CORES = 1005,                ///< words: parameter 1005, the process's cores [target]
    KV_APPLMAN_ITEM_TEXT_1007 = 1007,            ///< text: parameter 1007
    KV_APPLMAN_ITEM_WORD_1008 = 1008,            ///< word: parameter 1008
    KV_APPLMAN_ITEM_WORD_1009 = 1009,            ///< word: parameter 1009
    KV_APPLMAN_ITEM_TEXT_1011 = 1011,            ///< text: parameter 1011
    KV_APPLMAN_ITEM_FLASH_VALUES = 1200,         ///< quads: values of a flash application
    KV_APPLMAN_ITEM_APPLICATION_COUNT = 2049,    ///< word: of the manager, number of processes [target]
    KV_APPLMAN_ITEM_INITIALISATION_CALLS = 2050, ///< word: initialisation calls wanted; 0 = complete load
    KV_APPLMAN_ITEM_SERIAL_NUMBER = 2051,        ///< word: of the manager, CN serial number of the device
    KV_APPLMAN_ITEM_START_TIME = 2052,           ///< quad: of the manager, time when the target started [target]
    KV_APPLMAN_ITEM_PRESENT_TIME = 2053,         ///< quad: of the manager, present time of the target [target]
    KV_APPLMAN_ITEM_TEXT_2054 = 2054,            ///< text
    KV_APPLMAN_ITEM_COMMAND_TIMEOUT = 2055,      ///< word: seconds that the target wants for a command
    KV_APPLMAN_ITEM_DOUBLE_3073 = 3073,          ///< double: parameter 3073
    KV_APPLMAN_ITEM_DOUBLE_3074 = 3074           ///< double: parameter 3074
};

/// Parameters: `paramId` of KvApplMan_setApplParameter. Behind each the form in which it is given.
enum KvApplManParam {
    KV_APPLMAN_PARAM_ARGUMENTS = 1001,   ///< texts: arguments of the process's program [target]
    KV_APPLMAN_PARAM_TEXT_1002 = 1002,   ///< text
    KV_APPLMAN_PARAM_TEXT_1003 = 1003,   ///< text
    KV_APPLMAN_PARAM_QUAD_1004 = 1004,   ///< quad
    KV_APPLMAN_PARAM_CORES = 1005,       ///< words: cores that the process runs on [target]
    KV_APPLMAN_PARAM_TEXT_1007 = 1007,   ///< text
    KV_APPLMAN_PARAM_WORD_1008 = 1008,   ///< word
    KV_APPLMAN_PARAM_WORD_1009 = 1009,   ///< word
    KV_APPLMAN_PARAM_WORD_1010 = 1010,   ///< word
    KV_APPLMAN_PARAM_TEXT_1011 = 1011,   ///< text
    KV_APPLMAN_PARAM_WORD_3072 = 3072,   ///< word
    KV_APPLMAN_PARAM_DOUBLE_3073 = 3073, ///< double
    KV_APPLMAN_PARAM_DOUBLE_3074 = 3074, ///< double
    KV_APPLMAN_PARAM_HOST_TIME = 3075    ///< texts: of the manager, the host's date in UTC and its offset "+hh:mm"
};

/// States of an application process, as item 0 delivers and KvApplMan_getApplications takes them. What each means is
/// the target's business; the names are those of the simulated target [target].
enum KvApplManState {
    KV_APPLMAN_STATE_ANY = 0,        ///< of no process; lists all of them
    KV_APPLMAN_STATE_REGISTERED = 1, ///< known by its ID, nothing is loaded
    KV_APPLMAN_STATE_LOADED = 2,     ///< loaded, being initialised
    KV_APPLMAN_STATE_READY = 3,      ///< ready to start, never started
    KV_APPLMAN_STATE_RUNNING = 4,    ///< running
    KV_APPLMAN_STATE_PAUSED = 5,     ///< paused
    KV_APPLMAN_STATE_STOPPED = 6     ///< stopped; may be started again
};

/// What `coreKind` of KvApplMan_getAvailableCoreIDs selects [target].
enum KvApplManCores {
    KV_APPLMAN_CORES_ALL = 0, ///< every core
    KV_APPLMAN_CORES_FREE = 1 ///< those on which no process runs
};

/// Types of additional files that the library knows. A target may know others; their meaning is its business.
enum KvApplManFileType {
    KV_APPLMAN_FILE_TYPE_FALLBACK = 2,      ///< a file; also what takes the place of 6
    KV_APPLMAN_FILE_TYPE_WITH_FALLBACK = 6, ///< a file; tried as 2 when the target does not know 6
    KV_APPLMAN_FILE_TYPE_DIRECTORY = 512    ///< a directory with all that is in it
};

/// Other arguments and limits.
enum KvApplManValue {
    KV_APPLMAN_MANAGER = 0,          ///< as application ID: the target's application manager itself
    KV_APPLMAN_FLASH_MODE_ALL = 0,   ///< request mode of KvApplMan_getFlashApplications, the only one
    KV_APPLMAN_MOST_SLOTS = 128,     ///< slots of a group
    KV_APPLMAN_MOST_LISTED = 128,    ///< applications that KvApplMan_getApplInfoList lists
    KV_APPLMAN_LOAD_OPTIONS_BIT = 24 ///< where the load options begin in the argument that they share
};

/// Codes of messages in a pool. Where a message has arguments, its comment begins with their signature and ends with
/// what they are; `%s` is a text, `%u` and `%d` are numbers, `%x` is a number in hexadecimal. Codes of the target's own
/// are its business; those that the library itself looks for stand at the end.
enum KvApplManMessage {
    /// an argument or handle is missing or of no use
    KV_APPLMAN_MSG_INVALID_ARGUMENT = 1024,
    /// an application process was not registered
    KV_APPLMAN_MSG_CANNOT_REGISTER = 0x12500000,
    /// not initialised
    KV_APPLMAN_MSG_CANNOT_INITIALIZE = 0x12500001,
    /// not loaded
    KV_APPLMAN_MSG_CANNOT_LOAD = 0x12500002,
    /// its configuration was not applied
    KV_APPLMAN_MSG_CANNOT_APPLY = 0x12500003,
    /// not started
    KV_APPLMAN_MSG_CANNOT_START = 0x12500004,
    /// not stopped
    KV_APPLMAN_MSG_CANNOT_STOP = 0x12500005,
    /// not unloaded
    KV_APPLMAN_MSG_CANNOT_UNLOAD = 0x12500006,
    /// an information item was not received
    KV_APPLMAN_MSG_INFORMATION_NOT_RECEIVED = 0x12500007,
    /// no client for the command channel; why stands before it
    KV_APPLMAN_MSG_NO_COMMAND_CHANNEL_CLIENT = 0x12500008,
    /// the client was not released
    KV_APPLMAN_MSG_COMMAND_CHANNEL_CLIENT_NOT_RELEASED = 0x12500009,
    /// `%s` the call failed: name of the function
    KV_APPLMAN_MSG_REMOTE_CALL_FAILED = 0x1250000a,
    /// no file-transfer client
    KV_APPLMAN_MSG_NO_FILE_TRANSFER_CLIENT = 0x1250000b,
    /// the file-transfer client was not deleted
    KV_APPLMAN_MSG_FILE_TRANSFER_CLIENT_NOT_DELETED = 0x1250000c,
    /// `%s%s%s%s` a file was not transferred: what was tried, source, target directory, target name
    KV_APPLMAN_MSG_FILE_TRANSFER_FAILED = 0x1250000d,
    /// the command channel was not configured
    KV_APPLMAN_MSG_CHANNEL_NOT_CONFIGURED = 0x1250000e,
    /// the command channel was not established
    KV_APPLMAN_MSG_CHANNEL_NOT_ESTABLISHED = 0x1250000f,
    /// a size does not fit
    KV_APPLMAN_MSG_INVALID_SIZE = 0x12500012,
    /// the target answered with another type
    KV_APPLMAN_MSG_INVALID_TYPE = 0x12500013,
    /// unknown item, parameter or selector, or a size that does not fit
    KV_APPLMAN_MSG_INVALID_PARAMETER = 0x12500014,
    /// unknown application state
    KV_APPLMAN_MSG_INVALID_STATE = 0x12500015,
    /// the list of applications was not received
    KV_APPLMAN_MSG_APPLICATIONS_NOT_RECEIVED = 0x12500016,
    /// `%d` a command failed with a status that has no message of its own: the status
    KV_APPLMAN_MSG_UNKNOWN_OPERATION_FAILED = 0x12500020,
    /// `%s%x%s%s` no place for a directory: source, application, target path, target name
    KV_APPLMAN_MSG_DIRECTORY_TARGET_INVALID = 0x12500021,
    /// `%s%x` the target knows no directories: source, application
    KV_APPLMAN_MSG_DIRECTORIES_NOT_SUPPORTED = 0x12500022,
    /// the target's command timeout was not received, or is 0
    KV_APPLMAN_MSG_COMMAND_TIMEOUT_UNKNOWN = 0x12500023,
    /// `%s%s` a path for a directory is missing: source, target
    KV_APPLMAN_MSG_DIRECTORY_PATH_MISSING = 0x12500026,
    /// `%x%u%u` the list of additional files does not fit: application, length of the list, number of files
    KV_APPLMAN_MSG_FILE_LIST_BUFFER_TOO_SMALL = 0x12500027,
    /// the target refused a parameter
    KV_APPLMAN_MSG_PARAMETER_NOT_SET = 0x12500028,
    /// an access level was not granted
    KV_APPLMAN_MSG_ACCESS_LEVEL_NOT_CLAIMED = 0x1250002a,
    /// `%s` no such application binary: path
    KV_APPLMAN_MSG_BINARY_NOT_FOUND = 0x1250002b,
    /// `%d%x` the target refused the list of additional files: error of the target, application
    KV_APPLMAN_MSG_FILE_LIST_REFUSED = 0x1250002c,
    /// `%s%u%x%s%s` no place for a file: source, type, application, target path, target name
    KV_APPLMAN_MSG_FILE_TARGET_INVALID = 0x12500030,
    /// `%x` load options are not supported: the options
    KV_APPLMAN_MSG_LOAD_OPTIONS_NOT_SUPPORTED = 0x12500031,
    /// `%s%s%x%u` no such file or directory: which of both, source, application, type
    KV_APPLMAN_MSG_SOURCE_NOT_FOUND = 0x12500032,
    /// the group handle was not created
    KV_APPLMAN_MSG_GROUP_NOT_CREATED = 0x12500033,
    /// `%u%u` registration is not offered: number of processes, application number
    KV_APPLMAN_MSG_REGISTRATION_NOT_OFFERED = 0x12500034,
    /// the target has no groups, and there is more than one slot
    KV_APPLMAN_MSG_GROUPS_NOT_SUPPORTED = 0x12500035,
    /// the processor cores were not read
    KV_APPLMAN_MSG_CORE_IDS_NOT_READ = 0x12500036,
    /// `%s%u%d%x` an additional file was not removed: name, type, error of the target, application
    KV_APPLMAN_MSG_FILE_NOT_REMOVED = 0x12500037,
    /// `%x` not paused: application
    KV_APPLMAN_MSG_CANNOT_PAUSE = 0x12500038,
    /// `%x` no step was made: application
    KV_APPLMAN_MSG_CANNOT_STEP = 0x12500039,
    /// `%u` invalid request mode: the mode
    KV_APPLMAN_MSG_INVALID_FLASH_REQUEST_MODE = 0x1250003a,
    /// the list of flash applications was not read
    KV_APPLMAN_MSG_FLASH_APPLICATIONS_NOT_READ = 0x1250003b,
    /// `%u%u` the list of flash applications does not fit: number of applications, length of the list
    KV_APPLMAN_MSG_FLASH_BUFFER_TOO_SMALL = 0x1250003c,
    /// an item of a flash application was not received
    KV_APPLMAN_MSG_FLASH_INFORMATION_NOT_RECEIVED = 0x1250003d,
    /// an item of a flash application was not written
    KV_APPLMAN_MSG_FLASH_PARAMETER_NOT_SET = 0x1250003e,
    /// a flash application was not loaded
    KV_APPLMAN_MSG_CANNOT_LOAD_FLASH = 0x1250003f,
    /// a flash application was not cleared
    KV_APPLMAN_MSG_CANNOT_CLEAR_FLASH = 0x12500040,
    /// `%s%u%d%x` an additional file was refused: source, type, error of the target, application
    KV_APPLMAN_MSG_FILE_NOT_REGISTERED = 0x12500041,
    /// waiting without a client
    KV_APPLMAN_MSG_WAIT_WITHOUT_CLIENT = 0x12500042,
    /// `%d` the target did not finish a command in time: seconds
    KV_APPLMAN_MSG_WAIT_TIMED_OUT = 0x12500043,
    /// the device handle names no device
    KV_APPLMAN_MSG_DEVICE_HANDLE_INVALID = 0x12500044,
    /// no memory for the group handle
    KV_APPLMAN_MSG_GROUP_OUT_OF_MEMORY = 0x12500045,
    /// `%u%d` the serial number of a slot was not read: slot from 0, status
    KV_APPLMAN_MSG_GROUP_SERIAL_UNREAD = 0x12500046,
    /// `%u%d` the address of a slot was not read: slot from 0, status
    KV_APPLMAN_MSG_GROUP_ADDRESS_UNREAD = 0x12500047,
    /// the group handle was not filled; why stands before it
    KV_APPLMAN_MSG_GROUP_NOT_INITIALIZED = 0x12500048,
    /// `%u%u` an application number out of turn: the number, number of slots
    KV_APPLMAN_MSG_INVALID_APPL_NO = 0x12500049,
    /// `%u%d` the serial number of the device was not read: application number, status
    KV_APPLMAN_MSG_REGISTRATION_SERIAL_UNREAD = 0x1250004a,
    /// `%u%u%u` not the device of the slot: application number, serial number of the slot, of the device
    KV_APPLMAN_MSG_WRONG_DEVICE = 0x1250004b,
    /// `%x%u` the group's data were not written to a process: application, target parameter
    KV_APPLMAN_MSG_GROUP_PARAMETER_NOT_SET = 0x1250004c,
    /// `%u%u` too many slots: the most, how many
    KV_APPLMAN_MSG_DEVICE_LIST_TOO_LONG = 0x1250004d,
    /// the size of the group was not read
    KV_APPLMAN_MSG_GROUP_SIZE_UNREAD = 0x1250004e,
    /// `%u%u` not the number of slots of the group: slots, processes of the group
    KV_APPLMAN_MSG_WRONG_GROUP_SIZE = 0x1250004f,
    /// `%u%u` loading failed: slot from 1, number of slots
    KV_APPLMAN_MSG_LOAD_FAILED = 0x12500050,
    /// no memory for a text of addresses
    KV_APPLMAN_MSG_ADDRESSES_OUT_OF_MEMORY = 0x12500051,
    /// `%x` no access-restriction handle for a process: application
    KV_APPLMAN_MSG_ACCESS_HANDLE_NOT_CREATED = 0x12500052,
    /// `%x` it was not deleted: application
    KV_APPLMAN_MSG_ACCESS_HANDLE_NOT_DELETED = 0x12500053,
    /// the number of initialisation calls was not read
    KV_APPLMAN_MSG_INIT_CALLS_UNREAD = 0x12500054,
    /// targets that load completely and others in one group
    KV_APPLMAN_MSG_INIT_CALLS_INCONSISTENT = 0x12500055,
    /// `%u%u%u%u` initialising failed: slot from 1, number of slots, call, number of calls
    KV_APPLMAN_MSG_INIT_FAILED = 0x12500056,
    /// `%u%u` applying failed: slot from 1, number of slots
    KV_APPLMAN_MSG_APPLY_FAILED = 0x12500057,
    /// `%s` no file in a directory, or no directory: source
    KV_APPLMAN_MSG_DIRECTORY_NOT_FOUND = 0x12500058,
    /// `%s%s%d` a directory was not made on the target: directory, name, error
    KV_APPLMAN_MSG_TARGET_DIRECTORY_NOT_CREATED = 0x12500059,
    /// `%s%u` a directory was not read to its end: source, error of the system
    KV_APPLMAN_MSG_DIRECTORY_NOT_READ = 0x1250005a,
    /// an argument of the list is missing
    KV_APPLMAN_MSG_INFO_LIST_ARGUMENT_MISSING = 0x1250005b,
    /// `%s` no application has this name: the name
    KV_APPLMAN_MSG_APPLICATION_NOT_LOADED = 0x1250005c,
    /// not terminated
    KV_APPLMAN_MSG_CANNOT_TERMINATE = 0x12500060,
    /// the target does not know the application
    KV_APPLMAN_TARGET_MSG_UNKNOWN_PROCESS = 0x14a00803,
    /// the target cannot answer for an item or parameter
    KV_APPLMAN_TARGET_MSG_UNSUPPORTED_PARAMETER = 0x14a00804,
    /// the target does not know a type of additional files
    KV_APPLMAN_TARGET_MSG_UNSUPPORTED_FILE_TYPE = 0x14a01077
};

/// Codes of messages that the platform library adds, with their arguments as before. An address is "a.b.c.d:port".
enum KvPlatformMessage {
    /// the device handle names no device
    KV_PLATFORM_MSG_DEVICE_UNKNOWN = 0x12600000,
    /// the access-restriction handle names nothing
    KV_PLATFORM_MSG_ACCESS_HANDLE_UNKNOWN = 0x12600001,
    /// the filter handle names nothing
    KV_PLATFORM_MSG_FILTER_UNKNOWN = 0x12600002,
    /// `%u` no such parameter of a handle: parameter
    KV_PLATFORM_MSG_PARAMETER_UNKNOWN = 0x12600003,
    /// `%u%u` no such element: parameter, index
    KV_PLATFORM_MSG_PARAMETER_INDEX_UNKNOWN = 0x12600004,
    /// `%u%u` a size does not fit: parameter, bytes needed
    KV_PLATFORM_MSG_PARAMETER_SIZE_WRONG = 0x12600005,
    /// `%u%u` a value is not taken: parameter, value
    KV_PLATFORM_MSG_PARAMETER_VALUE_REFUSED = 0x12600006,
    /// `%u` a text is not zero-terminated: parameter
    KV_PLATFORM_MSG_PARAMETER_TEXT_BROKEN = 0x12600007,
    /// `%s` not an address: the text
    KV_PLATFORM_MSG_ADDRESS_MALFORMED = 0x12600008,
    /// `%s` no memory: what was to be made
    KV_PLATFORM_MSG_OUT_OF_MEMORY = 0x12600009,
    /// `%x%x` an access level is refused: level, application
    KV_PLATFORM_MSG_LEVEL_REFUSED = 0x1260000a,
    /// `%u` no such kind of filter: kind
    KV_PLATFORM_MSG_FILTER_KIND_UNKNOWN = 0x1260000b,
    /// a filter without address
    KV_PLATFORM_MSG_FILTER_INCOMPLETE = 0x1260000c,
    /// a filter that was changed and not applied since
    KV_PLATFORM_MSG_FILTER_NOT_APPLIED = 0x1260000d,
    /// `%s` the target refuses connections: address
    KV_PLATFORM_MSG_RPC_CONNECTION_REFUSED = 0x1260000e,
    /// `%s` the target cannot be reached: address
    KV_PLATFORM_MSG_RPC_HOST_UNREACHABLE = 0x1260000f,
    /// `%s` the target does not answer a connection: address
    KV_PLATFORM_MSG_RPC_CONNECT_TIMED_OUT = 0x12600010,
    /// `%s%d` no connection: address, error of the system
    KV_PLATFORM_MSG_RPC_CONNECT_FAILED = 0x12600011,
    /// `%s%u` no answer in time: address, procedure
    KV_PLATFORM_MSG_RPC_CALL_TIMED_OUT = 0x12600012,
    /// `%s%u` the connection was lost: address, procedure
    KV_PLATFORM_MSG_RPC_CONNECTION_LOST = 0x12600013,
    /// `%s%u` a reply that cannot be read: address, procedure
    KV_PLATFORM_MSG_RPC_REPLY_MALFORMED = 0x12600014,
    /// `%s%u%u` a call was refused: address, procedure, RPC status
    KV_PLATFORM_MSG_RPC_CALL_REFUSED = 0x12600015,
    /// `%s%u` a request was not encoded: address, procedure
    KV_PLATFORM_MSG_RPC_REQUEST_NOT_ENCODED = 0x12600016,
    /// `%s%u%u` a client takes no such value: address, parameter, value
    KV_PLATFORM_MSG_RPC_PARAMETER_REFUSED = 0x12600017,
    /// `%s` a client that cannot be used: address
    KV_PLATFORM_MSG_RPC_CLIENT_UNUSABLE = 0x12600018,
    /// the file-transfer handle names nothing
    KV_PLATFORM_MSG_TRANSFER_HANDLE_UNKNOWN = 0x12600019,
    /// `%s` a file cannot be read: path
    KV_PLATFORM_MSG_TRANSFER_SOURCE_UNREADABLE = 0x1260001a,
    /// `%s` a file changed while it was sent: path
    KV_PLATFORM_MSG_TRANSFER_SOURCE_CHANGED = 0x1260001b,
    /// `%s%s%d` the target refused a file: address, operation, result
    KV_PLATFORM_MSG_TRANSFER_REFUSED = 0x1260001c,
    /// `%s%s%d` or a directory: address, directory, result
    KV_PLATFORM_MSG_TRANSFER_DIRECTORY_REFUSED = 0x1260001d
};

#endif
