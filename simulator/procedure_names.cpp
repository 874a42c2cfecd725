#include "simulator/procedure_names.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "file_transfer/file_transfer_protocol.h"
#include "protocol/procedure_numbers.h"

namespace simulated_target {
namespace {

constexpr std::uint32_t kManager = applman::kApplManProgram;
constexpr std::uint32_t kFiles = file_transfer::kProgram;

// A name is that of the protocol without prefix, in lower case, with hyphens, without the word APPL.
constexpr NamedProcedure kProcedures[] = {
    {kManager, 0, "null"},
    {kManager, applman::kSetParam, "set-param", 2, 3},
    {kManager, applman::kInitAppl, "init", 2},
    {kManager, applman::kLoadAppl, "load", 2},
    {kManager, applman::kUnloadAppl, "unload", 2},
    {kManager, applman::kStartAppl, "start", 2},
    {kManager, applman::kStopAppl, "stop", 2},
    {kManager, applman::kApplyAppl, "apply", 2},
    {kManager, applman::kGetCommandState, "get-command-state", 2},
    {kManager, applman::kGetParam, "get-param", 2, 3},
    {kManager, applman::kGetApplications, "get-applications"},
    {kManager, applman::kLoadApplComplete, "load-complete", 2},
    {kManager, applman::kAddFile2, "add-file-2", 2},
    {kManager, applman::kAddFile, "add-file", 2},
    {kManager, applman::kGetFileList, "get-file-list", 2},
    {kManager, applman::kOpenGroup, "open-group"},
    {kManager, applman::kRegisterAppl, "register"},
    {kManager, applman::kGetCoreIds, "get-core-ids"},
    {kManager, applman::kRemoveFile, "remove-file", 2},
    {kManager, applman::kPauseAppl, "pause", 1},
    {kManager, applman::kStepAppl, "step", 1},
    {kManager, applman::kGetFlashApplications, "get-flash-applications"},
    {kManager, applman::kGetFlashParam, "get-flash-param", -1, 2},
    {kManager, applman::kSetFlashParam, "set-flash-param", -1, 2},
    {kManager, applman::kLoadFlashAppl, "load-flash"},
    {kManager, applman::kClearFlashAppl, "clear-flash"},
    {kManager, applman::kTerminateAppl, "terminate", 1},
    {kFiles, 0, "file.null"},
    {kFiles, file_transfer::kOpen, "file.open"},
    {kFiles, file_transfer::kWrite, "file.write"},
    {kFiles, file_transfer::kCommit, "file.commit"},
    {kFiles, file_transfer::kAbort, "file.abort"},
    {kFiles, file_transfer::kMakeDirectory, "file.make-directory"},
    {kFiles, file_transfer::kSetTime, "file.set-time"},
};

template <class Condition>
const NamedProcedure* findIf(Condition condition) noexcept {
    const auto* const found = std::ranges::find_if(kProcedures, condition);
    return found == std::end(kProcedures) ? nullptr : found;
}

} // namespace

const NamedProcedure* findProcedure(std::string_view text) noexcept {
    const bool ofFiles = text.starts_with(kFilePrefix);
    const std::string_view digits = ofFiles ? text.substr(kFilePrefix.size()) : text;
    std::uint32_t number = 0;
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool isNumber = parsed.ec == std::errc{} && parsed.ptr == digits.data() + digits.size();
    if (isNumber) { return findProcedure(ofFiles ? kFiles : kManager, number); }
    return findIf([=](const NamedProcedure& procedure) { return procedure.name == text; });
}

const NamedProcedure* findProcedure(std::uint32_t program, std::uint32_t number) noexcept {
    return findIf([=](const NamedProcedure& each) { return each.program == program && each.number == number; });
}

std::string procedureName(std::uint32_t program, std::uint32_t number) {
    const NamedProcedure* const known = findProcedure(program, number);
    if (known != nullptr) { return std::string{known->name}; }
    std::string digits = std::to_string(number);
    if (program == kManager) { return digits; }
    return program == kFiles ? std::string{kFilePrefix} + digits : std::to_string(program) + "." + digits;
}

} // namespace simulated_target
