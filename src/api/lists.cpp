// Lists: the applications in a state, their information texts, the processor cores.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "KvApplManConstants.h"
#include "api/KvApplicationManagerAP.h"
#include "api/client_level.h"
#include "frame/calling_frame.h"
#include "protocol/application_states.h"
#include "protocol/parameter_numbers.h"
#include "protocol/procedures.h"

static_assert(offsetof(KvTApplicationInfo, infoText) == sizeof(void*));

namespace applman {
namespace {

constexpr std::uint32_t kMostListed = KV_APPLMAN_MOST_LISTED;
constexpr std::uint32_t kAnyState = KV_APPLMAN_STATE_ANY;

/// Bytes of an array whose count a caller gave.
std::size_t bytesOf(std::uint32_t count) { return std::size_t{count} * sizeof(std::uint32_t); }

void clear(std::uint32_t* values, std::uint32_t count) {
    if (count > 0) { std::memset(values, 0, bytesOf(count)); }
}

void copy(const std::vector<std::uint32_t>& from, std::uint32_t* to) { std::copy(from.begin(), from.end(), to); }

Status deliverApplications(const Reporter& report, const TApplManValueResult& reply, std::uint32_t capacity,
                           std::uint32_t* applIds, std::int32_t* count) {
    if (reply.result != 0) { return report.fail(Msg::applicationsNotReceived, Status::applications); }
    static const std::vector<std::uint32_t> kNone;
    const auto* const listed = std::get_if<kTagWords>(&reply.value);
    const std::vector<std::uint32_t>& ids = listed == nullptr ? kNone : *listed;
    *count = static_cast<std::int32_t>(ids.size());
    if (ids.size() > capacity) { return report.fail(Msg::invalidSize, Status::size); }
    copy(ids, applIds);
    return Status::ok;
}

struct ListedApplication {
    std::uint32_t applId;
    std::string infoText;
};

/// The handles and the pool with which a list asks for each of its parts.
struct Lister {
    const Reporter& report;
    void* devHandle;
    void* accessResHandle;

    std::int32_t readText(std::uint32_t applId, std::uint32_t infoId, std::string* text) const {
        std::array<char, 256> buffer{};
        auto size = static_cast<std::int32_t>(buffer.size());
        const std::int32_t status =
            KvApplMan_getApplInfo(report.pool(), devHandle, accessResHandle, applId, infoId, buffer.data(), &size);
        if (status == 0) { *text = buffer.data(); }
        return status;
    }
};

/// A file name counts without its last extension.
bool namesFile(const char* name, std::string fileName) {
    if (const std::size_t dot = fileName.rfind('.'); dot != std::string::npos) { fileName.resize(dot); }
    return std::strncmp(name, fileName.c_str(), 256) == 0;
}

/// Adds an application to the list if it is called `name` (null = any).
std::int32_t listApplication(const Lister& lister, std::uint32_t applId, const char* name,
                             std::vector<ListedApplication>* listed) {
    if (name != nullptr) {
        std::string fileName;
        if (const std::int32_t read = lister.readText(applId, param::kFileName.host, &fileName); read != 0) {
            return read;
        }
        if (!namesFile(name, std::move(fileName))) { return 0; }
    }
    std::string infoText;
    const std::int32_t read = lister.readText(applId, param::kInformationText.host, &infoText);
    if (read == 0) { listed->push_back({applId, std::move(infoText)}); }
    return read;
}

void freeList(KvTApplicationInfo* list, std::uint32_t count) noexcept {
    for (std::uint32_t index = 0; list != nullptr && index < count; ++index) {
        list[index].applId = 0;
        delete[] std::exchange(list[index].infoText, nullptr);
    }
    delete[] list;
}

/// The list as the host gets it; null when there is no memory for all of it.
KvTApplicationInfo* makeList(const std::vector<ListedApplication>& listed) {
    const auto count = static_cast<std::uint32_t>(listed.size());
    auto* const list = new (std::nothrow) KvTApplicationInfo[count]();
    for (std::uint32_t index = 0; list != nullptr && index < count; ++index) {
        const std::string& text = listed[index].infoText;
        list[index].applId = listed[index].applId;
        list[index].infoText = new (std::nothrow) char[text.size() + 1];
        if (list[index].infoText == nullptr) {
            freeList(list, count);
            return nullptr;
        }
        std::memcpy(list[index].infoText, text.c_str(), text.size() + 1);
    }
    return list;
}

Status getApplInfoList(const Lister& lister, KvTApplicationInfo** list, std::uint32_t* count, const char* name) {
    const Reporter& report = lister.report;
    if (list == nullptr || count == nullptr) { return report.fail(Msg::infoListArgumentMissing, Status::argument); }
    *list = nullptr;
    *count = 0;
    std::array<std::uint32_t, kMostListed> applIds{};
    auto found = static_cast<std::int32_t>(applIds.size());
    const std::int32_t asked = KvApplMan_getApplications(report.pool(), lister.devHandle, lister.accessResHandle,
                                                         kAnyState, applIds.data(), &found);
    if (asked != 0) { return static_cast<Status>(asked); }

    const char* const filter = name != nullptr && name[0] != '\0' ? name : nullptr;
    std::vector<ListedApplication> listed;
    for (std::int32_t index = 0; index < found; ++index) {
        const std::int32_t read = listApplication(lister, applIds[static_cast<std::size_t>(index)], filter, &listed);
        if (read != 0) { return static_cast<Status>(read); }
    }
    if (!listed.empty()) {
        *list = makeList(listed);
        *count = *list == nullptr ? 0 : static_cast<std::uint32_t>(listed.size());
    } else if (filter != nullptr) {
        report.add(Msg::applicationNotLoaded, filter);
    }
    return Status::ok;
}

/// The count is stored whether the IDs were copied or not.
Status deliverCoreIds(const Reporter& report, const TApplManCoreIdResult& reply, std::uint32_t capacity,
                      std::uint32_t* coreIds, std::uint32_t* count) {
    if (reply.result == kRefused) { return report.fail(Msg::coreIdsNotRead, Status::coreIds); }
    const bool fitting = reply.coreIds.size() <= capacity;
    if (fitting && coreIds != nullptr) { copy(reply.coreIds, coreIds); }
    *count = static_cast<std::uint32_t>(reply.coreIds.size());
    if (!fitting) { return Status::size; }
    return coreIds == nullptr ? Status::argument : Status::ok;
}

/// A target that does not offer the request has one core; any other failed call reads as no cores.
Status askForCoreIds(const Reporter& report, const Session& session, std::uint32_t requestKind, std::uint32_t capacity,
                     std::uint32_t* coreIds, std::uint32_t* count) {
    constexpr std::uint32_t kOnlyCore = 1;
    Reply<TApplManCoreIdResult> reply{session.client};
    const std::int32_t called =
        APPLMAN_GET_CORE_IDS(session.client, report.pool(), {session.accessId, requestKind}, reply);
    if (called == KvCRpcClient::kProcedureNotOffered) { reply->coreIds.push_back(kOnlyCore); }
    return deliverCoreIds(report, *reply, capacity, coreIds, count);
}

Status getAvailableCoreIds(const Reporter& report, void* devHandle, void* accessResHandle, std::uint32_t coreKind,
                           std::uint32_t* count, std::uint32_t* coreIds) {
    constexpr std::array<std::uint32_t, 2> kRequestKinds{1, 2}; // by core kind
    static_assert(KV_APPLMAN_CORES_ALL == 0 && KV_APPLMAN_CORES_FREE + 1 == kRequestKinds.size());
    if (count == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    const std::uint32_t capacity = *count;
    if (coreIds != nullptr) { clear(coreIds, capacity); }
    if (coreKind >= kRequestKinds.size()) { return report.fail(Msg::invalidParameter, Status::identifier); }
    return runFrame(report, devHandle, accessResHandle, [&](const Session& session) {
        return askForCoreIds(report, session, kRequestKinds[coreKind], capacity, coreIds, count);
    });
}

} // namespace

Status KvApplMan_getApplications(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client,
                                 std::uint32_t accessId, std::uint32_t state, std::uint32_t* applIds,
                                 std::int32_t* count) {
    const Reporter report{pool, "KvApplMan_getApplications"};
    if (client == nullptr || count == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    const std::int32_t given = *count;
    if (given >= 1 && applIds == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    if (given < 0) { return report.fail(Msg::invalidSize, Status::size); }
    const auto capacity = static_cast<std::uint32_t>(given);
    clear(applIds, capacity);
    const std::int32_t targetState = getInternalApplState(pool, state);
    if (targetState == kUnknownState) { return Status::state; }
    Reply<TApplManValueResult> reply{*client};
    const std::int32_t called =
        APPLMAN_GET_APPLICATIONS(*client, pool, {kMode, accessId, static_cast<std::uint32_t>(targetState)}, reply);
    if (called != 0) { return report.failRemoteCall(); }
    return deliverApplications(report, *reply, capacity, applIds, count);
}

} // namespace applman

using namespace applman;

extern "C" std::int32_t KvApplMan_getApplications(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                                  std::uint32_t state, std::uint32_t* applIds,
                                                  std::int32_t* count) noexcept {
    const Reporter report{pool, "KvApplMan_getApplications"};
    return guardedFrame(report, devHandle, accessResHandle, [&](const Session& session) {
        return KvApplMan_getApplications(pool, &session.client, session.accessId, state, applIds, count);
    });
}

extern "C" std::int32_t KvApplMan_getApplInfoList(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                                  KvTApplicationInfo** list, std::uint32_t* count,
                                                  const char* name) noexcept {
    const Reporter report{pool, "KvApplMan_getApplInfoList"};
    return guarded(report, [&] {
        return getApplInfoList(Lister{report, devHandle, accessResHandle}, list, count, name);
    });
}

extern "C" void KvApplMan_freeApplInfoList(KvTApplicationInfo** list, std::uint32_t* count) noexcept {
    if (list == nullptr || count == nullptr) { return; }
    freeList(std::exchange(*list, nullptr), std::exchange(*count, 0));
}

extern "C" std::int32_t KvApplMan_getAvailableCoreIDs(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                                      std::uint32_t coreKind, std::uint32_t* count,
                                                      std::uint32_t* coreIds) noexcept {
    const Reporter report{pool, "KvApplMan_getAvailableCoreIDs"};
    return guarded(report,
                   [&] { return getAvailableCoreIds(report, devHandle, accessResHandle, coreKind, count, coreIds); });
}
