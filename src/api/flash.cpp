// Flash applications: listing, inspecting, configuring, loading and clearing them.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "KvApplManConstants.h"
#include "api/KvApplicationManagerAP.h"
#include "api/client_level.h"
#include "frame/calling_frame.h"
#include "protocol/commands.h"
#include "protocol/information_decode.h"
#include "protocol/information_items.h"
#include "protocol/parameter_numbers.h"
#include "protocol/procedures.h"

namespace applman {
namespace {

using Client = KV_RPC_PROG_APPLMAN_HOST2Client;

constexpr std::uint32_t kWireRequestMode = 1; // of request mode 0
constexpr ParameterNumbers kWritable = param::kFlashValues;

/// A remainder of less than a value is not sent.
std::vector<std::int64_t> valuesOf(const void* data, std::uint32_t size) {
    std::vector<std::int64_t> values(size / sizeof(std::int64_t));
    if (!values.empty()) { std::memcpy(values.data(), data, values.size() * sizeof(std::int64_t)); }
    return values;
}

} // namespace

Status KvApplMan_getFlashApplications(KvCErrorListPool& pool, Client* client, std::uint32_t accessId,
                                      std::uint32_t requestMode, std::uint32_t* count, std::uint32_t* flashApplIds) {
    const Reporter report{pool, "KvApplMan_getFlashApplications"};
    const std::uint32_t capacity = count == nullptr ? 0 : *count;
    if (count == nullptr || (capacity != 0 && flashApplIds == nullptr)) {
        return report.fail(Msg::invalidArgument, Status::argument);
    }
    if (capacity > 0) { std::memset(flashApplIds, 0, std::size_t{capacity} * sizeof *flashApplIds); }
    if (requestMode != KV_APPLMAN_FLASH_MODE_ALL) {
        return report.fail(Msg::invalidFlashRequestMode, Status::flashMode, requestMode);
    }
    Reply<TApplManFlashListResult> reply{*client};
    // A call that fails, also one that the target does not offer, reads as an empty list.
    static_cast<void>(APPLMAN_GET_FLASH_APPLICATIONS(*client, pool, {accessId, kWireRequestMode}, reply));
    if (reply->result == kRefused) { return report.fail(Msg::flashApplicationsNotRead, Status::flashList); }
    const auto listed = static_cast<std::uint32_t>(reply->flashApplIds.size());
    const bool fitting = listed <= capacity;
    if (fitting) { std::copy(reply->flashApplIds.begin(), reply->flashApplIds.end(), flashApplIds); }
    *count = listed;
    return fitting ? Status::ok : report.fail(Msg::flashBufferTooSmall, Status::size, listed, capacity);
}

Status KvApplMan_getFlashApplInfo(KvCErrorListPool& pool, Client* client, std::uint32_t accessId,
                                  std::uint32_t flashApplId, std::uint32_t infoId, void* buffer, std::int32_t* size) {
    const Reporter report{pool, "KvApplMan_getFlashApplInfo"};
    const CallerBuffer to{buffer, size};
    if (size == nullptr || to.isMissing()) { return report.fail(Msg::invalidArgument, Status::argument); }
    to.clear();
    std::uint32_t targetParamId = 0;
    const Status mapped = mapParamAndCheckParamSize(pool, infoId, to.capacity, &targetParamId);
    if (mapped != Status::ok) { return mapped; }
    Reply<TApplManValueResult> reply{*client};
    if (APPLMAN_GET_FLASH_PARAM(*client, pool, {accessId, flashApplId, targetParamId}, reply) != 0) {
        return report.failRemoteCall();
    }
    if (reply->result == kRefused) { return report.fail(Msg::flashInformationNotReceived, Status::information); }
    return decodeParameterReturnValue(pool, targetParamId, *reply, to);
}

Status KvApplMan_setFlashApplParameter(KvCErrorListPool& pool, Client* client, std::uint32_t accessId,
                                       std::uint32_t flashApplId, std::uint32_t infoId, const void* data,
                                       std::uint32_t size) {
    const Reporter report{pool, "KvApplMan_setFlashApplParameter"};
    if (client == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    if (size != 0 && data == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    if (infoId != kWritable.host) { return report.fail(Msg::invalidParameter, Status::identifier); }
    Reply<TApplManResult> reply{*client};
    const std::int32_t called =
        APPLMAN_SET_FLASH_PARAM(*client, pool, {accessId, flashApplId, kWritable.target, valuesOf(data, size)}, reply);
    if (called != 0) { return report.failRemoteCall(); }
    return reply->result == kRefused ? report.fail(Msg::flashParameterNotSet, Status::parameter) : Status::ok;
}

Status KvApplMan_loadFlashAppl(KvCErrorListPool& pool, Client* client, std::uint32_t accessId,
                               std::uint64_t flashApplId) {
    return carryOut(Reporter{pool, "KvApplMan_loadFlashAppl"}, client, accessId, kLoadFlash, flashApplId);
}

Status KvApplMan_clearFlashAppl(KvCErrorListPool& pool, Client* client, std::uint32_t accessId,
                                std::uint64_t flashApplId) {
    return carryOut(Reporter{pool, "KvApplMan_clearFlashAppl"}, client, accessId, kClearFlash, flashApplId);
}

} // namespace applman

using namespace applman;

extern "C" std::int32_t KvApplMan_getFlashApplications(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                                       std::uint32_t requestMode, std::uint32_t* count,
                                                       std::uint32_t* flashApplIds) noexcept {
    const Reporter report{pool, "KvApplMan_getFlashApplications"};
    return guardedFrame(report, devHandle, accessResHandle, [&](const Session& session) {
        return KvApplMan_getFlashApplications(pool, &session.client, session.accessId, requestMode, count,
                                              flashApplIds);
    });
}

extern "C" std::int32_t KvApplMan_getFlashApplInfo(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                                   std::uint32_t flashApplId, std::uint32_t infoId, void* buffer,
                                                   std::int32_t* size) noexcept {
    const Reporter report{pool, "KvApplMan_getFlashApplInfo"};
    return guardedFrame(report, devHandle, accessResHandle, [&](const Session& session) {
        return KvApplMan_getFlashApplInfo(pool, &session.client, session.accessId, flashApplId, infoId, buffer, size);
    });
}

extern "C" std::int32_t KvApplMan_setFlashApplParameter(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                                        std::uint32_t flashApplId, std::uint32_t infoId,
                                                        const void* data, std::uint32_t size) noexcept {
    const Reporter report{pool, "KvApplMan_setFlashApplParameter"};
    return guardedFrame(report, devHandle, accessResHandle, [&](const Session& session) {
        return KvApplMan_setFlashApplParameter(pool, &session.client, session.accessId, flashApplId, infoId, data,
                                               size);
    });
}

extern "C" std::int32_t KvApplMan_loadFlashAppl(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                                std::uint64_t flashApplId) noexcept {
    const Reporter report{pool, "KvApplMan_loadFlashAppl"};
    return guardedFrame(report, devHandle, accessResHandle, [&](const Session& session) {
        return applman::KvApplMan_loadFlashAppl(pool, &session.client, session.accessId, flashApplId);
    });
}

extern "C" std::int32_t KvApplMan_clearFlashAppl(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                                 std::uint64_t flashApplId) noexcept {
    const Reporter report{pool, "KvApplMan_clearFlashAppl"};
    return guardedFrame(report, devHandle, accessResHandle, [&](const Session& session) {
        return applman::KvApplMan_clearFlashAppl(pool, &session.client, session.accessId, flashApplId);
    });
}
