// The remote procedures of the application manager: typed constants that are called like functions.
// A record's routine is called by the RPC client, across the border of a library: nothing thrown leaves it. A call that
// fails may leave half a reply behind; it is cleared before anybody sees it.
#pragma once

#include <cstdint>
#include <utility>

#include "platform/error_lists.h"
#include "platform/rpc_client.h"
#include "protocol/procedure_numbers.h"
#include "protocol/records.h"

namespace applman {

/// A record's routine in the form that the RPC client takes: freeing it is clearing it; memory that runs out is a failure.
template <class Record>
bool recordRoutine(Xdr& x, void* record) noexcept {
    auto& bound = *static_cast<Record*>(record);
    try {
        if (!x.freeing()) { return xdr_record(x, bound); }
        bound = {};
        return true;
    } catch (...) { return false; }
}

/// Holds a reply, cleared at first, and gives it back to the client's freeResults when it goes.
template <class Record>
class Reply {
public:
    explicit Reply(KvCRpcClient& client) : client_(client) {}
    ~Reply() { client_.freeResults(recordRoutine<Record>, &record_); }
    Reply(const Reply&) = delete;
    Reply& operator=(const Reply&) = delete;

    Record& operator*() { return record_; }
    Record* operator->() { return &record_; }

private:
    KvCRpcClient& client_;
    Record record_{};
};

template <class Request, class Result>
struct Procedure {
    std::uint32_t number;

    /// Calls the procedure and merges the target's error list into the pool. Result: the call status, 0 = carried out;
    /// after any other the reply is cleared. No message is added and the reply is not freed.
    std::int32_t operator()(KvCRpcClient& client, KvCErrorListPool& pool, Request request, Reply<Result>& reply) const {
        *reply = {};
        const std::int32_t status =
            client.clntCall(pool, number, recordRoutine<Request>, &request, recordRoutine<Result>, &*reply);
        if (status != 0) {
            *reply = {};
        } else if (!reply->errorList.empty()) {
            pool.deSerialize(reply->errorList.data(), static_cast<std::uint32_t>(reply->errorList.size()));
        }
        return status;
    }
};

using CommandProcedure = Procedure<TApplManRequest, TApplManResult>;
using PairProcedure = Procedure<TApplManPairRequest, TApplManResult>;

inline constexpr Procedure<TApplManSetParamRequest, TApplManResult> APPLMAN_SET_PARAM{kSetParam};
inline constexpr CommandProcedure APPLMAN_INIT_APPL{kInitAppl};
inline constexpr CommandProcedure APPLMAN_LOAD_APPL{kLoadAppl};
inline constexpr CommandProcedure APPLMAN_UNLOAD_APPL{kUnloadAppl};
inline constexpr CommandProcedure APPLMAN_START_APPL{kStartAppl};
inline constexpr CommandProcedure APPLMAN_STOP_APPL{kStopAppl};
inline constexpr CommandProcedure APPLMAN_APPLY_APPL{kApplyAppl};
inline constexpr CommandProcedure APPLMAN_GET_COMMAND_STATE{kGetCommandState};
inline constexpr Procedure<TApplManGetParamRequest, TApplManValueResult> APPLMAN_GET_PARAM{kGetParam};
inline constexpr Procedure<TApplManRequest, TApplManValueResult> APPLMAN_GET_APPLICATIONS{kGetApplications};
inline constexpr CommandProcedure APPLMAN_LOAD_APPL_COMPLETE{kLoadApplComplete};
inline constexpr Procedure<TApplManAddFileRequest2, TApplManAddFileResult> APPLMAN_ADD_FILE_2{kAddFile2};
inline constexpr Procedure<TApplManAddFileRequest, TApplManAddFileResult> APPLMAN_ADD_FILE{kAddFile};
inline constexpr Procedure<TApplManRequest, TApplManFileListResult> APPLMAN_GET_FILE_LIST{kGetFileList};
inline constexpr Procedure<TApplManOpenGroupRequest, TApplManGroupResult> APPLMAN_OPEN_GROUP{kOpenGroup};
inline constexpr Procedure<TApplManRegisterRequest, TApplManRegisterResult> APPLMAN_REGISTER_APPL{kRegisterAppl};
inline constexpr Procedure<TApplManPairRequest, TApplManCoreIdResult> APPLMAN_GET_CORE_IDS{kGetCoreIds};
inline constexpr Procedure<TApplManRemoveFileRequest, TApplManResult> APPLMAN_REMOVE_FILE{kRemoveFile};
inline constexpr PairProcedure APPLMAN_PAUSE_APPL{kPauseAppl};
inline constexpr PairProcedure APPLMAN_STEP_APPL{kStepAppl};
inline constexpr Procedure<TApplManPairRequest, TApplManFlashListResult> APPLMAN_GET_FLASH_APPLICATIONS{
    kGetFlashApplications};
inline constexpr Procedure<TApplManRequest, TApplManValueResult> APPLMAN_GET_FLASH_PARAM{kGetFlashParam};
inline constexpr Procedure<TApplManSetFlashParamRequest, TApplManResult> APPLMAN_SET_FLASH_PARAM{kSetFlashParam};
inline constexpr Procedure<TApplManFlashRequest, TApplManResult> APPLMAN_LOAD_FLASH_APPL{kLoadFlashAppl};
inline constexpr Procedure<TApplManFlashRequest, TApplManResult> APPLMAN_CLEAR_FLASH_APPL{kClearFlashAppl};
inline constexpr PairProcedure APPLMAN_TERMINATE_APPL{kTerminateAppl};

/// The result value with which a target refuses.
inline constexpr std::int32_t kRefused = -1;

/// The mode word of the requests that carry one; unloading has one of its own.
inline constexpr std::uint32_t kMode = 1;
inline constexpr std::uint32_t kUnloadMode = 2;

/// The application ID that addresses the target's application manager itself.
inline constexpr std::uint32_t kApplicationManager = 0;

} // namespace applman
