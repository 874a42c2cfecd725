// The messages that the application manager reports to hosts, in its own block of codes.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <variant>

#include "error_lists/error_list_access.h"

namespace simulated_target {

enum class Code : std::uint32_t {
    notAllowedInState = 0x14a00801,       // command (text), process, state
    commandUnderWay = 0x14a00802,         // command (text), process
    unknownProcess = 0x14a00803,          // process
    unknownParameter = 0x14a00804,        // parameter, process
    wrongValueType = 0x14a00805,          // parameter, tag wanted, tag given
    readOnlyParameter = 0x14a00806,       // parameter
    badApplicationNumber = 0x14a00807,    // application number, group size
    numberTaken = 0x14a00808,             // application number, process that has it
    unknownGroup = 0x14a00809,            // identity words
    otherGroupSize = 0x14a0080a,          // group size given, group size known
    binaryMissing = 0x14a0080b,           // directory, file name (texts)
    notInitialised = 0x14a0080c,          // process, initialisation calls made, wanted
    limitReached = 0x14a0080d,            // the most there can be
    unknownState = 0x14a0080e,            // state
    badFileName = 0x14a0080f,             // directory, file name (texts)
    fileNotRegistered = 0x14a00810,       // file name (text), type
    fileNotRemoved = 0x14a00811,          // directory, file name (texts)
    unknownFlashApplication = 0x14a00812, // flash application
    unknownCoreKind = 0x14a00813,         // kind of the request
    unknownFileType = 0x14a01077,         // type
};

/// An entry with what its code takes as arguments.
inline KvErrorListEntry message(Code code, std::initializer_list<KvErrorListArgument> arguments,
                                std::uint32_t line = __builtin_LINE()) {
    constexpr const char* kConversions[] = {"%s", "%u", "%d"};
    KvErrorListEntry entry{static_cast<std::uint32_t>(code), line, "applicationManager", {}, arguments};
    std::string signature;
    for (const auto& argument : arguments) {
        signature += kConversions[argument.index()];
    }
    entry.signature = std::move(signature);
    return entry;
}

} // namespace simulated_target
