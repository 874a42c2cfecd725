#include "rpc_wire/rpc_message.h"

#include <algorithm>
#include <utility>

#include "platform/xdr.h"
#include "rpc_wire/record_reader.h"

namespace kvrpc {
namespace {

enum MessageType : std::uint32_t { kCall = 0, kReply = 1 };
enum ReplyStatus : std::uint32_t { kAccepted = 0, kDenied = 1 };
enum RejectStatus : std::uint32_t { kRpcMismatch = 0, kAuthenticationError = 1 };
enum AuthenticationStatus : std::uint32_t { kBadCredentials = 1, kRejectedCredentials = 2 };
enum Flavour : std::uint32_t { kNone = 0, kSystem = 1 };

constexpr std::uint32_t kRpcVersion = 2;
constexpr std::uint32_t kLongestAuthenticationBody = 400;
constexpr std::uint32_t kLongestMachineName = 255;
constexpr std::uint32_t kMostGroups = 16;
constexpr std::size_t kUsualRecord = 128; // bytes

Bytes begin(std::initializer_list<std::uint32_t> words, Bytes record = {}) {
    record.reserve(kUsualRecord);
    record.assign(kMarkSize, 0);
    Xdr xdr = Xdr::encoder(record);
    for (std::uint32_t word : words) {
        xdr_u_int(xdr, word);
    }
    return record;
}

void store(std::uint8_t* bytes, std::uint32_t value) noexcept {
    for (int shift = 24; shift >= 0; shift -= 8) {
        *bytes++ = static_cast<std::uint8_t>(value >> shift);
    }
}

/// Takes a counted, padded opaque body of at most `longest` bytes.
std::optional<ByteSpan> takeBody(Xdr& xdr, std::uint32_t longest) noexcept {
    std::uint32_t length = 0;
    if (!xdr_u_int(xdr, length) || length > longest) { return {}; }
    const std::uint8_t* const bytes = xdr.take(length);
    if (bytes == nullptr || xdr.take((4 - length % 4) % 4) == nullptr) { return {}; }
    return ByteSpan{bytes, length};
}

/// Stamp, machine name, user, group, further groups.
bool isSystemCredentials(ByteSpan body) noexcept {
    Xdr xdr = Xdr::decoder(body);
    std::uint32_t word = 0;
    if (!xdr_u_int(xdr, word) || !takeBody(xdr, kLongestMachineName)) { return false; }
    if (!xdr_u_int(xdr, word) || !xdr_u_int(xdr, word) || !xdr_u_int(xdr, word)) { return false; }
    return word <= kMostGroups && xdr.left() == std::size_t{4} * word;
}

/// Who calls is of no matter here, but what is sent of it has to be well formed.
std::optional<Denial> judgeCredentials(std::uint32_t flavour, ByteSpan body) noexcept {
    if (flavour == kNone) { return {}; }
    if (flavour != kSystem) { return Denial::rejectedCredentials; }
    if (!isSystemCredentials(body)) { return Denial::badCredentials; }
    return {};
}

ByteSpan rest(Xdr& xdr) noexcept {
    const std::size_t count = xdr.left();
    return {xdr.take(count), count};
}

} // namespace

Bytes beginCall(std::uint32_t program, std::uint32_t version, std::uint32_t procedure, Bytes memory) {
    return begin({0, kCall, kRpcVersion, program, version, procedure, kNone, 0, kNone, 0}, std::move(memory));
}

void setXid(std::span<std::uint8_t> record, std::uint32_t xid) noexcept { store(record.data() + kMarkSize, xid); }

Bytes acceptedReply(std::uint32_t xid, AcceptStatus status) {
    return begin({xid, kReply, kAccepted, kNone, 0, static_cast<std::uint32_t>(status)});
}

Bytes versionMismatchReply(std::uint32_t xid, std::uint32_t lowest, std::uint32_t highest) {
    return begin(
        {xid, kReply, kAccepted, kNone, 0, static_cast<std::uint32_t>(AcceptStatus::programMismatch), lowest, highest});
}

Bytes deniedReply(std::uint32_t xid, Denial denial) {
    if (denial == Denial::rpcMismatch) { return begin({xid, kReply, kDenied, kRpcMismatch, kRpcVersion, kRpcVersion}); }
    const std::uint32_t reason = denial == Denial::badCredentials ? kBadCredentials : kRejectedCredentials;
    return begin({xid, kReply, kDenied, kAuthenticationError, reason});
}

bool seal(Bytes& record) noexcept {
    const std::size_t length = record.size() - kMarkSize;
    if (length > kLargestRecord) { return false; }
    store(record.data(), kLastFragment | static_cast<std::uint32_t>(length));
    return true;
}

std::optional<RecordKind> kindOf(ByteSpan record) noexcept {
    Xdr xdr = Xdr::decoder(record);
    std::uint32_t xid = 0;
    std::uint32_t type = 0;
    if (!xdr_u_int(xdr, xid) || !xdr_u_int(xdr, type)) { return {}; }
    return RecordKind{xid, type == kReply};
}

ReplyHead parseReply(ByteSpan record) noexcept {
    Xdr xdr = Xdr::decoder(record);
    std::uint32_t word = 0;
    std::uint32_t status = 0;
    if (!xdr_u_int(xdr, word) || !xdr_u_int(xdr, word) || word != kReply || !xdr_u_int(xdr, word)) { return {}; }
    if (word == kDenied) {
        if (!xdr_u_int(xdr, status)) { return {}; }
        return {ReplyHead::Kind::denied, status};
    }
    if (word != kAccepted || !xdr_u_int(xdr, word) || !takeBody(xdr, kLongestAuthenticationBody)) { return {}; }
    if (!xdr_u_int(xdr, status)) { return {}; }
    return {ReplyHead::Kind::accepted, status, rest(xdr)};
}

std::optional<CallHead> parseCall(ByteSpan record) noexcept {
    Xdr xdr = Xdr::decoder(record);
    CallHead head;
    std::uint32_t type = 0;
    std::uint32_t rpcVersion = 0;
    if (!xdr_u_int(xdr, head.xid) || !xdr_u_int(xdr, type) || type != kCall || !xdr_u_int(xdr, rpcVersion)) {
        return {};
    }
    if (rpcVersion != kRpcVersion) {
        head.denial = Denial::rpcMismatch;
        return head;
    }
    std::uint32_t flavour = 0;
    if (!xdr_u_int(xdr, head.program) || !xdr_u_int(xdr, head.version) || !xdr_u_int(xdr, head.procedure) ||
        !xdr_u_int(xdr, flavour)) {
        return {};
    }
    const auto credentials = takeBody(xdr, kLongestAuthenticationBody);
    if (!credentials) { return {}; }
    head.denial = judgeCredentials(flavour, *credentials);
    if (!xdr_u_int(xdr, flavour) || !takeBody(xdr, kLongestAuthenticationBody)) { return {}; }
    head.arguments = rest(xdr);
    return head;
}

} // namespace kvrpc
