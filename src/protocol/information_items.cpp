// Arguments are judged, then the buffer is cleared, then the identifier and the size are judged: after any later failure
// the buffer is zeros. Reading may read again, over the same client and into the same pool, but only one level
// deep: item 18 leads to item 13, and the defaults of 15 and 16 to item 10, which lead no further.
#include "protocol/information_items.h"

#include <algorithm>
#include <array>
#include <optional>

#include "frame/public_constants.h"
#include "frame/report.h"
#include "protocol/information_decode.h"
#include "protocol/information_defaults.h"
#include "protocol/procedures.h"

namespace applman {
namespace {

using namespace param;
using enum Delivery;
using D = Default;

// clang-format off
constexpr std::array kItems{
    //              numbers           size delivery    for a process            for the manager
    InformationItem{kState,              4, state,       D::none,               D::none},
    InformationItem{kFileName,           0, text,        D::none,               D::none},
    InformationItem{kDirectory,          0, text,        D::none,               D::none},
    InformationItem{kFileTime,           8, quad,        D::none,               D::none},
    InformationItem{kDownloadTime,       8, quad,        D::none,               D::none},
    InformationItem{kDownloadTimeText,   0, text,        D::none,               D::none},
    InformationItem{kFileTimeText,       0, text,        D::none,               D::none},
    InformationItem{kItem8,              8, quad,        D::zeroQuad,           D::none},
    InformationItem{kItem9,              4, word,        D::oneWord,            D::none},
    InformationItem{kGroupSize,          4, word,        D::oneWord,            D::none},
    InformationItem{kItem11,             0, words,       D::oneElement,         D::none},
    InformationItem{kItem12,             0, text,        D::none,               D::emptyText},
    InformationItem{kItem13,             0, text,        D::none,               D::emptyText},
    InformationItem{kItem14,             0, text,        D::none,               D::emptyText},
    InformationItem{kGroupSerialNumbers, 0, words,       D::groupSerialNumbers, D::none},
    InformationItem{kGroupAddresses,     0, addresses,   D::groupAddresses,     D::none},
    InformationItem{kItem17,             0, text,        D::none,               D::emptyText},
    InformationItem{kItem18,             0, text,        D::none,               D::emptyText}, // then item 13 is read
    InformationItem{kItem19,             0, negatedText, D::none,               D::emptyText},
    InformationItem{kItem20,             0, negatedText, D::none,               D::emptyText},
    InformationItem{kItem21,             4, word,        D::none,               D::zeroWord},
    InformationItem{kInformationText,    0, text,        D::none,               D::none},
    InformationItem{kItem128,            0, text,        D::none,               D::none},
    InformationItem{kParameter1002,      0, text,        D::none,               D::none},
    InformationItem{kParameter1003,      0, text,        D::none,               D::none},
    InformationItem{kParameter1004,      8, quad,        D::none,               D::none},
    InformationItem{kParameter1005,      0, words,       D::oneElement,         D::none},
    InformationItem{kParameter1007,      0, text,        D::none,               D::none},
    InformationItem{kParameter1008,      4, word,        D::zeroWord,           D::none},
    InformationItem{kParameter1009,      4, word,        D::zeroWord,           D::none},
    InformationItem{kParameter1011,      0, text,        D::emptyText,          D::none},
    InformationItem{kFlashValues,        0, quads,       D::none,               D::none},
    InformationItem{kItem2049,           4, word,        D::none,               D::none},
    InformationItem{kInitCalls,          4, word,        D::zeroWord,           D::none},
    InformationItem{kSerialNumber,       4, word,        D::none,               D::deviceSerialNumber},
    InformationItem{kStartTime,          8, quad,        D::none,               D::none},
    InformationItem{kPresentTime,        8, quad,        D::none,               D::none},
    InformationItem{kItem2054,           0, text,        D::none,               D::none},
    InformationItem{kCommandTimeout,     4, word,        D::zeroWord,           D::commandTimeout},
    InformationItem{kParameter3073,      8, number,      D::none,               D::none},
    InformationItem{kParameter3074,      8, number,      D::none,               D::none},
};
// clang-format on

constexpr bool itemsAreInOrder() {
    return std::is_sorted(kItems.begin(), kItems.end(),
                          [](const auto& a, const auto& b) { return a.numbers.host < b.numbers.host; });
}
static_assert(itemsAreInOrder());
static_assert(public_constants::areThoseOf(public_constants::kItems, kItems,
                                           [](const InformationItem& item) { return item.numbers.host; }));

constexpr bool targetParamsAreUnique() {
    return std::all_of(kItems.begin(), kItems.end(), [](const InformationItem& item) {
        return std::count_if(kItems.begin(), kItems.end(), [&](const InformationItem& other) {
                   return other.numbers.target == item.numbers.target;
               }) == 1;
    });
}
static_assert(targetParamsAreUnique());

/// The item that is read when the target cannot answer for another one.
constexpr ParameterNumbers kSubstituted = kItem18;
constexpr ParameterNumbers kSubstitute = kItem13;

const InformationItem* find(std::uint32_t ParameterNumbers::*end, std::uint32_t number) {
    const auto* const found = std::find_if(kItems.begin(), kItems.end(),
                                           [&](const InformationItem& item) { return item.numbers.*end == number; });
    return found == kItems.end() ? nullptr : found;
}

/// Asks the target and delivers what it answers; none when another item is to be read in its place.
std::optional<Status> readAnswer(const Reporter& report, KV_RPC_PROG_APPLMAN_HOST2Client& client,
                                 std::uint32_t accessId, std::uint32_t applId, std::uint32_t targetParamId,
                                 const CallerBuffer& to) {
    KvCErrorListPool& pool = report.pool();
    Reply<TApplManValueResult> reply{client};
    if (APPLMAN_GET_PARAM(client, pool, {kMode, accessId, applId, targetParamId}, reply) != 0) {
        return report.failRemoteCall();
    }
    const bool defaulted = applyParamDefault(pool, &client, accessId, applId, targetParamId, &*reply);
    if (defaulted && targetParamId == kSubstituted.target) { return std::nullopt; }
    if (reply->result == kRefused) { return report.fail(Msg::informationNotReceived, Status::information); }
    return decodeParameterReturnValue(pool, targetParamId, *reply, to);
}

Status readItem(const Reporter& report, KV_RPC_PROG_APPLMAN_HOST2Client& client, std::uint32_t accessId,
                std::uint32_t applId, std::uint32_t infoId, const CallerBuffer& to) {
    std::uint32_t targetParamId = 0;
    const Status mapped = mapParamAndCheckParamSize(report.pool(), infoId, to.capacity, &targetParamId);
    if (mapped != Status::ok) { return mapped; }
    const std::optional<Status> answered = readAnswer(report, client, accessId, applId, targetParamId, to);
    return answered ? *answered : readItem(report, client, accessId, applId, kSubstitute.host, to);
}

} // namespace

const InformationItem* itemOfInfoId(std::uint32_t infoId) { return find(&ParameterNumbers::host, infoId); }

const InformationItem* itemOfTargetParam(std::uint32_t targetParamId) {
    return find(&ParameterNumbers::target, targetParamId);
}

Status mapParamAndCheckParamSize(KvCErrorListPool& pool, std::uint32_t infoId, std::int32_t size,
                                 std::uint32_t* targetParamId) {
    const Reporter report{pool, "mapParamAndCheckParamSize"};
    const InformationItem* const item = itemOfInfoId(infoId);
    if (item == nullptr) { return report.fail(Msg::invalidParameter, Status::identifier); }
    const bool fits = item->fixedSize == 0 ? size >= 0 : size == item->fixedSize;
    if (!fits) { return report.fail(Msg::invalidParameter, Status::size); }
    *targetParamId = item->numbers.target;
    return Status::ok;
}

Status KvApplMan_getApplInfo(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client, std::uint32_t accessId,
                             std::uint32_t applId, std::uint32_t infoId, void* buffer, std::int32_t* size) {
    const Reporter report{pool, "KvApplMan_getApplInfo"};
    if (client == nullptr || size == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    const CallerBuffer to{buffer, size};
    if (to.isMissing()) { return report.fail(Msg::invalidArgument, Status::argument); }
    to.clear();
    return readItem(report, *client, accessId, applId, infoId, to);
}

} // namespace applman
