#include "protocol/information_items.h"

#include <algorithm>
#include <array>
#include <optional>

#include "frame/report.h"
#include "protocol/information_decode.h"
#include "protocol/information_defaults.h"
#include "protocol/procedures.h"

namespace applman {
namespace {

using enum Delivery;
using D = Default;

// clang-format off
constexpr std::array kItems{
    //              infoId param size delivery    for a process            for the manager
    InformationItem{   0,   11, 4, state,       D::none,               D::none},
    InformationItem{   2,    5, 0, text,        D::none,               D::none},
    InformationItem{   3,    6, 0, text,        D::none,               D::none},
    InformationItem{   4,    7, 8, quad,        D::none,               D::none},
    InformationItem{   5,   12, 8, quad,        D::none,               D::none},
    InformationItem{   6,   33, 0, text,        D::none,               D::none},
    InformationItem{   7,   34, 0, text,        D::none,               D::none},
    InformationItem{   8,   18, 8, quad,        D::zeroQuad,           D::none},
    InformationItem{   9,   19, 4, word,        D::oneWord,            D::none},
    InformationItem{  10,   20, 4, word,        D::oneWord,            D::none},
    InformationItem{  11,   21, 0, words,       D::oneElement,         D::none},
    InformationItem{  12,   25, 0, text,        D::none,               D::emptyText},
    InformationItem{  13,   26, 0, text,        D::none,               D::emptyText},
    InformationItem{  14,   27, 0, text,        D::none,               D::emptyText},
    InformationItem{  15,   29, 0, words,       D::groupSerialNumbers, D::none},
    InformationItem{  16,   30, 0, addresses,   D::groupAddresses,     D::none},
    InformationItem{  17,   32, 0, text,        D::none,               D::emptyText},
    InformationItem{  18,   36, 0, text,        D::none,               D::emptyText}, // then item 13 is read
    InformationItem{  19,   38, 0, negatedText, D::none,               D::emptyText},
    InformationItem{  20,   39, 0, negatedText, D::none,               D::emptyText},
    InformationItem{  21,    1, 4, word,        D::none,               D::zeroWord},
    InformationItem{  22,   41, 0, text,        D::none,               D::none},
    InformationItem{ 128,   35, 0, text,        D::none,               D::none},
    InformationItem{1002,   15, 0, text,        D::none,               D::none},
    InformationItem{1003,   14, 0, text,        D::none,               D::none},
    InformationItem{1004,   16, 8, quad,        D::none,               D::none},
    InformationItem{1005,   17, 0, words,       D::oneElement,         D::none},
    InformationItem{1007,    8, 0, text,        D::none,               D::none},
    InformationItem{1008,   23, 4, word,        D::zeroWord,           D::none},
    InformationItem{1009,   24, 4, word,        D::zeroWord,           D::none},
    InformationItem{1011,   42, 0, text,        D::emptyText,          D::none},
    InformationItem{1200,   64, 0, quads,       D::none,               D::none},
    InformationItem{2049, 1025, 4, word,        D::none,               D::none},
    InformationItem{2050,   31, 4, word,        D::zeroWord,           D::none},
    InformationItem{2051,   37, 4, word,        D::none,               D::deviceSerialNumber},
    InformationItem{2052, 1026, 8, quad,        D::none,               D::none},
    InformationItem{2053, 1027, 8, quad,        D::none,               D::none},
    InformationItem{2054, 1028, 0, text,        D::none,               D::none},
    InformationItem{2055,   40, 4, word,        D::zeroWord,           D::commandTimeout},
    InformationItem{3073,  134, 8, number,      D::none,               D::none},
    InformationItem{3074,  131, 8, number,      D::none,               D::none},
};
// clang-format on

constexpr bool itemsAreInOrder() {
    return std::is_sorted(kItems.begin(), kItems.end(),
                          [](const auto& a, const auto& b) { return a.infoId < b.infoId; });
}
static_assert(itemsAreInOrder());

constexpr bool targetParamsAreUnique() {
    return std::all_of(kItems.begin(), kItems.end(), [](const InformationItem& item) {
        return std::count_if(kItems.begin(), kItems.end(), [&](const InformationItem& other) {
                   return other.targetParamId == item.targetParamId;
               }) == 1;
    });
}
static_assert(targetParamsAreUnique());

/// The parameter (of item 18) in place of which another item is read when the target cannot answer for it.
constexpr std::uint32_t kSubstitutedParam = 36;
constexpr std::uint32_t kSubstituteItem = 13;

template <class Member>
const InformationItem* find(Member member, std::uint32_t value) {
    const auto* const found =
        std::find_if(kItems.begin(), kItems.end(), [&](const InformationItem& item) { return item.*member == value; });
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
    if (defaulted && targetParamId == kSubstitutedParam) { return std::nullopt; }
    if (reply->result == kRefused) { return report.fail(Msg::informationNotReceived, Status::information); }
    return decodeParameterReturnValue(pool, targetParamId, *reply, to);
}

Status readItem(const Reporter& report, KV_RPC_PROG_APPLMAN_HOST2Client& client, std::uint32_t accessId,
                std::uint32_t applId, std::uint32_t infoId, const CallerBuffer& to) {
    std::uint32_t targetParamId = 0;
    const Status mapped = mapParamAndCheckParamSize(report.pool(), infoId, to.capacity, &targetParamId);
    if (mapped != Status::ok) { return mapped; }
    const std::optional<Status> answered = readAnswer(report, client, accessId, applId, targetParamId, to);
    return answered ? *answered : readItem(report, client, accessId, applId, kSubstituteItem, to);
}

} // namespace

const InformationItem* itemOfInfoId(std::uint32_t infoId) { return find(&InformationItem::infoId, infoId); }

const InformationItem* itemOfTargetParam(std::uint32_t targetParamId) {
    return find(&InformationItem::targetParamId, targetParamId);
}

Status mapParamAndCheckParamSize(KvCErrorListPool& pool, std::uint32_t infoId, std::int32_t size,
                                 std::uint32_t* targetParamId) {
    const Reporter report{pool, "mapParamAndCheckParamSize"};
    const InformationItem* const item = itemOfInfoId(infoId);
    if (item == nullptr) { return report.fail(Msg::invalidParameter, Status::identifier); }
    const bool fits = item->fixedSize == 0 ? size >= 0 : size == item->fixedSize;
    if (!fits) { return report.fail(Msg::invalidParameter, Status::size); }
    *targetParamId = item->targetParamId;
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
