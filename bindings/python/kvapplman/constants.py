"""Names for the numbers that go into and come out of the library. Written by scripts/python-constants."""

from enum import Enum, IntEnum

VERSION = "1.0.0"


class Status(IntEnum):
    OK = 0  #: success
    ARGUMENT = -100  #: an argument, a handle or memory is missing
    REGISTRATION = -110  #: an application process was not registered
    INITIALISATION = -120  #: not initialised
    LOAD = -130  #: not loaded
    APPLY = -140  #: its configuration was not applied
    START = -150  #: not started
    STOP = -160  #: not stopped
    TERMINATE = -161  #: not terminated
    PAUSE = -165  #: not paused
    STEP = -166  #: no step was made
    UNLOAD = -170  #: not unloaded
    INFORMATION = -175  #: an information item was not received
    PARAMETER = -176  #: the target refused a parameter
    CHANNEL = -180  #: no command channel to the target
    REMOTE_CALL = -185  #: the call to the target failed or was not answered in time
    FT_CREATE = -190  #: no file-transfer client
    FT_DELETE = -191  #: the file-transfer client was not deleted
    TRANSFER = -195  #: a file or directory was not transferred
    SIZE = -200  #: a size, buffer or value does not fit
    TYPE = -204  #: the target answered with another type
    IDENTIFIER = -205  #: unknown item, parameter or selector
    STATE = -210  #: unknown application state; item 0 delivers it as a state
    APPLICATIONS = -215  #: the list of applications was not received
    ACCESS_HANDLE = -245  #: no access-restriction handle for a process, or it was not deleted
    BINARY_NOT_FOUND = -250  #: the host has no such application binary
    FILE_SOURCE = -830  #: the host has no such additional file or directory
    FILE_REMOVE = -831  #: an additional file was not removed
    FILE_LOAD = -832  #: an additional file or directory was not loaded
    FILE_INFORMATION = -833  #: the list of additional files was not received, or does not fit
    GROUP_HANDLE = -840  #: the group handle was not created
    CORE_IDS = -841  #: the processor cores were not read
    FLASH_MODE = -850  #: invalid request mode for the list of flash applications
    FLASH_LIST = -851  #: the list of flash applications was not read
    FLASH_LOAD = -852  #: a flash application was not loaded
    FLASH_CLEAR = -853  #: a flash application was not cleared


class Item(IntEnum):
    STATE = 0  #: word: a KvApplManState
    FILE_NAME = 2  #: text: file name of the binary
    DIRECTORY = 3  #: text: its directory on the host
    FILE_TIME = 4  #: quad: time of the binary's last change
    DOWNLOAD_TIME = 5  #: quad: time of its download
    DOWNLOAD_TIME_TEXT = 6  #: text: the same as "YYYY-MM-DD hh:mm:ss"
    FILE_TIME_TEXT = 7  #: text: likewise, of item 4
    QUAD_8 = 8  #: quad
    WORD_9 = 9  #: word
    GROUP_SIZE = 10  #: word: number of processes in the group
    WORDS_11 = 11  #: words
    TEXT_12 = 12  #: text
    TEXT_13 = 13  #: text
    TEXT_14 = 14  #: text
    GROUP_SERIAL_NUMBERS = 15  #: words: per process of the group the CN serial number of its device
    GROUP_ADDRESSES = 16  #: text "a.b.c.d;...": likewise the IPv4 address, or nothing
    TEXT_17 = 17  #: text
    TEXT_18 = 18  #: text
    TEXT_19 = 19  #: text
    TEXT_20 = 20  #: text
    WORD_21 = 21  #: word
    INFORMATION_TEXT = 22  #: text: what KvApplMan_getApplInfoList lists beside the ID
    TEXT_128 = 128  #: text
    TEXT_1002 = 1002  #: text: parameter 1002
    TEXT_1003 = 1003  #: text: parameter 1003
    QUAD_1004 = 1004  #: quad: parameter 1004
    CORES = 1005  #: words: parameter 1005, the process's cores [target]
    TEXT_1007 = 1007  #: text: parameter 1007
    WORD_1008 = 1008  #: word: parameter 1008
    WORD_1009 = 1009  #: word: parameter 1009
    TEXT_1011 = 1011  #: text: parameter 1011
    FLASH_VALUES = 1200  #: quads: values of a flash application
    APPLICATION_COUNT = 2049  #: word: of the manager, number of processes [target]
    INITIALISATION_CALLS = 2050  #: word: initialisation calls wanted; 0 = complete load
    SERIAL_NUMBER = 2051  #: word: of the manager, CN serial number of the device
    START_TIME = 2052  #: quad: of the manager, time when the target started [target]
    PRESENT_TIME = 2053  #: quad: of the manager, present time of the target [target]
    TEXT_2054 = 2054  #: text
    COMMAND_TIMEOUT = 2055  #: word: seconds that the target wants for a command
    DOUBLE_3073 = 3073  #: double: parameter 3073
    DOUBLE_3074 = 3074  #: double: parameter 3074


class Param(IntEnum):
    ARGUMENTS = 1001  #: texts: arguments of the process's program [target]
    TEXT_1002 = 1002  #: text
    TEXT_1003 = 1003  #: text
    QUAD_1004 = 1004  #: quad
    CORES = 1005  #: words: cores that the process runs on [target]
    TEXT_1007 = 1007  #: text
    WORD_1008 = 1008  #: word
    WORD_1009 = 1009  #: word
    WORD_1010 = 1010  #: word
    TEXT_1011 = 1011  #: text
    WORD_3072 = 3072  #: word
    DOUBLE_3073 = 3073  #: double
    DOUBLE_3074 = 3074  #: double
    HOST_TIME = 3075  #: texts: of the manager, the host's date in UTC and its offset "+hh:mm"


class State(IntEnum):
    ANY = 0  #: of no process; lists all of them
    REGISTERED = 1  #: known by its ID, nothing is loaded
    LOADED = 2  #: loaded, being initialised
    READY = 3  #: ready to start, never started
    RUNNING = 4  #: running
    PAUSED = 5  #: paused
    STOPPED = 6  #: stopped; may be started again


class CoreKind(IntEnum):
    ALL = 0  #: every core
    FREE = 1  #: those on which no process runs


class FileType(IntEnum):
    FALLBACK = 2  #: a file; also what takes the place of 6
    WITH_FALLBACK = 6  #: a file; tried as 2 when the target does not know 6
    DIRECTORY = 512  #: a directory with all that is in it


class Value(IntEnum):
    MANAGER = 0  #: as application ID: the target's application manager itself
    FLASH_MODE_ALL = 0  #: request mode of KvApplMan_getFlashApplications, the only one
    MOST_SLOTS = 128  #: slots of a group
    MOST_LISTED = 128  #: applications that KvApplMan_getApplInfoList lists
    LOAD_OPTIONS_BIT = 24  #: where the load options begin in the argument that they share


class MessageCode(IntEnum):
    INVALID_ARGUMENT = 1024  #: an argument or handle is missing or of no use
    CANNOT_REGISTER = 0x12500000  #: an application process was not registered
    CANNOT_INITIALIZE = 0x12500001  #: not initialised
    CANNOT_LOAD = 0x12500002  #: not loaded
    CANNOT_APPLY = 0x12500003  #: its configuration was not applied
    CANNOT_START = 0x12500004  #: not started
    CANNOT_STOP = 0x12500005  #: not stopped
    CANNOT_UNLOAD = 0x12500006  #: not unloaded
    INFORMATION_NOT_RECEIVED = 0x12500007  #: an information item was not received
    NO_COMMAND_CHANNEL_CLIENT = 0x12500008  #: no client for the command channel; why stands before it
    COMMAND_CHANNEL_CLIENT_NOT_RELEASED = 0x12500009  #: the client was not released
    REMOTE_CALL_FAILED = 0x1250000a  #: `%s` the call failed: name of the function
    NO_FILE_TRANSFER_CLIENT = 0x1250000b  #: no file-transfer client
    FILE_TRANSFER_CLIENT_NOT_DELETED = 0x1250000c  #: the file-transfer client was not deleted
    FILE_TRANSFER_FAILED = 0x1250000d  #: `%s%s%s%s` a file was not transferred: what was tried, source, target directory, target name
    CHANNEL_NOT_CONFIGURED = 0x1250000e  #: the command channel was not configured
    CHANNEL_NOT_ESTABLISHED = 0x1250000f  #: the command channel was not established
    INVALID_SIZE = 0x12500012  #: a size does not fit
    INVALID_TYPE = 0x12500013  #: the target answered with another type
    INVALID_PARAMETER = 0x12500014  #: unknown item, parameter or selector, or a size that does not fit
    INVALID_STATE = 0x12500015  #: unknown application state
    APPLICATIONS_NOT_RECEIVED = 0x12500016  #: the list of applications was not received
    UNKNOWN_OPERATION_FAILED = 0x12500020  #: `%d` a command failed with a status that has no message of its own: the status
    DIRECTORY_TARGET_INVALID = 0x12500021  #: `%s%x%s%s` no place for a directory: source, application, target path, target name
    DIRECTORIES_NOT_SUPPORTED = 0x12500022  #: `%s%x` the target knows no directories: source, application
    COMMAND_TIMEOUT_UNKNOWN = 0x12500023  #: the target's command timeout was not received, or is 0
    DIRECTORY_PATH_MISSING = 0x12500026  #: `%s%s` a path for a directory is missing: source, target
    FILE_LIST_BUFFER_TOO_SMALL = 0x12500027  #: `%x%u%u` the list of additional files does not fit: application, length of the list, number of files
    PARAMETER_NOT_SET = 0x12500028  #: the target refused a parameter
    ACCESS_LEVEL_NOT_CLAIMED = 0x1250002a  #: an access level was not granted
    BINARY_NOT_FOUND = 0x1250002b  #: `%s` no such application binary: path
    FILE_LIST_REFUSED = 0x1250002c  #: `%d%x` the target refused the list of additional files: error of the target, application
    FILE_TARGET_INVALID = 0x12500030  #: `%s%u%x%s%s` no place for a file: source, type, application, target path, target name
    LOAD_OPTIONS_NOT_SUPPORTED = 0x12500031  #: `%x` load options are not supported: the options
    SOURCE_NOT_FOUND = 0x12500032  #: `%s%s%x%u` no such file or directory: which of both, source, application, type
    GROUP_NOT_CREATED = 0x12500033  #: the group handle was not created
    REGISTRATION_NOT_OFFERED = 0x12500034  #: `%u%u` registration is not offered: number of processes, application number
    GROUPS_NOT_SUPPORTED = 0x12500035  #: the target has no groups, and there is more than one slot
    CORE_IDS_NOT_READ = 0x12500036  #: the processor cores were not read
    FILE_NOT_REMOVED = 0x12500037  #: `%s%u%d%x` an additional file was not removed: name, type, error of the target, application
    CANNOT_PAUSE = 0x12500038  #: `%x` not paused: application
    CANNOT_STEP = 0x12500039  #: `%x` no step was made: application
    INVALID_FLASH_REQUEST_MODE = 0x1250003a  #: `%u` invalid request mode: the mode
    FLASH_APPLICATIONS_NOT_READ = 0x1250003b  #: the list of flash applications was not read
    FLASH_BUFFER_TOO_SMALL = 0x1250003c  #: `%u%u` the list of flash applications does not fit: number of applications, length of the list
    FLASH_INFORMATION_NOT_RECEIVED = 0x1250003d  #: an item of a flash application was not received
    FLASH_PARAMETER_NOT_SET = 0x1250003e  #: an item of a flash application was not written
    CANNOT_LOAD_FLASH = 0x1250003f  #: a flash application was not loaded
    CANNOT_CLEAR_FLASH = 0x12500040  #: a flash application was not cleared
    FILE_NOT_REGISTERED = 0x12500041  #: `%s%u%d%x` an additional file was refused: source, type, error of the target, application
    WAIT_WITHOUT_CLIENT = 0x12500042  #: waiting without a client
    WAIT_TIMED_OUT = 0x12500043  #: `%d` the target did not finish a command in time: seconds
    DEVICE_HANDLE_INVALID = 0x12500044  #: the device handle names no device
    GROUP_OUT_OF_MEMORY = 0x12500045  #: no memory for the group handle
    GROUP_SERIAL_UNREAD = 0x12500046  #: `%u%d` the serial number of a slot was not read: slot from 0, status
    GROUP_ADDRESS_UNREAD = 0x12500047  #: `%u%d` the address of a slot was not read: slot from 0, status
    GROUP_NOT_INITIALIZED = 0x12500048  #: the group handle was not filled; why stands before it
    INVALID_APPL_NO = 0x12500049  #: `%u%u` an application number out of turn: the number, number of slots
    REGISTRATION_SERIAL_UNREAD = 0x1250004a  #: `%u%d` the serial number of the device was not read: application number, status
    WRONG_DEVICE = 0x1250004b  #: `%u%u%u` not the device of the slot: application number, serial number of the slot, of the device
    GROUP_PARAMETER_NOT_SET = 0x1250004c  #: `%x%u` the group's data were not written to a process: application, target parameter
    DEVICE_LIST_TOO_LONG = 0x1250004d  #: `%u%u` too many slots: the most, how many
    GROUP_SIZE_UNREAD = 0x1250004e  #: the size of the group was not read
    WRONG_GROUP_SIZE = 0x1250004f  #: `%u%u` not the number of slots of the group: slots, processes of the group
    LOAD_FAILED = 0x12500050  #: `%u%u` loading failed: slot from 1, number of slots
    ADDRESSES_OUT_OF_MEMORY = 0x12500051  #: no memory for a text of addresses
    ACCESS_HANDLE_NOT_CREATED = 0x12500052  #: `%x` no access-restriction handle for a process: application
    ACCESS_HANDLE_NOT_DELETED = 0x12500053  #: `%x` it was not deleted: application
    INIT_CALLS_UNREAD = 0x12500054  #: the number of initialisation calls was not read
    INIT_CALLS_INCONSISTENT = 0x12500055  #: targets that load completely and others in one group
    INIT_FAILED = 0x12500056  #: `%u%u%u%u` initialising failed: slot from 1, number of slots, call, number of calls
    APPLY_FAILED = 0x12500057  #: `%u%u` applying failed: slot from 1, number of slots
    DIRECTORY_NOT_FOUND = 0x12500058  #: `%s` no file in a directory, or no directory: source
    TARGET_DIRECTORY_NOT_CREATED = 0x12500059  #: `%s%s%d` a directory was not made on the target: directory, name, error
    DIRECTORY_NOT_READ = 0x1250005a  #: `%s%u` a directory was not read to its end: source, error of the system
    INFO_LIST_ARGUMENT_MISSING = 0x1250005b  #: an argument of the list is missing
    APPLICATION_NOT_LOADED = 0x1250005c  #: `%s` no application has this name: the name
    CANNOT_TERMINATE = 0x12500060  #: not terminated
    TARGET_MSG_UNKNOWN_PROCESS = 0x14a00803  #: the target does not know the application
    TARGET_MSG_UNSUPPORTED_PARAMETER = 0x14a00804  #: the target cannot answer for an item or parameter
    TARGET_MSG_UNSUPPORTED_FILE_TYPE = 0x14a01077  #: the target does not know a type of additional files


class PlatformMessageCode(IntEnum):
    DEVICE_UNKNOWN = 0x12600000  #: the device handle names no device
    ACCESS_HANDLE_UNKNOWN = 0x12600001  #: the access-restriction handle names nothing
    FILTER_UNKNOWN = 0x12600002  #: the filter handle names nothing
    PARAMETER_UNKNOWN = 0x12600003  #: `%u` no such parameter of a handle: parameter
    PARAMETER_INDEX_UNKNOWN = 0x12600004  #: `%u%u` no such element: parameter, index
    PARAMETER_SIZE_WRONG = 0x12600005  #: `%u%u` a size does not fit: parameter, bytes needed
    PARAMETER_VALUE_REFUSED = 0x12600006  #: `%u%u` a value is not taken: parameter, value
    PARAMETER_TEXT_BROKEN = 0x12600007  #: `%u` a text is not zero-terminated: parameter
    ADDRESS_MALFORMED = 0x12600008  #: `%s` not an address: the text
    OUT_OF_MEMORY = 0x12600009  #: `%s` no memory: what was to be made
    LEVEL_REFUSED = 0x1260000a  #: `%x%x` an access level is refused: level, application
    FILTER_KIND_UNKNOWN = 0x1260000b  #: `%u` no such kind of filter: kind
    FILTER_INCOMPLETE = 0x1260000c  #: a filter without address
    FILTER_NOT_APPLIED = 0x1260000d  #: a filter that was changed and not applied since
    RPC_CONNECTION_REFUSED = 0x1260000e  #: `%s` the target refuses connections: address
    RPC_HOST_UNREACHABLE = 0x1260000f  #: `%s` the target cannot be reached: address
    RPC_CONNECT_TIMED_OUT = 0x12600010  #: `%s` the target does not answer a connection: address
    RPC_CONNECT_FAILED = 0x12600011  #: `%s%d` no connection: address, error of the system
    RPC_CALL_TIMED_OUT = 0x12600012  #: `%s%u` no answer in time: address, procedure
    RPC_CONNECTION_LOST = 0x12600013  #: `%s%u` the connection was lost: address, procedure
    RPC_REPLY_MALFORMED = 0x12600014  #: `%s%u` a reply that cannot be read: address, procedure
    RPC_CALL_REFUSED = 0x12600015  #: `%s%u%u` a call was refused: address, procedure, RPC status
    RPC_REQUEST_NOT_ENCODED = 0x12600016  #: `%s%u` a request was not encoded: address, procedure
    RPC_PARAMETER_REFUSED = 0x12600017  #: `%s%u%u` a client takes no such value: address, parameter, value
    RPC_CLIENT_UNUSABLE = 0x12600018  #: `%s` a client that cannot be used: address
    TRANSFER_HANDLE_UNKNOWN = 0x12600019  #: the file-transfer handle names nothing
    TRANSFER_SOURCE_UNREADABLE = 0x1260001a  #: `%s` a file cannot be read: path
    TRANSFER_SOURCE_CHANGED = 0x1260001b  #: `%s` a file changed while it was sent: path
    TRANSFER_REFUSED = 0x1260001c  #: `%s%s%d` the target refused a file: address, operation, result
    TRANSFER_DIRECTORY_REFUSED = 0x1260001d  #: `%s%s%d` or a directory: address, directory, result


class Kind(Enum):
    """The types of values."""

    STATE = "state"
    WORD = "word"
    QUAD = "quad"
    REAL = "real"
    TIME = "time"
    SECONDS = "seconds"
    TEXT = "text"
    TEXTS = "texts"
    WORDS = "words"
    QUADS = "quads"


ITEM_KINDS = {
    Item.STATE: Kind.STATE,
    Item.FILE_NAME: Kind.TEXT,
    Item.DIRECTORY: Kind.TEXT,
    Item.FILE_TIME: Kind.TIME,
    Item.DOWNLOAD_TIME: Kind.TIME,
    Item.DOWNLOAD_TIME_TEXT: Kind.TEXT,
    Item.FILE_TIME_TEXT: Kind.TEXT,
    Item.QUAD_8: Kind.QUAD,
    Item.WORD_9: Kind.WORD,
    Item.GROUP_SIZE: Kind.WORD,
    Item.WORDS_11: Kind.WORDS,
    Item.TEXT_12: Kind.TEXT,
    Item.TEXT_13: Kind.TEXT,
    Item.TEXT_14: Kind.TEXT,
    Item.GROUP_SERIAL_NUMBERS: Kind.WORDS,
    Item.GROUP_ADDRESSES: Kind.TEXTS,
    Item.TEXT_17: Kind.TEXT,
    Item.TEXT_18: Kind.TEXT,
    Item.TEXT_19: Kind.TEXT,
    Item.TEXT_20: Kind.TEXT,
    Item.WORD_21: Kind.WORD,
    Item.INFORMATION_TEXT: Kind.TEXT,
    Item.TEXT_128: Kind.TEXT,
    Item.TEXT_1002: Kind.TEXT,
    Item.TEXT_1003: Kind.TEXT,
    Item.QUAD_1004: Kind.QUAD,
    Item.CORES: Kind.WORDS,
    Item.TEXT_1007: Kind.TEXT,
    Item.WORD_1008: Kind.WORD,
    Item.WORD_1009: Kind.WORD,
    Item.TEXT_1011: Kind.TEXT,
    Item.FLASH_VALUES: Kind.QUADS,
    Item.APPLICATION_COUNT: Kind.WORD,
    Item.INITIALISATION_CALLS: Kind.WORD,
    Item.SERIAL_NUMBER: Kind.WORD,
    Item.START_TIME: Kind.TIME,
    Item.PRESENT_TIME: Kind.TIME,
    Item.TEXT_2054: Kind.TEXT,
    Item.COMMAND_TIMEOUT: Kind.SECONDS,
    Item.DOUBLE_3073: Kind.REAL,
    Item.DOUBLE_3074: Kind.REAL,
}


PARAM_KINDS = {
    Param.ARGUMENTS: Kind.TEXTS,
    Param.TEXT_1002: Kind.TEXT,
    Param.TEXT_1003: Kind.TEXT,
    Param.QUAD_1004: Kind.QUAD,
    Param.CORES: Kind.WORDS,
    Param.TEXT_1007: Kind.TEXT,
    Param.WORD_1008: Kind.WORD,
    Param.WORD_1009: Kind.WORD,
    Param.WORD_1010: Kind.WORD,
    Param.TEXT_1011: Kind.TEXT,
    Param.WORD_3072: Kind.WORD,
    Param.DOUBLE_3073: Kind.REAL,
    Param.DOUBLE_3074: Kind.REAL,
    Param.HOST_TIME: Kind.TEXTS,
}
