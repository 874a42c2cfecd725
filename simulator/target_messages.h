// The messages that the application manager reports to hosts, in its own block of codes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "error_lists/error_list_access.h"
#include "error_lists/target_messages.h"

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
    unknownGroup = 0x14a00809,            // first identity word, second identity word
    otherGroupSize = 0x14a0080a,          // group size given, group size known
    binaryMissing = 0x14a0080b,           // directory, file name (texts)
    notInitialised = 0x14a0080c,          // process, initialisation calls made, calls wanted
    limitReached = 0x14a0080d,            // the most there can be
    unknownState = 0x14a0080e,            // state
    badFileName = 0x14a0080f,             // directory, file name (texts)
    fileNotRegistered = 0x14a00810,       // file name (text), type
    fileNotRemoved = 0x14a00811,          // directory, file name (texts)
    unknownFlashApplication = 0x14a00812, // flash application
    unknownCoreKind = 0x14a00813,         // kind of the request
    programEnded = 0x14a00814,            // process, exit code or signal (text)
    programNotStarted = 0x14a00815,       // process, reason (text)
    noProgram = 0x14a00816,               // directory, file name, reason (texts)
    unknownCore = 0x14a00817,             // core, number of cores
    unknownFileType = 0x14a01077,         // type
};

constexpr std::string_view textOf(Code code) { return target_messages::textOf(static_cast<std::uint32_t>(code)); }

/// A code whose text has places for so many arguments; a code without a text, or with another number, does not compile.
template <std::size_t kArguments>
struct CodeWith {
    Code code;
    // NOLINTNEXTLINE(google-explicit-constructor): a code is named where it is reported
    consteval CodeWith(Code named) : code(named) {
        if (target_messages::argumentsOf(textOf(named)) != kArguments) { throw "the arguments do not fit the text"; }
    }
};

/// `place` counts from 1. A number that the text shows behind 0x goes as %x.
inline const char* conversionOf(const KvErrorListArgument& argument, std::size_t place, std::string_view text) {
    constexpr const char* kConversions[] = {"%s", "%u", "%d"};
    const bool isNumber = std::holds_alternative<std::uint32_t>(argument);
    if (isNumber && text.find("0x%" + std::to_string(place)) != std::string_view::npos) { return "%x"; }
    return kConversions[argument.index()];
}

/// An entry without arguments, whatever its text takes.
inline KvErrorListEntry bareMessage(std::uint32_t code, std::uint32_t line = __builtin_LINE()) {
    return {code, line, "applicationManager", {}, {}};
}

/// An entry with what its text takes as arguments.
template <std::size_t kArguments>
KvErrorListEntry message(std::type_identity_t<CodeWith<kArguments>> what,
                         const KvErrorListArgument (&arguments)[kArguments], std::uint32_t line = __builtin_LINE()) {
    KvErrorListEntry entry = bareMessage(static_cast<std::uint32_t>(what.code), line);
    entry.signature.emplace();
    for (const KvErrorListArgument& argument : arguments) {
        entry.arguments.push_back(argument);
        *entry.signature += conversionOf(argument, entry.arguments.size(), textOf(what.code));
    }
    return entry;
}

} // namespace simulated_target
