-- Names what travels between host and target in Wireshark and tshark: the two RPC programs of docs/protocol.md.
-- The tables between the marks are written by scripts/dissector-tables; what reads them stands below. How to use it: README.md
-- beside this file.

-- begin: written by scripts/dissector-tables
local programs = {
    [0x20004B56] = { title = "Application manager", prefix = "", version = 2, procedures = {
        [2] = { name = "set-param", wire = "APPLMAN_SET_PARAM", request = "applman_set_param_request", reply = "applman_result" },
        [3] = { name = "init", wire = "APPLMAN_INIT_APPL", request = "applman_request", reply = "applman_result" },
        [4] = { name = "load", wire = "APPLMAN_LOAD_APPL", request = "applman_request", reply = "applman_result" },
        [5] = { name = "unload", wire = "APPLMAN_UNLOAD_APPL", request = "applman_request", reply = "applman_result" },
        [6] = { name = "start", wire = "APPLMAN_START_APPL", request = "applman_request", reply = "applman_result" },
        [7] = { name = "stop", wire = "APPLMAN_STOP_APPL", request = "applman_request", reply = "applman_result" },
        [8] = { name = "apply", wire = "APPLMAN_APPLY_APPL", request = "applman_request", reply = "applman_result" },
        [9] = { name = "get-command-state", wire = "APPLMAN_GET_COMMAND_STATE", request = "applman_request", reply = "applman_result" },
        [10] = { name = "get-param", wire = "APPLMAN_GET_PARAM", request = "applman_get_param_request", reply = "applman_value_result" },
        [11] = { name = "get-applications", wire = "APPLMAN_GET_APPLICATIONS", request = "applman_get_applications_request", reply = "applman_value_result" },
        [13] = { name = "load-complete", wire = "APPLMAN_LOAD_APPL_COMPLETE", request = "applman_request", reply = "applman_result" },
        [14] = { name = "add-file-2", wire = "APPLMAN_ADD_FILE_2", request = "applman_add_file_request_2", reply = "applman_add_file_result" },
        [15] = { name = "add-file", wire = "APPLMAN_ADD_FILE", request = "applman_add_file_request", reply = "applman_add_file_result" },
        [16] = { name = "get-file-list", wire = "APPLMAN_GET_FILE_LIST", request = "applman_request", reply = "applman_file_list_result" },
        [17] = { name = "open-group", wire = "APPLMAN_OPEN_GROUP", request = "applman_open_group_request", reply = "applman_group_result" },
        [18] = { name = "register", wire = "APPLMAN_REGISTER_APPL", request = "applman_register_request", reply = "applman_register_result" },
        [19] = { name = "get-core-ids", wire = "APPLMAN_GET_CORE_IDS", request = "applman_get_core_ids_request", reply = "applman_core_id_result" },
        [20] = { name = "remove-file", wire = "APPLMAN_REMOVE_FILE", request = "applman_remove_file_request", reply = "applman_result" },
        [22] = { name = "pause", wire = "APPLMAN_PAUSE_APPL", request = "applman_pair_request", reply = "applman_result" },
        [23] = { name = "step", wire = "APPLMAN_STEP_APPL", request = "applman_pair_request", reply = "applman_result" },
        [24] = { name = "get-flash-applications", wire = "APPLMAN_GET_FLASH_APPLICATIONS", request = "applman_get_flash_applications_request", reply = "applman_flash_list_result" },
        [25] = { name = "get-flash-param", wire = "APPLMAN_GET_FLASH_PARAM", request = "applman_get_flash_param_request", reply = "applman_value_result" },
        [26] = { name = "set-flash-param", wire = "APPLMAN_SET_FLASH_PARAM", request = "applman_set_flash_param_request", reply = "applman_result" },
        [27] = { name = "load-flash", wire = "APPLMAN_LOAD_FLASH_APPL", request = "applman_flash_request", reply = "applman_result" },
        [28] = { name = "clear-flash", wire = "APPLMAN_CLEAR_FLASH_APPL", request = "applman_flash_request", reply = "applman_result" },
        [29] = { name = "terminate", wire = "APPLMAN_TERMINATE_APPL", request = "applman_pair_request", reply = "applman_result" },
    } },
    [0x20004B57] = { title = "File transfer", prefix = "file.", version = 1, procedures = {
        [1] = { name = "file.open", wire = "FILE_OPEN", request = "file_open_request", reply = "file_reply" },
        [2] = { name = "file.write", wire = "FILE_WRITE", request = "file_write_request", reply = "file_reply" },
        [3] = { name = "file.commit", wire = "FILE_COMMIT", request = "file_transfer_request", reply = "file_reply" },
        [4] = { name = "file.abort", wire = "FILE_ABORT", request = "file_transfer_request", reply = "file_reply" },
        [5] = { name = "file.make-directory", wire = "FILE_MAKE_DIRECTORY", request = "file_make_directory_request", reply = "file_reply" },
        [6] = { name = "file.set-time", wire = "FILE_SET_TIME", request = "file_set_time_request", reply = "file_reply" },
    } },
}

local records = {
    applman_open_group_request = {
        { "access_id", "uint32" },
    },
    applman_request = {
        { "mode", "uint32" },
        { "access_id", "uint32" },
        { "appl_id", "uint32" },
    },
    applman_pair_request = {
        { "access_id", "uint32" },
        { "appl_id", "uint32" },
    },
    applman_get_applications_request = {
        { "mode", "uint32" },
        { "access_id", "uint32" },
        { "target_state", "uint32" },
    },
    applman_get_core_ids_request = {
        { "access_id", "uint32" },
        { "core_kind", "uint32" },
    },
    applman_get_flash_applications_request = {
        { "access_id", "uint32" },
        { "selection", "uint32" },
    },
    applman_get_param_request = {
        { "mode", "uint32" },
        { "access_id", "uint32" },
        { "appl_id", "uint32" },
        { "target_param_id", "uint32" },
    },
    applman_set_param_request = {
        { "mode", "uint32" },
        { "access_id", "uint32" },
        { "appl_id", "uint32" },
        { "target_param_id", "uint32" },
        { "value", "applman_value" },
    },
    applman_get_flash_param_request = {
        { "access_id", "uint32" },
        { "flash_appl_id", "uint32" },
        { "target_param_id", "uint32" },
    },
    applman_set_flash_param_request = {
        { "access_id", "uint32" },
        { "flash_appl_id", "uint32" },
        { "target_param_id", "uint32" },
        { "value", "applman_value" },
    },
    applman_remove_file_request = {
        { "mode", "uint32" },
        { "access_id", "uint32" },
        { "appl_id", "uint32" },
        { "file_type", "uint32" },
        { "file_name", "text" },
    },
    applman_add_file_request = {
        { "mode", "uint32" },
        { "access_id", "uint32" },
        { "appl_id", "uint32" },
        { "file_type", "uint32" },
        { "source_path", "text" },
        { "target_path", "text" },
        { "target_name", "text" },
        { "file_flags", "uint32" },
    },
    applman_file_record = {
        { "appl_id", "uint32" },
        { "file_type", "uint32" },
        { "source_path", "text" },
        { "target_path", "text" },
        { "target_name", "text" },
        { "file_flags", "uint32" },
        { "additional_text", "text" },
        { "reserved", "uint32", count = 8 },
        { "final_text", "text" },
    },
    applman_add_file_request_2 = {
        { "access_id", "uint32" },
        { "file", "applman_file_record", optional = true },
    },
    applman_group_part = {
        { "word_0", "uint32" },
        { "target_group_id_1", "uint32" },
        { "target_group_id_2", "uint32" },
        { "appl_count", "uint32" },
        { "word_4", "uint32" },
        { "reserved", "uint32", count = 7 },
        { "list", "uint32", list = true },
    },
    applman_register_request = {
        { "access_id", "uint32" },
        { "appl_no", "uint32" },
        { "group", "applman_group_part" },
    },
    applman_flash_command = {
        { "command", "uint32" },
        { "flash_appl_id", "int64" },
        { "reserved", "uint32", count = 16 },
        { "data", "int32", list = true },
    },
    applman_flash_request = {
        { "access_id", "uint32" },
        { "command", "applman_flash_command" },
    },
    applman_result = {
        { "result", "int32" },
        { "error_list", "bytes" },
    },
    applman_value_result = {
        { "result", "int32" },
        { "value", "applman_value" },
        { "error_list", "bytes" },
    },
    applman_register_result = {
        { "result", "int32" },
        { "appl_id", "int32" },
        { "first_text", "text" },
        { "second_text", "text" },
        { "error_list", "bytes" },
    },
    applman_file_entry = {
        { "entry_text_1", "text" },
        { "entry_text_2", "text" },
        { "entry_text_3", "text" },
        { "entry_word", "uint32" },
    },
    applman_file_list_result = {
        { "result", "int32" },
        { "error_code", "int32" },
        { "files", "applman_file_entry", list = true },
        { "error_list", "bytes" },
    },
    applman_add_file_result = {
        { "result", "int32" },
        { "target_path", "text" },
        { "error_list", "bytes" },
        { "target_name", "text" },
    },
    applman_group_result = {
        { "first", "uint32" },
        { "result", "int32" },
        { "error_list", "bytes" },
        { "target_group_id_1", "uint32" },
        { "target_group_id_2", "uint32" },
    },
    applman_core_id_result = {
        { "first", "uint32" },
        { "result", "int32" },
        { "error_list", "bytes" },
        { "core_ids", "uint32", list = true },
    },
    applman_flash_list_result = {
        { "first", "uint32" },
        { "result", "int32" },
        { "error_list", "bytes" },
        { "flash_appl_ids", "uint32", list = true },
        { "words", "uint32", count = 16 },
        { "second_list", "uint32", list = true },
    },
    file_open_request = {
        { "transfer", "uint32" },
        { "size", "uint64" },
        { "directory", "text" },
        { "name", "text" },
    },
    file_write_request = {
        { "transfer", "uint32" },
        { "offset", "uint64" },
        { "bytes", "bytes" },
    },
    file_transfer_request = {
        { "transfer", "uint32" },
    },
    file_make_directory_request = {
        { "base", "text" },
        { "name", "text" },
    },
    file_set_time_request = {
        { "local_time", "text" },
    },
    file_reply = {
        { "result", "int32" },
    },
}

local unions = {
    applman_value = {
        [0] = { "word", "uint32" },
        [1] = { "real", "double" },
        [2] = { "text", "text" },
        [3] = { "words", "uint32", list = true },
        [4] = { "quad", "int64" },
        [5] = { "texts", "text", list = true },
        [6] = { "bytes", "bytes" },
        [7] = { "quads", "int64", list = true },
    },
}

local parameterNames = {
    [1] = "word_21, item 21",
    [3] = "target_file_name",
    [4] = "target_directory",
    [5] = "file_name, item 2",
    [6] = "directory, item 3",
    [7] = "file_time, item 4",
    [8] = "text_1007, item and param 1007",
    [10] = "download_option",
    [11] = "state, item 0",
    [12] = "download_time, item 5",
    [13] = "arguments, param 1001",
    [14] = "text_1003, item and param 1003",
    [15] = "text_1002, item and param 1002",
    [16] = "quad_1004, item and param 1004",
    [17] = "cores, item and param 1005",
    [18] = "quad_8, item 8",
    [19] = "word_9, item 9",
    [20] = "group_size, item 10",
    [21] = "words_11, item 11",
    [23] = "word_1008, item and param 1008",
    [24] = "word_1009, item and param 1009",
    [25] = "text_12, item 12",
    [26] = "text_13, item 13",
    [27] = "text_14, item 14",
    [28] = "word_1010, param 1010",
    [29] = "group_serial_numbers, item 15",
    [30] = "group_addresses, item 16",
    [31] = "initialisation_calls, item 2050",
    [32] = "text_17, item 17",
    [33] = "download_time_text, item 6",
    [34] = "file_time_text, item 7",
    [35] = "text_128, item 128",
    [36] = "text_18, item 18",
    [37] = "serial_number, item 2051",
    [38] = "text_19, item 19",
    [39] = "text_20, item 20",
    [40] = "command_timeout, item 2055",
    [41] = "information_text, item 22",
    [42] = "text_1011, item and param 1011",
    [43] = "host_time, param 3075",
    [64] = "flash_values, item 1200",
    [131] = "double_3074, item and param 3074",
    [134] = "double_3073, item and param 3073",
    [1024] = "word_3072, param 3072",
    [1025] = "application_count, item 2049",
    [1026] = "start_time, item 2052",
    [1027] = "present_time, item 2053",
    [1028] = "text_2054, item 2054",
}

local timeParameters = {
    [7] = true,
    [12] = true,
    [1026] = true,
    [1027] = true,
}

local stateParameter = 11

local stateNames = {
    [0] = "registered",
    [1] = "loaded",
    [2] = "ready",
    [3] = "running",
    [4] = "any",
    [5] = "paused",
    [6] = "stopped",
}

local coreKindNames = {
    [1] = "all",
    [2] = "free",
}

local fileResultNames = {
    [0] = "done",
    [-1] = "bad name",
    [-2] = "no such transfer",
    [-3] = "bad offset",
    [-4] = "incomplete",
    [-5] = "store failed",
    [-6] = "earlier failure",
}

local messageTexts = {
    [0x14a00801] = "Command refused. The command '%1' is not allowed in the present state of the application. Affected application: 0x%2. State on target system: %3.",
    [0x14a00802] = "Command refused. The command '%1' cannot begin while another command of the application is under way. Affected application: 0x%2.",
    [0x14a00803] = "The target system does not know the application. Maybe it was unloaded, or the target system was restarted since its registration. Affected application: 0x%1.",
    [0x14a00804] = "The target system cannot answer for the parameter. Parameter: %1. Affected application: 0x%2.",
    [0x14a00805] = "Invalid parameter value. The value has another type than the parameter. Parameter: %1. Type of the parameter: %2. Type of the value: %3.",
    [0x14a00806] = "The parameter is read-only. Parameter: %1.",
    [0x14a00807] = "Registration refused. Make sure that the application number is in the range from 1 to the size of the application group. Application number: %1. Size of the application group: %2.",
    [0x14a00808] = "Registration refused. The application group has an application of this number already. Application number: %1. Application that has it: 0x%2.",
    [0x14a00809] = "Registration refused. The target system has given this identity to no application group. Maybe it was restarted since. Identity: %1, %2.",
    [0x14a0080a] = "Registration refused. The target system knows the application group with another size. Given size: %1. Known size: %2.",
    [0x14a0080b] = "Load application failed. The application binary was not found on the target system. Target path: '%1/%2'.",
    [0x14a0080c] = "Apply refused. Not all initialization calls were made. Affected application: 0x%1. Initialization calls: %2 of %3.",
    [0x14a0080d] = "The limit of the target system is reached. Maximum: %1.",
    [0x14a0080e] = "There is no such application state. State: %1.",
    [0x14a0080f] = "The target system cannot store a file of this name. Target path: '%1/%2'.",
    [0x14a00810] = "Remove file failed. No such file is registered. File name: '%1'. File type: %2.",
    [0x14a00811] = "Remove file failed. The target system cannot remove the file. Target path: '%1/%2'.",
    [0x14a00812] = "There is no such application in the flash memory. Flash application: %1.",
    [0x14a00813] = "There is no such kind of processor cores. Kind: %1.",
    [0x14a00814] = "The program of application 0x%1 has ended by itself: %2.",
    [0x14a00815] = "Start application failed. The program of application 0x%1 cannot be executed: %2.",
    [0x14a00816] = "Load application failed. The file '%1/%2' is no program that the target system could run: %3.",
    [0x14a00817] = "Programs on the target system cannot run on core %1. Number of cores: %2.",
    [0x14a01077] = "The target system does not support files of this type. File type: %1.",
}
-- end: written by scripts/dissector-tables

local largestRecord = 256 * 1024 * 1024 -- bytes; what announces more is no record
local mostElements = 1000               -- of an array that are shown
local lastFragment = 0x80000000         -- flag in a record mark

local applman = Proto("applman", "Application Manager")
applman.prefs.ports = Pref.range("TCP ports", "",
    "Ports whose connections are taken for a target's from their first byte on. Others are recognised by a first call.", 65535)
local streamField = Field.new("tcp.stream")

-- Fields. Those of records are named after the member: applman.appl_id, applman.value.text, applman.file.transfer.

local fields = {}

local labels = {
    access_id = "Access", appl_id = "Application", appl_no = "Application number", appl_count = "Applications",
    core_ids = "Core", entry_text_1 = "First text", entry_text_2 = "Second text", entry_text_3 = "Third text",
    flash_appl_id = "Flash application", flash_appl_ids = "Flash application", real = "Double",
    target_group_id_1 = "Group identity, first word", target_group_id_2 = "Group identity, second word",
    target_param_id = "Parameter",
}
local valueNames = {
    ["applman.target_param_id"] = parameterNames,
    ["applman.target_state"] = stateNames,
    ["applman.core_kind"] = coreKindNames,
}

local function labelOf(name)
    local words = name:gsub("_", " ")
    return labels[name] or words:sub(1, 1):upper() .. words:sub(2)
end

local makers = {
    uint32 = function(...) return ProtoField.uint32(...) end,
    int32 = function(...) return ProtoField.int32(...) end,
    uint64 = function(...) return ProtoField.uint64(...) end,
    int64 = function(...) return ProtoField.int64(...) end,
    double = function(abbreviation, label) return ProtoField.double(abbreviation, label) end,
    text = function(abbreviation, label) return ProtoField.string(abbreviation, label) end,
    bytes = function(abbreviation, label) return ProtoField.bytes(abbreviation, label) end,
}

-- One field for what has another width or sign from record to record.
local commonKinds = { ["applman.appl_id"] = "uint32", ["applman.flash_appl_id"] = "uint64" }

local kinds = {}
local function declare(abbreviation, kind, label, names, display)
    kind = commonKinds[abbreviation] or kind
    assert(kinds[abbreviation] == nil or kinds[abbreviation] == kind, abbreviation .. " is of two kinds")
    kinds[abbreviation] = kind
    fields[abbreviation] = fields[abbreviation] or makers[kind](abbreviation, label, display or base.DEC, names)
end

-- The members of a union belong to the field that it is: applman.value.word.
local function prefixOf(record)
    if unions[record] then return record:gsub("_", ".") .. "." end
    return record:match("^file_") and "applman.file." or "applman."
end

local function declareMembers(record, members)
    for _, member in pairs(members) do
        local abbreviation = prefixOf(record) .. member[1]
        if makers[member[2]] then declare(abbreviation, member[2], labelOf(member[1]), valueNames[abbreviation]) end
    end
end
for record, members in pairs(records) do declareMembers(record, members) end
for record, members in pairs(unions) do declareMembers(record, members) end

local typeNames = { [0] = "call", [1] = "reply" }
local acceptNames = { [0] = "success", [1] = "program unavailable", [2] = "program version unavailable",
                      [3] = "procedure unavailable", [4] = "garbage arguments", [5] = "system error" }
local rejectNames = { [0] = "RPC version not supported", [1] = "authentication error" }
local tagNames, programNames = {}, {}
for tag, arm in pairs(unions.applman_value) do tagNames[tag] = arm[1] end
for number, program in pairs(programs) do
    programNames[number] = program.title
    program.procedures[0] = { name = program.prefix .. "null", wire = "NULL" }
end

for abbreviation, row in pairs {
    fragment = { "uint32", "Fragment length" },
    xid = { "uint32", "Transaction ID", nil, base.HEX },
    type = { "uint32", "Message", typeNames },
    rpc_version = { "uint32", "RPC version" },
    program = { "uint32", "Program", programNames, base.HEX },
    version = { "uint32", "Version of the program" },
    procedure = { "uint32", "Procedure" },
    name = { "text", "Name" },
    credential = { "uint32", "Credential, flavour" },
    verifier = { "uint32", "Verifier, flavour" },
    authentication = { "bytes", "Authentication" },
    reply_status = { "uint32", "Reply status", { [0] = "accepted", [1] = "denied" } },
    accept_status = { "uint32", "Accept status", acceptNames },
    reject_status = { "uint32", "Reject status", rejectNames },
    authentication_status = { "uint32", "Authentication status" },
    lowest_version = { "uint32", "Lowest version" },
    highest_version = { "uint32", "Highest version" },
    rest = { "bytes", "Further bytes" },
    ["value.tag"] = { "uint32", "Type", tagNames },
    ["message.code"] = { "uint32", "Code", nil, base.HEX },
    ["message.line"] = { "uint32", "Line" },
    ["message.operation"] = { "text", "Operation" },
    ["message.signature"] = { "text", "Signature" },
    ["message.argument"] = { "text", "Argument" },
    ["message.text"] = { "text", "Text" },
} do
    declare("applman." .. abbreviation, row[1], row[2], row[3], row[4])
end
fields["applman.reply_in"] = ProtoField.framenum("applman.reply_in", "Reply in", base.NONE, frametype.RESPONSE)
fields["applman.call_in"] = ProtoField.framenum("applman.call_in", "Call in", base.NONE, frametype.REQUEST)
fields["applman.time"] = ProtoField.relative_time("applman.time", "Time since the call")
applman.fields = fields

local experts = {
    malformed = ProtoExpert.new("applman.malformed", "Malformed record", expert.group.MALFORMED, expert.severity.ERROR),
    notCaptured = ProtoExpert.new("applman.not_captured", "The capture does not hold the whole record",
        expert.group.UNDECODED, expert.severity.NOTE),
    badList = ProtoExpert.new("applman.bad_list", "The bytes are not one error list; a host takes no message of it",
        expert.group.MALFORMED, expert.severity.WARN),
    refused = ProtoExpert.new("applman.refused", "Refused or failed", expert.group.RESPONSE_CODE, expert.severity.NOTE),
    repeated = ProtoExpert.new("applman.repeated", "The call was answered before", expert.group.SEQUENCE,
        expert.severity.WARN),
    unasked = ProtoExpert.new("applman.unasked", "The capture holds no call with this transaction ID",
        expert.group.SEQUENCE, expert.severity.NOTE),
    trailing = ProtoExpert.new("applman.trailing", "Bytes behind the record, which are ignored", expert.group.PROTOCOL,
        expert.severity.NOTE),
}
applman.experts = experts

-- Reading. A cursor goes over one record; what the record does not hold ends its decoding with this error.

local beyondTheRecord = {}

local function cursorOver(tvb)
    return { tvb = tvb, at = 0, stop = tvb:captured_len(), said = {} }
end

local function left(cursor) return cursor.stop - cursor.at end

local function take(cursor, count)
    if count > left(cursor) then error(beyondTheRecord) end
    local range = cursor.tvb:range(cursor.at, count)
    cursor.at = cursor.at + count
    return range
end

local function takeWord(cursor) return take(cursor, 4):uint() end

local function add(tree, abbreviation, ...) return tree and tree:add(fields[abbreviation], ...) end

-- UTF-8 that can be shown: of what is none, and of control characters, the bytes in hexadecimal digits.
local characters = {
    "^[\32-\126]+", "^[\194-\223][\128-\191]", "^\224[\160-\191][\128-\191]", "^[\225-\236\238\239][\128-\191][\128-\191]",
    "^\237[\128-\159][\128-\191]", "^\240[\144-\191][\128-\191][\128-\191]",
    "^[\241-\243][\128-\191][\128-\191][\128-\191]", "^\244[\128-\143][\128-\191][\128-\191]",
}

local function lengthOfCharacters(text, at)
    for _, pattern in ipairs(characters) do
        local _, last = text:find(pattern, at)
        if last then return last - at + 1 end
    end
    return 0
end

local function readable(range)
    local text = range and range:raw() or ""
    local parts, at = {}, 1
    while at <= #text do
        local length = lengthOfCharacters(text, at)
        table.insert(parts, length > 0 and text:sub(at, at + length - 1) or string.format("\\x%02x", text:byte(at)))
        at = at + math.max(length, 1)
    end
    return table.concat(parts)
end

local function addWord(cursor, tree, abbreviation)
    local range = take(cursor, 4)
    local item = add(tree, abbreviation, range)
    return range:uint(), item
end

-- Counted bytes and their padding. None for no bytes.
local function takeBytes(cursor)
    local length = takeWord(cursor)
    if length == 0 then return nil end
    local range = take(cursor, length)
    take(cursor, (4 - length % 4) % 4)
    return range
end

local scalars = {
    uint32 = { 4, function(range) return range:uint() end },
    int32 = { 4, function(range) return range:int() end },
    uint64 = { 8, function(range) return range:uint64() end },
    int64 = { 8, function(range) return range:int64() end },
    double = { 8, function(range) return range:float() end },
}

local decodeRecord, decodeUnion, decodeErrorList

local function decodeText(cursor, tree, abbreviation)
    local from = cursor.at
    local range = takeBytes(cursor)
    local text = readable(range)
    add(tree, abbreviation, range or cursor.tvb:range(from, 4), text)
    return text
end

local function decodeBytes(cursor, tree, abbreviation)
    local from = cursor.at
    local range = takeBytes(cursor)
    if abbreviation == "applman.error_list" then
        decodeErrorList(cursor, tree, range)
    elseif range then
        add(tree, abbreviation, range)
    elseif tree then
        tree:add(cursor.tvb:range(from, 4), labelOf(abbreviation:match("[^.]*$")) .. ": none")
    end
    return range and range:len() .. " bytes" or "no bytes"
end

-- One element of a member: its value, for the summary.
local function decodeOne(cursor, tree, kind, abbreviation)
    local scalar = scalars[kind]
    if scalar then
        local range = take(cursor, scalar[1])
        local item = add(tree, abbreviation, range)
        return scalar[2](range), item
    end
    if kind == "text" then return decodeText(cursor, tree, abbreviation) end
    if kind == "bytes" then return decodeBytes(cursor, tree, abbreviation) end
    if unions[kind] then return decodeUnion(cursor, tree, kind) end
    local from = cursor.at
    if left(cursor) < 4 then error(beyondTheRecord) end -- every record takes 4 bytes or more
    local branch = tree and tree:add(cursor.tvb:range(from, 4), labelOf(abbreviation:match("[^.]*$")))
    decodeRecord(cursor, branch, kind)
    if branch then branch:set_len(cursor.at - from) end
end

local function passOver(cursor, kind, abbreviation, count)
    if scalars[kind] then return take(cursor, count * scalars[kind][1]) end
    for _ = 1, count do decodeOne(cursor, nil, kind, abbreviation) end
end

local function decodeArray(cursor, tree, member, abbreviation)
    local from = cursor.at
    local count = member.count or takeWord(cursor)
    if count > left(cursor) / 4 then error(beyondTheRecord) end -- every element takes 4 bytes or more
    local branch = tree and tree:add(cursor.tvb:range(math.min(from, cursor.stop - 4), 4), labelOf(member[1]) .. " (" .. count .. ")")
    local values = {}
    local shown = math.min(count, mostElements)
    for at = 1, shown do
        local value = decodeOne(cursor, branch, member[2], abbreviation)
        values[at] = value and tostring(value)
    end
    passOver(cursor, member[2], abbreviation, count - shown)
    if branch then branch:set_len(cursor.at - from) end
    if branch and count > shown then branch:append_text(", of which " .. shown .. " are shown") end
    if records[member[2]] then return count end
    return "[" .. table.concat(values, " ", 1, math.min(#values, 8)) .. (#values > 8 and " ..." or "") .. "]"
end

local function decodeMember(cursor, tree, record, member)
    local abbreviation = prefixOf(record) .. member[1]
    if member.list or member.count then return decodeArray(cursor, tree, member, abbreviation) end
    if member.optional and addWord(cursor, nil) == 0 then
        if tree then tree:add(cursor.tvb:range(cursor.at - 4, 4), labelOf(member[1]) .. ": none") end
        return nil
    end
    return decodeOne(cursor, tree, member[2], abbreviation)
end

-- What the columns tell of a record besides its name: members, and how they are introduced.
local told = {
    appl_id = "application", appl_no = "number", appl_count = "of", target_param_id = "parameter", target_state = "state",
    core_kind = "kind", flash_appl_id = "flash application", file_name = "", source_path = "", transfer = "transfer",
    size = "size", offset = "offset", directory = "in", name = "", base = "in", local_time = "", value = "", core_ids = "",
    flash_appl_ids = "", files = "files", target_path = "", target_name = "", bytes = "",
}

local function resultMeaning(call, result)
    if call.name:match("^file%.") then return fileResultNames[result] end
    if call.name == "get-command-state" then return ({ [0] = "finished", [2] = "busy" })[result] or "failed" end
    return ({ [0] = "done", [-1] = "refused" })[result]
end

local function failed(call, result)
    local busy = call.name == "get-command-state" and result == 2
    return result and result ~= 0 and not busy
end

-- None for a time that the system has no date for.
local function dateOf(seconds)
    local known, text = pcall(os.date, "!%Y-%m-%d %H:%M:%S UTC", seconds)
    return known and text or nil
end

-- Where the meaning of a number hangs on the call: a result, and the value of a parameter.
local function meaningOf(cursor, name, value)
    if name == "result" then return resultMeaning(cursor.call, value) end
    if name == "word" and cursor.parameter == stateParameter then return stateNames[value] end
    if name == "quad" and timeParameters[cursor.parameter] then
        return dateOf(value:tonumber())
    end
end

local function tell(cursor, abbreviation, name, value)
    if name == "target_param_id" then cursor.parameter = value end
    if told[name] == nil or value == nil or value == "" then return end
    local names = valueNames[abbreviation]
    local meaning = names and names[value]
    table.insert(cursor.said, told[name] .. (told[name] == "" and "" or " ") .. tostring(value) ..
        (meaning and " (" .. meaning:match("^[^,]*") .. ")" or ""))
end

function decodeRecord(cursor, tree, record)
    for _, member in ipairs(records[record]) do
        local value, item = decodeMember(cursor, tree, record, member)
        local meaning = meaningOf(cursor, member[1], value)
        if meaning and item then item:append_text(" (" .. meaning .. ")") end
        if member[1] == "result" then cursor.result, cursor.meaning = value, meaning or "result " .. value end
        tell(cursor, prefixOf(record) .. member[1], member[1], value)
    end
end

function decodeUnion(cursor, tree, union)
    local from = cursor.at
    local tag = takeWord(cursor)
    local arm = unions[union][tag]
    local branch = tree:add(cursor.tvb:range(from, 4), "Value")
    branch:add(fields["applman.value.tag"], cursor.tvb:range(from, 4))
    if not arm then error(beyondTheRecord) end
    local value, item = decodeMember(cursor, branch, union, arm)
    local meaning = meaningOf(cursor, arm[1], value)
    if meaning and item then item:append_text(" (" .. meaning .. ")") end
    branch:set_len(cursor.at - from)
    branch:append_text(": " .. tostring(value) .. (meaning and " (" .. meaning .. ")" or ""))
    return meaning or tostring(value)
end

-- The text of a message, with its arguments in their places.
local function rendered(code, arguments)
    local text = messageTexts[code]
    return text and text:gsub("%%(%d)", function(place) return arguments[tonumber(place)] end)
end

local conversions = {
    s = function(cursor) return takeBytes(cursor) end,
    d = function(cursor) return take(cursor, 4) end,
}
conversions.u, conversions.x = conversions.d, conversions.d

local function argumentText(letter, range)
    if letter == "s" then return readable(range) end
    if letter == "x" then return string.format("%x", range:uint()) end
    return tostring(letter == "d" and range:int() or range:uint())
end

local function decodeMessage(cursor, tree)
    local from = cursor.at
    if left(cursor) < 4 then error(beyondTheRecord) end
    local branch = tree:add(cursor.tvb:range(from, 4), "Message")
    local code = addWord(cursor, branch, "applman.message.code")
    addWord(cursor, branch, "applman.message.line")
    decodeText(cursor, branch, "applman.message.operation")
    local signature = decodeText(cursor, branch, "applman.message.signature")
    if signature:gsub("%%[sudx]", "") ~= "" then error(beyondTheRecord) end
    local arguments = {}
    for letter in signature:gmatch("%%(%a)") do
        local at = cursor.at
        local range = conversions[letter](cursor)
        table.insert(arguments, argumentText(letter, range))
        add(branch, "applman.message.argument", range or cursor.tvb:range(at, 4), arguments[#arguments])
    end
    local text = rendered(code, arguments)
    branch:set_len(cursor.at - from)
    branch:append_text(string.format(": 0x%08x ", code) .. (text or table.concat(arguments, ", ")))
    if text then add(branch, "applman.message.text", cursor.tvb:range(from, cursor.at - from), text):set_generated() end
    return string.format("0x%08x", code) .. (text and " " .. text or "")
end

-- Bytes that are one whole list of messages, or none at all.
function decodeErrorList(cursor, tree, range)
    local place = range or cursor.tvb:range(cursor.at - 4, 4)
    local branch = tree:add(place, "Error list" .. (range and "" or ": none"))
    if not range then return end
    local list = cursorOver(range:tvb())
    local first = nil
    local whole, failure = pcall(function()
        local count = takeWord(list)
        branch:append_text(": " .. count)
        for _ = 1, count do
            local message = decodeMessage(list, branch)
            first = first or message
        end
        if left(list) > 0 then error(beyondTheRecord) end
    end)
    if whole then
        cursor.message = first
        return
    end
    if failure ~= beyondTheRecord then error(failure, 0) end
    branch:add_proto_expert_info(experts.badList)
end

-- Calls by the TCP stream and the transaction ID, in the order of their frames. A number may be used anew.

local calls = {}
function applman.init() calls = {} end

local function callsOf(stream, xid)
    local ofStream = calls[stream] or {}
    calls[stream] = ofStream
    ofStream[xid] = ofStream[xid] or {}
    return ofStream[xid]
end

local function remember(call)
    local known = callsOf(call.stream, call.xid)
    for _, earlier in ipairs(known) do
        if earlier.frame == call.frame then return earlier end
    end
    table.insert(known, call)
    return call
end

local function callFor(stream, xid, frame)
    local found = nil
    for _, call in ipairs(callsOf(stream, xid)) do
        if call.frame <= frame then found = call end
    end
    return found
end

-- Heads of RPC messages (RFC 5531)

local function addAuthentication(cursor, tree, abbreviation)
    addWord(cursor, tree, abbreviation)
    local range = takeBytes(cursor)
    if range then add(tree, "applman.authentication", range) end
end

local function addName(tree, range, call)
    add(tree, "applman.name", range, call.name):set_generated()
end

-- As the log of the simulated target names a procedure.
local function nameOf(program, programNumber, number)
    local procedure = program and program.procedures[number]
    if procedure then return procedure.name end
    return (program and program.prefix or programNumber .. ".") .. number
end

local function decodeCall(cursor, tree, at)
    addWord(cursor, tree, "applman.rpc_version")
    local call = { stream = at.stream, xid = at.xid, frame = at.frame, time = at.time }
    call.program = addWord(cursor, tree, "applman.program")
    call.version = addWord(cursor, tree, "applman.version")
    local number, item = addWord(cursor, tree, "applman.procedure")
    local program = programs[call.program]
    call.procedure = program and program.version == call.version and program.procedures[number] or nil
    call.name = nameOf(program, call.program, number)
    addName(tree, cursor.tvb:range(cursor.at - 4, 4), call)
    if call.procedure then item:append_text(" (" .. call.procedure.wire .. ")") end
    addAuthentication(cursor, tree, "applman.credential")
    addAuthentication(cursor, tree, "applman.verifier")
    call = remember(call)
    cursor.call = call
    if call.answered then add(tree, "applman.reply_in", call.answered.frame):set_generated() end
    cursor.title = "Call " .. call.name
    if call.procedure and call.procedure.request then decodeRecord(cursor, tree, call.procedure.request) end
    call.parameter = cursor.parameter
    return call.procedure ~= nil
end

local function addCall(cursor, tree, at)
    local call = callFor(at.stream, at.xid, at.frame)
    local place = cursor.tvb:range(0, 4)
    if not call then
        tree:add_proto_expert_info(experts.unasked)
        return { name = "to an unknown call" }
    end
    addName(tree, place, call)
    add(tree, "applman.call_in", place, call.frame):set_generated()
    local seconds = at.time - call.time
    add(tree, "applman.time", place, NSTime.new(math.floor(seconds), math.floor(seconds % 1 * 1e9 + 0.5))):set_generated()
    call.answered = call.answered or at
    if call.answered.frame ~= at.frame or call.answered.place ~= at.place then tree:add_proto_expert_info(experts.repeated) end
    return call
end

local function decodeDenial(cursor, tree)
    local reason = addWord(cursor, tree, "applman.reject_status")
    table.insert(cursor.said, rejectNames[reason] or "denied")
    if reason ~= 0 then return addWord(cursor, tree, "applman.authentication_status") end
    addWord(cursor, tree, "applman.lowest_version")
    addWord(cursor, tree, "applman.highest_version")
end

local function decodeReply(cursor, tree, at)
    local call = addCall(cursor, tree, at)
    cursor.call, cursor.parameter = call, call.parameter
    cursor.title = "Reply " .. call.name
    if addWord(cursor, tree, "applman.reply_status") ~= 0 then
        decodeDenial(cursor, tree)
        return true
    end
    addAuthentication(cursor, tree, "applman.verifier")
    local status = addWord(cursor, tree, "applman.accept_status")
    if status == 2 then
        addWord(cursor, tree, "applman.lowest_version")
        addWord(cursor, tree, "applman.highest_version")
    end
    if status ~= 0 then
        table.insert(cursor.said, acceptNames[status] or "accept status " .. status)
        return true
    end
    if call.procedure and call.procedure.reply then decodeRecord(cursor, tree, call.procedure.reply) end
    if failed(call, cursor.result) then tree:add_proto_expert_info(experts.refused) end
    return call.procedure ~= nil
end

-- What is behind a record, or what nobody can name.
local function addRest(cursor, tree, named)
    if left(cursor) == 0 then return end
    local item = add(tree, "applman.rest", take(cursor, left(cursor)))
    if named then item:add_proto_expert_info(experts.trailing) end
end

local function decodeMessageOfRpc(cursor, tree, at)
    at.xid = addWord(cursor, tree, "applman.xid")
    local kind = addWord(cursor, tree, "applman.type")
    cursor.title = typeNames[kind] or "Message of type " .. kind
    if not typeNames[kind] then error(beyondTheRecord) end
    local named = (kind == 0 and decodeCall or decodeReply)(cursor, tree, at)
    addRest(cursor, tree, named)
end

-- Columns and tree of one record

local function summaryOf(cursor)
    local parts = { cursor.title or "Record" }
    if cursor.meaning then table.insert(parts, cursor.meaning) end
    for _, part in ipairs(cursor.said) do table.insert(parts, part) end
    if cursor.message then table.insert(parts, cursor.message) end
    if cursor.fault then table.insert(parts, "[" .. cursor.fault .. "]") end
    return table.concat(parts, "  ")
end

local function showInColumns(pinfo, summary)
    local begun = pinfo.private["applman"]
    pinfo.cols.protocol = "APPLMAN"
    pinfo.cols.info:set((begun and " | " or "") .. summary)
    pinfo.cols.info:fence()
    pinfo.private["applman"] = "begun"
end

local function showRecord(record, tvb, pinfo, tree)
    local branch = tree:add(applman, tvb:range(record.from, record.stop - record.from))
    for _, fragment in ipairs(record.fragments) do
        add(branch, "applman.fragment", tvb:range(fragment.at - 4, 4), fragment.length)
    end
    local cursor = cursorOver(record.tvb)
    local at = { stream = record.stream, frame = pinfo.number, place = record.from, time = pinfo.rel_ts }
    local whole, failure = pcall(decodeMessageOfRpc, cursor, branch, at)
    if not whole and failure ~= beyondTheRecord then error(failure, 0) end
    if not whole or record.partial then
        cursor.fault = record.partial and "not captured" or "malformed"
        branch:add_proto_expert_info(record.partial and experts.notCaptured or experts.malformed)
    end
    local summary = summaryOf(cursor)
    branch:append_text(", " .. summary)
    showInColumns(pinfo, summary)
end

-- Record marking

local function plausibleHead(tvb, at)
    if tvb:captured_len() - at < 12 or tvb:range(at, 4):uint() % lastFragment < 8 then return true end
    return tvb:range(at + 8, 4):uint() <= 1
end

local function contentOf(tvb, fragments)
    if #fragments == 1 and fragments[1].held > 0 then return tvb:range(fragments[1].at, fragments[1].held):tvb() end
    local bytes = ByteArray.new()
    for _, fragment in ipairs(fragments) do
        if fragment.held > 0 then bytes:append(tvb:range(fragment.at, fragment.held):bytes()) end
    end
    return bytes:len() > 0 and bytes:tvb("Record of " .. #fragments .. " fragments") or nil
end

-- The record that begins at a place: as much of it as there is, and how many bytes of it are missing. That is known in the
-- last fragment only; asking for fewer would keep the record back until the segment after the one that completes it.
local function findRecord(tvb, from)
    local record = { from = from, stop = from, fragments = {}, size = 0 }
    local total = tvb:captured_len()
    local last = false
    while not last do
        if total - record.stop < 4 then return record, DESEGMENT_ONE_MORE_SEGMENT end
        local mark = tvb:range(record.stop, 4):uint()
        local fragment = { at = record.stop + 4, length = mark % lastFragment }
        fragment.held = math.min(fragment.length, total - fragment.at)
        last = mark >= lastFragment
        record.size = record.size + fragment.length
        record.stop = fragment.at + fragment.held
        table.insert(record.fragments, fragment)
        if record.size > largestRecord then return record, 0 end
        if fragment.held < fragment.length then
            return record, last and fragment.length - fragment.held or DESEGMENT_ONE_MORE_SEGMENT
        end
    end
    return record, 0
end

local function showOversized(record, tvb, pinfo, tree)
    local branch = tree:add(applman, tvb:range(record.from), ", a record mark beyond 256 MiB")
    add(branch, "applman.fragment", tvb:range(record.from, 4), record.size)
    branch:add_proto_expert_info(experts.malformed)
    showInColumns(pinfo, "Record mark beyond 256 MiB [malformed]")
end

-- How many bytes were taken; 0 when they are none of ours. A record that is not whole waits for its rest where TCP can.
local function dissect(tvb, pinfo, tree, mayWait)
    local total = tvb:captured_len()
    mayWait = mayWait and total == tvb:reported_len()
    local streams = { streamField() }
    local at = 0
    while at < total and plausibleHead(tvb, at) do
        local record, missing = findRecord(tvb, at)
        if record.size > largestRecord then
            showOversized(record, tvb, pinfo, tree)
            return total
        end
        if missing ~= 0 and mayWait then
            pinfo.desegment_offset = at
            pinfo.desegment_len = missing
            return total
        end
        record.partial = missing ~= 0
        record.tvb = contentOf(tvb, record.fragments)
        record.stream = streams[#streams].value
        if record.partial then record.stop = total end
        if record.tvb then showRecord(record, tvb, pinfo, tree) end
        at = record.stop
    end
    return at
end

function applman.dissector(tvb, pinfo, tree) return dissect(tvb, pinfo, tree, pinfo.can_desegment > 0) end

-- Recognised by a first call, at the begin of a segment; then all of the connection is ours. Whether TCP can wait is not to
-- be seen from here; it mostly can.
local function recognise(tvb, pinfo, tree)
    if tvb:captured_len() < 28 or tvb:range(8, 4):uint() ~= 0 or tvb:range(12, 4):uint() ~= 2 then return false end
    if not programs[tvb:range(16, 4):uint()] then return false end
    pinfo.conversation = applman
    return dissect(tvb, pinfo, tree, true) > 0
end

local tcpPorts = DissectorTable.get("tcp.port")
local portsInUse = ""
function applman.prefs_changed()
    if portsInUse == applman.prefs.ports then return end
    if portsInUse ~= "" then tcpPorts:remove(portsInUse, applman) end
    portsInUse = applman.prefs.ports
    if portsInUse ~= "" then tcpPorts:add(portsInUse, applman) end
end

tcpPorts:add_for_decode_as(applman)
applman:register_heuristic("tcp", recognise)
