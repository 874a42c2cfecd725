// Procedure numbers of the application-manager RPC program, for both ends.
#pragma once

#include <cstdint>

#include "platform/rpc_program.h" // the program's own number and version

namespace applman {

enum ProcedureNumber : std::uint32_t {
    kSetParam = 2,
    kInitAppl = 3,
    kLoadAppl = 4,
    kUnloadAppl = 5,
    kStartAppl = 6,
    kStopAppl = 7,
    kApplyAppl = 8,
    kGetCommandState = 9,
    kGetParam = 10,
    kGetApplications = 11,
    kLoadApplComplete = 13,
    kAddFile2 = 14,
    kAddFile = 15,
    kGetFileList = 16,
    kOpenGroup = 17,
    kRegisterAppl = 18,
    kGetCoreIds = 19,
    kRemoveFile = 20,
    kPauseAppl = 22,
    kStepAppl = 23,
    kGetFlashApplications = 24,
    kGetFlashParam = 25,
    kSetFlashParam = 26,
    kLoadFlashAppl = 27,
    kClearFlashAppl = 28,
    kTerminateAppl = 29,
};

} // namespace applman
