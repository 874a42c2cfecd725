/// @file
/// Information items, parameters and states with their C++ types. C++17, header only; a part of KvApplMan.hpp.
///
/// What each item and parameter means, KvApplManConstants.h says beside the constant of the same name.
#ifndef KV_APPL_MAN_ITEMS_HPP
#define KV_APPL_MAN_ITEMS_HPP

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "KvApplManConstants.h"

namespace kvapplman {

/// Numbers of the information items: KV_APPLMAN_ITEM_...
enum class Item : std::uint32_t {
    state = KV_APPLMAN_ITEM_STATE,
    fileName = KV_APPLMAN_ITEM_FILE_NAME,
    directory = KV_APPLMAN_ITEM_DIRECTORY,
    fileTime = KV_APPLMAN_ITEM_FILE_TIME,
    downloadTime = KV_APPLMAN_ITEM_DOWNLOAD_TIME,
    downloadTimeText = KV_APPLMAN_ITEM_DOWNLOAD_TIME_TEXT,
    fileTimeText = KV_APPLMAN_ITEM_FILE_TIME_TEXT,
    quad8 = KV_APPLMAN_ITEM_QUAD_8,
    word9 = KV_APPLMAN_ITEM_WORD_9,
    groupSize = KV_APPLMAN_ITEM_GROUP_SIZE,
    words11 = KV_APPLMAN_ITEM_WORDS_11,
    text12 = KV_APPLMAN_ITEM_TEXT_12,
    text13 = KV_APPLMAN_ITEM_TEXT_13,
    text14 = KV_APPLMAN_ITEM_TEXT_14,
    groupSerialNumbers = KV_APPLMAN_ITEM_GROUP_SERIAL_NUMBERS,
    groupAddresses = KV_APPLMAN_ITEM_GROUP_ADDRESSES,
    text17 = KV_APPLMAN_ITEM_TEXT_17,
    text18 = KV_APPLMAN_ITEM_TEXT_18,
    text19 = KV_APPLMAN_ITEM_TEXT_19,
    text20 = KV_APPLMAN_ITEM_TEXT_20,
    word21 = KV_APPLMAN_ITEM_WORD_21,
    informationText = KV_APPLMAN_ITEM_INFORMATION_TEXT,
    text128 = KV_APPLMAN_ITEM_TEXT_128,
    text1002 = KV_APPLMAN_ITEM_TEXT_1002,
    text1003 = KV_APPLMAN_ITEM_TEXT_1003,
    quad1004 = KV_APPLMAN_ITEM_QUAD_1004,
    cores = KV_APPLMAN_ITEM_CORES,
    text1007 = KV_APPLMAN_ITEM_TEXT_1007,
    word1008 = KV_APPLMAN_ITEM_WORD_1008,
    word1009 = KV_APPLMAN_ITEM_WORD_1009,
    text1011 = KV_APPLMAN_ITEM_TEXT_1011,
    flashValues = KV_APPLMAN_ITEM_FLASH_VALUES,
    applicationCount = KV_APPLMAN_ITEM_APPLICATION_COUNT,
    initialisationCalls = KV_APPLMAN_ITEM_INITIALISATION_CALLS,
    serialNumber = KV_APPLMAN_ITEM_SERIAL_NUMBER,
    startTime = KV_APPLMAN_ITEM_START_TIME,
    presentTime = KV_APPLMAN_ITEM_PRESENT_TIME,
    text2054 = KV_APPLMAN_ITEM_TEXT_2054,
    commandTimeout = KV_APPLMAN_ITEM_COMMAND_TIMEOUT,
    double3073 = KV_APPLMAN_ITEM_DOUBLE_3073,
    double3074 = KV_APPLMAN_ITEM_DOUBLE_3074
};

/// Numbers of the parameters: KV_APPLMAN_PARAM_...
enum class Param : std::uint32_t {
    arguments = KV_APPLMAN_PARAM_ARGUMENTS,
    text1002 = KV_APPLMAN_PARAM_TEXT_1002,
    text1003 = KV_APPLMAN_PARAM_TEXT_1003,
    quad1004 = KV_APPLMAN_PARAM_QUAD_1004,
    cores = KV_APPLMAN_PARAM_CORES,
    text1007 = KV_APPLMAN_PARAM_TEXT_1007,
    word1008 = KV_APPLMAN_PARAM_WORD_1008,
    word1009 = KV_APPLMAN_PARAM_WORD_1009,
    word1010 = KV_APPLMAN_PARAM_WORD_1010,
    text1011 = KV_APPLMAN_PARAM_TEXT_1011,
    word3072 = KV_APPLMAN_PARAM_WORD_3072,
    double3073 = KV_APPLMAN_PARAM_DOUBLE_3073,
    double3074 = KV_APPLMAN_PARAM_DOUBLE_3074,
    hostTime = KV_APPLMAN_PARAM_HOST_TIME
};

/// Numbers of the states of an application process: KV_APPLMAN_STATE_...
enum class State : std::uint32_t {
    any = KV_APPLMAN_STATE_ANY,
    registered = KV_APPLMAN_STATE_REGISTERED,
    loaded = KV_APPLMAN_STATE_LOADED,
    ready = KV_APPLMAN_STATE_READY,
    running = KV_APPLMAN_STATE_RUNNING,
    paused = KV_APPLMAN_STATE_PAUSED,
    stopped = KV_APPLMAN_STATE_STOPPED,
    unknown = 0xFFFFFF2E ///< KV_APPLMAN_STATUS_STATE as it is delivered: a state that the library does not know
};

/// Numbers of the kinds of cores: KV_APPLMAN_CORES_...
enum class Cores : std::uint32_t { all = KV_APPLMAN_CORES_ALL, free = KV_APPLMAN_CORES_FREE };

/// A moment, in seconds since 1970-01-01 00:00 UTC.
using Time = std::chrono::time_point<std::chrono::system_clock, std::chrono::seconds>;

/// The value of an item or parameter. The place of its type among these is its Kind.
using Value = std::variant<State, std::uint32_t, std::int64_t, double, Time, std::chrono::seconds, std::string,
                           std::vector<std::string>, std::vector<std::uint32_t>, std::vector<std::int64_t>>;

/// The kinds of values, in the order of the types of Value.
enum class Kind : std::size_t {
    state,   ///< State
    word,    ///< std::uint32_t
    quad,    ///< std::int64_t
    real,    ///< double
    time,    ///< Time
    seconds, ///< std::chrono::seconds
    text,    ///< std::string, UTF-8
    texts,   ///< std::vector<std::string>, UTF-8
    words,   ///< std::vector<std::uint32_t>
    quads    ///< std::vector<std::int64_t>
};

/// The C++ type of a kind.
template <Kind kind>
using TypeOfKind = std::variant_alternative_t<static_cast<std::size_t>(kind), Value>;

/// What is known of an item.
struct ItemRow {
    Item id;          ///< its number
    Kind kind;        ///< the type of its value
    const char* name; ///< its name: that of its constant, without prefix and in small letters
};

/// What is known of a parameter.
struct ParamRow {
    Param id;         ///< its number
    Kind kind;        ///< the type of its value
    const char* name; ///< its name: that of its constant, without prefix and in small letters
};

/// What is known of a state.
struct StateRow {
    State id;         ///< its number
    const char* name; ///< its name: that of its constant, without prefix and in small letters
};

/// Every information item, in ascending order of the numbers.
inline constexpr std::array kItems{
    ItemRow{Item::state, Kind::state, "state"},
    ItemRow{Item::fileName, Kind::text, "file_name"},
    ItemRow{Item::directory, Kind::text, "directory"},
    ItemRow{Item::fileTime, Kind::time, "file_time"},
    ItemRow{Item::downloadTime, Kind::time, "download_time"},
    ItemRow{Item::downloadTimeText, Kind::text, "download_time_text"},
    ItemRow{Item::fileTimeText, Kind::text, "file_time_text"},
    ItemRow{Item::quad8, Kind::quad, "quad_8"},
    ItemRow{Item::word9, Kind::word, "word_9"},
    ItemRow{Item::groupSize, Kind::word, "group_size"},
    ItemRow{Item::words11, Kind::words, "words_11"},
    ItemRow{Item::text12, Kind::text, "text_12"},
    ItemRow{Item::text13, Kind::text, "text_13"},
    ItemRow{Item::text14, Kind::text, "text_14"},
    ItemRow{Item::groupSerialNumbers, Kind::words, "group_serial_numbers"},
    ItemRow{Item::groupAddresses, Kind::texts, "group_addresses"},
    ItemRow{Item::text17, Kind::text, "text_17"},
    ItemRow{Item::text18, Kind::text, "text_18"},
    ItemRow{Item::text19, Kind::text, "text_19"},
    ItemRow{Item::text20, Kind::text, "text_20"},
    ItemRow{Item::word21, Kind::word, "word_21"},
    ItemRow{Item::informationText, Kind::text, "information_text"},
    ItemRow{Item::text128, Kind::text, "text_128"},
    ItemRow{Item::text1002, Kind::text, "text_1002"},
    ItemRow{Item::text1003, Kind::text, "text_1003"},
    ItemRow{Item::quad1004, Kind::quad, "quad_1004"},
    ItemRow{Item::cores, Kind::words, "cores"},
    ItemRow{Item::text1007, Kind::text, "text_1007"},
    ItemRow{Item::word1008, Kind::word, "word_1008"},
    ItemRow{Item::word1009, Kind::word, "word_1009"},
    ItemRow{Item::text1011, Kind::text, "text_1011"},
    ItemRow{Item::flashValues, Kind::quads, "flash_values"},
    ItemRow{Item::applicationCount, Kind::word, "application_count"},
    ItemRow{Item::initialisationCalls, Kind::word, "initialisation_calls"},
    ItemRow{Item::serialNumber, Kind::word, "serial_number"},
    ItemRow{Item::startTime, Kind::time, "start_time"},
    ItemRow{Item::presentTime, Kind::time, "present_time"},
    ItemRow{Item::text2054, Kind::text, "text_2054"},
    ItemRow{Item::commandTimeout, Kind::seconds, "command_timeout"},
    ItemRow{Item::double3073, Kind::real, "double_3073"},
    ItemRow{Item::double3074, Kind::real, "double_3074"},
};

/// Every parameter, in ascending order of the numbers.
inline constexpr std::array kParams{
    ParamRow{Param::arguments, Kind::texts, "arguments"},   ParamRow{Param::text1002, Kind::text, "text_1002"},
    ParamRow{Param::text1003, Kind::text, "text_1003"},     ParamRow{Param::quad1004, Kind::quad, "quad_1004"},
    ParamRow{Param::cores, Kind::words, "cores"},           ParamRow{Param::text1007, Kind::text, "text_1007"},
    ParamRow{Param::word1008, Kind::word, "word_1008"},     ParamRow{Param::word1009, Kind::word, "word_1009"},
    ParamRow{Param::word1010, Kind::word, "word_1010"},     ParamRow{Param::text1011, Kind::text, "text_1011"},
    ParamRow{Param::word3072, Kind::word, "word_3072"},     ParamRow{Param::double3073, Kind::real, "double_3073"},
    ParamRow{Param::double3074, Kind::real, "double_3074"}, ParamRow{Param::hostTime, Kind::texts, "host_time"},
};

/// Every state, in ascending order of the numbers.
inline constexpr std::array kStates{
    StateRow{State::any, "any"},         StateRow{State::registered, "registered"}, StateRow{State::loaded, "loaded"},
    StateRow{State::ready, "ready"},     StateRow{State::running, "running"},       StateRow{State::paused, "paused"},
    StateRow{State::stopped, "stopped"},
};

/// Finds the row of an item, a parameter or a state.
/// @param rows kItems, kParams or kStates
/// @param id what is looked for
/// @return the row
/// @throws std::out_of_range there is none
template <class Rows, class Id>
constexpr const auto& rowOf(const Rows& rows, Id id) {
    for (const auto& row : rows) {
        if (row.id == id) return row;
    }
    throw std::out_of_range("kvapplman: unknown item, parameter or state");
}

/// The C++ type of an item.
template <Item item>
using ItemType = TypeOfKind<rowOf(kItems, item).kind>;

/// The C++ type of a parameter.
template <Param param>
using ParamType = TypeOfKind<rowOf(kParams, param).kind>;

} // namespace kvapplman

#endif
