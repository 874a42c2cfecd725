// Records of ONC RPC (RFC 5531): what stands in front of arguments and results, for both ends.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kvrpc {

using Bytes = std::vector<std::uint8_t>;
using ByteSpan = std::span<const std::uint8_t>;

enum class AcceptStatus : std::uint32_t {
    success = 0,
    programUnavailable = 1,
    programMismatch = 2,
    procedureUnavailable = 3,
    garbageArguments = 4,
    systemError = 5,
};

/// Why a call was denied before its program was looked at.
enum class Denial : std::uint32_t { rpcMismatch, badCredentials, rejectedCredentials };

/// A call without its arguments, which are appended to it, and with room for mark and xid. It is put into `memory`.
Bytes beginCall(std::uint32_t program, std::uint32_t version, std::uint32_t procedure, Bytes memory = {});
void setXid(std::span<std::uint8_t> record, std::uint32_t xid) noexcept;

Bytes acceptedReply(std::uint32_t xid, AcceptStatus status);
Bytes versionMismatchReply(std::uint32_t xid, std::uint32_t lowest, std::uint32_t highest);
Bytes deniedReply(std::uint32_t xid, Denial denial);

/// Makes a record that was begun above ready to be sent, as one fragment. False when it is too large.
bool seal(Bytes& record) noexcept;

/// What tells to whom a received record belongs. None when it is too short for any.
struct RecordKind {
    std::uint32_t xid;
    bool reply;
};
std::optional<RecordKind> kindOf(ByteSpan record) noexcept;

struct ReplyHead {
    enum class Kind : std::uint8_t { accepted, denied, malformed };
    Kind kind = Kind::malformed;
    std::uint32_t status = 0; // accept status, or why it was denied; any number that the peer may send
    ByteSpan results{};       // may be followed by bytes that are no part of them
};
ReplyHead parseReply(ByteSpan record) noexcept;

struct CallHead {
    std::uint32_t xid = 0;
    std::uint32_t program = 0;
    std::uint32_t version = 0;
    std::uint32_t procedure = 0;
    std::optional<Denial> denial{}; // the rest is not set then
    ByteSpan arguments{};
};
/// None when the record is no call or ends within the head.
std::optional<CallHead> parseCall(ByteSpan record) noexcept;

} // namespace kvrpc
