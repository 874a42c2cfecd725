// The RPC client class of the application-manager program.
#include "platform/rpc_client.h"

#include <atomic>
#include <chrono>
#include <mutex>
#include <new>
#include <string>
#include <utility>

#include "error_lists/platform_messages.h"
#include "platform/rpc_program.h"
#include "rpc_client/rpc_channel.h"
#include "rpc_client/spare_buffers.h"

using namespace kvrpc;

namespace {

constexpr std::uint32_t kTcp = 6;
constexpr std::uint32_t kNoAuthentication = 0;

enum Parameter : std::uint32_t { kIpProtocol = 1, kVersion = 2, kCallTimeout = 6, kAuthentication = 14 };

/// Results of the operations, beside the ones that the header names.
enum Result : std::int32_t {
    kDone = 0,
    kUnusable = -1,
    kNoConnection = -2,
    kTimedOut = -4,
    kLost = -5,
    kBadReply = -6,
    kRefused = -7,
    kNotEncoded = -8,
    kBadParameter = -9,
};

Result resultOf(const Failure& failure) noexcept {
    switch (failure.kind) {
    case Failure::Kind::none:
        return kDone;
    case Failure::Kind::connectionRefused:
    case Failure::Kind::unreachable:
    case Failure::Kind::connectTimedOut:
    case Failure::Kind::connectFailed:
        return kNoConnection;
    case Failure::Kind::callTimedOut:
        return kTimedOut;
    case Failure::Kind::lost:
        return kLost;
    case Failure::Kind::malformed:
        return kBadReply;
    case Failure::Kind::callRefused:
    case Failure::Kind::callDenied:
        return kRefused;
    case Failure::Kind::notEncoded:
        return kNotEncoded;
    case Failure::Kind::unusable:
        break;
    }
    return kUnusable;
}

bool isNotOffered(const Failure& failure) noexcept {
    return failure.kind == Failure::Kind::callRefused &&
           failure.detail == static_cast<std::int32_t>(AcceptStatus::procedureUnavailable);
}

std::int32_t unusable(KvCErrorListPool& pool, const char* operation) noexcept {
    pool.setError(platform_messages::kRpcClientUnusable, __LINE__, operation, "%s", "");
    return kUnusable;
}

} // namespace

struct KvCRpcClient::State {
    explicit State(std::string address) : channel(std::move(address), *limitsOfNewChannels) {}

    bool set(std::uint32_t id, std::uint32_t value) noexcept;
    Failure call(std::uint32_t procedure, XdrRoutine encode, void* request, XdrRoutine decode, void* reply);

    Channel channel;
    std::atomic<std::uint32_t> version{applman::kApplManVersion};
    std::mutex spareGuard{};
    SpareBuffers spare{}; // for requests
};

bool KvCRpcClient::State::set(std::uint32_t id, std::uint32_t value) noexcept {
    if (id == kIpProtocol) { return value == kTcp; }
    if (id == kAuthentication) { return value == kNoAuthentication; }
    if (value == 0) { return false; }
    if (id == kVersion) { version = value; }
    if (id == kCallTimeout) { channel.setCallTimeout(std::chrono::microseconds{value}); }
    return id == kVersion || id == kCallTimeout;
}

Failure KvCRpcClient::State::call(std::uint32_t procedure, XdrRoutine encode, void* request, XdrRoutine decode,
                                  void* reply) {
    SpareBuffer record{spare, spareGuard};
    *record = beginCall(applman::kApplManProgram, version, procedure, std::move(*record));
    Xdr xdr = Xdr::encoder(*record);
    if (!encode(xdr, request) || !seal(*record)) { return {Failure::Kind::notEncoded}; }
    return channel.call(*record, decode, reply);
}

KvCRpcClient::KvCRpcClient(KvCErrorListPool& pool, const char* address) noexcept : state_(nullptr) {
    try {
        state_ = new State{address == nullptr ? "" : address};
    } catch (...) { unusable(pool, "KvCRpcClient"); }
}

KvCRpcClient::~KvCRpcClient() { delete state_; }

std::int32_t KvCRpcClient::setParameter(KvCErrorListPool& pool, std::uint32_t id, std::uint32_t value) noexcept {
    static constexpr const char* kOperation = "setParameter";
    if (state_ == nullptr) { return unusable(pool, kOperation); }
    if (state_->set(id, value)) { return kDone; }
    pool.setError(platform_messages::kRpcParameterRefused, __LINE__, kOperation, "%s%u%u",
                  state_->channel.address().c_str(), id, value);
    return kBadParameter;
}

std::int32_t KvCRpcClient::connect(KvCErrorListPool& pool) noexcept {
    static constexpr const char* kOperation = "connect";
    if (state_ == nullptr) { return unusable(pool, kOperation); }
    Failure failure{Failure::Kind::unusable};
    try {
        std::shared_ptr<Connection> connection;
        failure = state_->channel.connect(connection, state_->channel.deadline());
    } catch (...) {} // no memory: as unusable as it was
    report(pool, kOperation, state_->channel.address(), 0, failure);
    return resultOf(failure);
}

std::int32_t KvCRpcClient::clntCall(KvCErrorListPool& pool, std::uint32_t procedure, XdrRoutine encode, void* request,
                                    XdrRoutine decode, void* reply) noexcept {
    static constexpr const char* kOperation = "clntCall";
    if (state_ == nullptr) { return unusable(pool, kOperation); }
    Failure failure{Failure::Kind::unusable};
    try {
        failure = state_->call(procedure, encode, request, decode, reply);
    } catch (...) {} // no memory: as unusable as it was
    if (isNotOffered(failure)) { return kProcedureNotOffered; }
    report(pool, kOperation, state_->channel.address(), procedure, failure);
    return resultOf(failure);
}

void KvCRpcClient::freeResults(XdrRoutine decode, void* reply) noexcept {
    Xdr xdr = Xdr::freer();
    try {
        decode(xdr, reply);
    } catch (...) {} // a routine that breaks its word
}

std::uint32_t KvCRpcClient::getIpAddressV4(KvCErrorListPool& pool) noexcept {
    if (state_ != nullptr) { return state_->channel.ipAddress(); }
    unusable(pool, "getIpAddressV4");
    return 0xFFFFFFFFU;
}
