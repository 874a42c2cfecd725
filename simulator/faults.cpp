#include "simulator/faults.h"

#include <algorithm>

#include "platform/xdr.h"
#include "rpc_wire/record_reader.h"
#include "simulator/procedure_row.h"
#include "simulator/reply_layout.h"
#include "simulator/target_messages.h"

namespace simulated_target {
namespace {

using kvrpc::AcceptStatus;
using kvrpc::Bytes;
using kvrpc::Delivery;
using kvrpc::RpcCall;
using kvrpc::RpcReply;

// Where things stand in an accepted answer's one fragment.
constexpr std::size_t kXidOffset = kvrpc::kMarkSize;
constexpr std::size_t kStatusOffset = kXidOffset + 20;
constexpr std::size_t kResultsOffset = kStatusOffset + 4;

std::uint32_t wordAt(const Bytes& bytes, std::size_t offset) {
    Xdr xdr = Xdr::decoder(kvrpc::ByteSpan{bytes}.subspan(std::min(offset, bytes.size())));
    std::uint32_t word = 0;
    xdr_u_int(xdr, word);
    return word;
}

void setWord(Bytes& bytes, std::size_t offset, std::uint32_t word) {
    Bytes encoded;
    Xdr xdr = Xdr::encoder(encoded);
    xdr_u_int(xdr, word);
    if (offset + encoded.size() <= bytes.size()) { std::ranges::copy(encoded, bytes.begin() + std::ptrdiff_t(offset)); }
}

// --- answers in place of carrying the call out

RpcReply refuseWith(const RpcCall& call, KvErrorListEntry entry) {
    RpcReply reply;
    reply.results = refusalResults(call.program, call.procedure, KvErrorListAccess::serialize({std::move(entry)}));
    return reply;
}

RpcReply refuse(const RpcCall& call, std::uint32_t code) { return refuseWith(call, bareMessage(code)); }

RpcReply lackParameter(const RpcCall& call, std::uint32_t) {
    return refuseWith(call, message(Code::unknownParameter, {0U, 0U}));
}

RpcReply lackProcedure(const RpcCall&, std::uint32_t) { return refusedCall(AcceptStatus::procedureUnavailable); }

RpcReply acceptWithStatus(const RpcCall&, std::uint32_t status) { return refusedCall(AcceptStatus{status}); }

RpcReply nothing(const RpcCall&, std::uint32_t) { return {}; }

// --- what the answer says

void denyVersion(Answer& answer, std::uint32_t) {
    Bytes& bytes = answer.delivery.bytes;
    bytes = kvrpc::deniedReply(wordAt(bytes, kXidOffset), kvrpc::Denial::rpcMismatch);
    kvrpc::seal(bytes);
}

void denyCaller(Answer& answer, std::uint32_t why) {
    Bytes& bytes = answer.delivery.bytes;
    bytes = kvrpc::deniedReply(wordAt(bytes, kXidOffset), kvrpc::Denial::badCredentials);
    setWord(bytes, bytes.size() - 4, why);
    kvrpc::seal(bytes);
}

/// Where the first such field lies in the answer. None when it has none.
std::optional<std::size_t> fieldOf(const Answer& answer, ReplyField field) {
    const Bytes& bytes = answer.delivery.bytes;
    if (bytes.size() < kResultsOffset || wordAt(bytes, kStatusOffset) != 0) { return {}; }
    const auto offset =
        findField(answer.program, answer.procedure, kvrpc::ByteSpan{bytes}.subspan(kResultsOffset), field);
    return offset ? std::optional{kResultsOffset + *offset} : std::nullopt;
}

template <ReplyField kField>
void lie(Answer& answer, std::uint32_t value) {
    if (const auto offset = fieldOf(answer, kField)) { setWord(answer.delivery.bytes, *offset, value); }
}

/// Bytes that are no whole list: fewer entries than they announce.
void corruptErrorList(Answer& answer, std::uint32_t) {
    const auto offset = fieldOf(answer, ReplyField::errorList);
    if (!offset) { return; }
    Bytes& bytes = answer.delivery.bytes;
    const auto begin = bytes.begin() + std::ptrdiff_t(*offset);
    const std::uint32_t size = 4 + (wordAt(bytes, *offset) + 3) / 4 * 4;
    Bytes corrupt(4 * 4);
    setWord(corrupt, 0, 3 * 4);
    setWord(corrupt, 4, 2);
    bytes.insert(bytes.erase(begin, begin + size), corrupt.begin(), corrupt.end());
    kvrpc::seal(bytes);
}

void trail(Answer& answer, std::uint32_t count) {
    answer.delivery.bytes.insert(answer.delivery.bytes.end(), count, 0xEE);
    kvrpc::seal(answer.delivery.bytes);
}

void takeWrongXid(Answer& answer, std::uint32_t) {
    setWord(answer.delivery.bytes, kXidOffset, ~wordAt(answer.delivery.bytes, kXidOffset));
}

void takeStaleXid(Answer& answer, std::uint32_t) {
    setWord(answer.delivery.bytes, kXidOffset, wordAt(answer.delivery.bytes, kXidOffset) - 1);
}

// --- how it is put on the wire

void split(Answer& answer, std::uint32_t size) {
    const Bytes whole = std::move(answer.delivery.bytes);
    Bytes& fragments = answer.delivery.bytes;
    fragments.clear();
    const std::size_t step = std::max(size, 1U);
    for (std::size_t begin = kvrpc::kMarkSize; begin < whole.size(); begin += step) {
        const std::size_t end = std::min(whole.size(), begin + step);
        const std::uint32_t last = end == whole.size() ? kvrpc::kLastFragment : 0;
        fragments.resize(fragments.size() + kvrpc::kMarkSize);
        setWord(fragments, fragments.size() - kvrpc::kMarkSize, last | static_cast<std::uint32_t>(end - begin));
        fragments.insert(fragments.end(), whole.begin() + std::ptrdiff_t(begin), whole.begin() + std::ptrdiff_t(end));
    }
}

void announce(Answer& answer, std::uint32_t length) {
    setWord(answer.delivery.bytes, 0, kvrpc::kLastFragment | length);
}

void repeat(Answer& answer, std::uint32_t) {
    const Bytes once = answer.delivery.bytes;
    answer.delivery.bytes.insert(answer.delivery.bytes.end(), once.begin(), once.end());
}

void cut(Answer& answer, std::uint32_t count) {
    if (count < answer.delivery.bytes.size()) { answer.delivery.bytes.resize(count); }
    answer.delivery.then = Delivery::Then::close;
}

// --- when, and what becomes of the connection

void delay(Answer& answer, std::uint32_t milliseconds) { answer.delay = std::chrono::milliseconds{milliseconds}; }

void overtake(Answer& answer, std::uint32_t) { answer.overtaken = true; }

template <Delivery::Then kThen>
void keepBack(Answer& answer, std::uint32_t) {
    answer.delivery.bytes.clear();
    answer.delivery.then = kThen;
}

void reboot(Answer& answer, std::uint32_t milliseconds) { answer.reboot = std::chrono::milliseconds{milliseconds}; }

using enum FaultKind::Value;

constexpr std::uint32_t kAnyCode = 0x14a00801;
constexpr std::uint32_t kMost = 0xFFFFFFFF;
constexpr std::uint32_t kBadCredentials = 1;

constexpr FaultKind kKinds[] = {
    {"refuse", optional, kAnyCode, refuse, nullptr},
    {"lack-procedure", none, 0, lackProcedure, nullptr},
    {"lack-parameter", none, 0, lackParameter, nullptr},
    {"accept-status", required, 0, acceptWithStatus, nullptr},
    {"rpc-mismatch", none, 0, nothing, denyVersion},
    {"auth-error", optional, kBadCredentials, nothing, denyCaller},
    {"corrupt-list", none, 0, nullptr, corruptErrorList},
    {"text", optional, kMost, nullptr, lie<ReplyField::text>},
    {"bytes", optional, kMost, nullptr, lie<ReplyField::bytes>},
    {"array", optional, kMost, nullptr, lie<ReplyField::array>},
    {"tag", optional, 8, nullptr, lie<ReplyField::tag>},
    {"trailing", optional, 4, nullptr, trail},
    {"wrong-xid", none, 0, nullptr, takeWrongXid},
    {"stale-xid", none, 0, nullptr, takeStaleXid},
    {"split", optional, 1, nullptr, split},
    {"fragment", optional, 0x7FFFFFFF, nullptr, announce},
    {"twice", none, 0, nullptr, repeat},
    {"cut", required, 0, nullptr, cut},
    {"delay", required, 0, nullptr, delay},
    {"overtaken", none, 0, nullptr, overtake},
    {"hang", none, 0, nullptr, keepBack<Delivery::Then::readOn>},
    {"stop-reading", none, 0, nullptr, keepBack<Delivery::Then::readNoMore>},
    {"close", none, 0, nullptr, keepBack<Delivery::Then::close>},
    {"reset", none, 0, nullptr, keepBack<Delivery::Then::reset>},
    {"reboot", optional, 0, nullptr, reboot},
};

} // namespace

std::string faultText(const Fault& fault) {
    const bool hasValue = fault.kind->takes != FaultKind::Value::none;
    return fault.kind->name + (hasValue ? "=" + std::to_string(fault.value) : "");
}

const FaultKind* findFaultKind(std::string_view name) noexcept {
    const auto* const found = std::ranges::find(kKinds, name, &FaultKind::name);
    return found == std::end(kKinds) ? nullptr : found;
}

} // namespace simulated_target
