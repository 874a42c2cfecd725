// The file-transfer program, second on a target's RPC port: its procedures, records and error codes, for both ends.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/xdr.h"

namespace file_transfer {

inline constexpr std::uint32_t kProgram = 0x20004B57;
inline constexpr std::uint32_t kVersion = 1;

/// A transfer is named by the client with a number that is its own among the open transfers of its connection. Open,
/// write and commit may be sent without waiting for the replies; once one of them fails, the later ones of the same
/// transfer fail too. What was written stands beside the final name until commit renames it; an abort or a lost
/// connection removes it.
enum Procedure : std::uint32_t { kOpen = 1, kWrite = 2, kCommit = 3, kAbort = 4, kMakeDirectory = 5, kSetTime = 6 };

/// Result of every procedure.
enum Result : std::int32_t {
    kDone = 0,
    kBadName = -1, // a name that would leave the store, is empty or cannot be a file name
    kNoSuchTransfer = -2,
    kBadOffset = -3,      // not the next byte, or beyond the announced size
    kIncomplete = -4,     // commit before all announced bytes
    kStoreFailed = -5,    // the store could not do it
    kEarlierFailure = -6, // an earlier step of this transfer failed
};

struct OpenRequest {
    std::uint32_t transfer{};
    std::uint64_t size{};
    std::string directory{};
    std::string name{};
};
struct WriteRequest {
    std::uint32_t transfer{};
    std::uint64_t offset{};
    std::vector<std::uint8_t> bytes{};
};
/// Of commit and abort.
struct TransferRequest {
    std::uint32_t transfer{};
};
/// A directory that is there already is made.
struct MakeDirectoryRequest {
    std::string base{};
    std::string name{};
};
/// The host's local time, "YYYYMMDDhhmm.ss".
struct SetTimeRequest {
    std::string localTime{};
};
struct Reply {
    std::int32_t result{};
};

inline bool xdr_record(Xdr& x, OpenRequest& r) {
    return xdr_u_int(x, r.transfer) && xdr_u_quad_t(x, r.size) && xdr_string(x, r.directory) && xdr_string(x, r.name);
}
inline bool xdr_record(Xdr& x, WriteRequest& r) {
    return xdr_u_int(x, r.transfer) && xdr_u_quad_t(x, r.offset) && xdr_bytes(x, r.bytes);
}
inline bool xdr_record(Xdr& x, TransferRequest& r) { return xdr_u_int(x, r.transfer); }
inline bool xdr_record(Xdr& x, MakeDirectoryRequest& r) { return xdr_string(x, r.base) && xdr_string(x, r.name); }
inline bool xdr_record(Xdr& x, SetTimeRequest& r) { return xdr_string(x, r.localTime); }
inline bool xdr_record(Xdr& x, Reply& r) { return xdr_int(x, r.result); }

} // namespace file_transfer
