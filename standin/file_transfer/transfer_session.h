// A file-transfer connection to one target, and the calls on it.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <utility>

#include "file_transfer/file_transfer_protocol.h"
#include "platform/error_lists.h"
#include "rpc_client/rpc_channel.h"

namespace file_transfer {

/// A request's record, ready to be sent. Throws std::bad_alloc.
template <class Request>
kvrpc::Bytes encodeCall(Procedure procedure, Request&& request) {
    kvrpc::Bytes record = kvrpc::beginCall(kProgram, kVersion, procedure);
    Xdr xdr = Xdr::encoder(record);
    xdr_record(xdr, request);
    kvrpc::seal(record); // requests are far from the limit, and a record beyond it is refused when it is read
    return record;
}

/// What the target's reply says.
struct Answer {
    kvrpc::Failure failure{};
    std::int32_t result = kDone;
};
Answer readAnswer(kvrpc::ByteSpan record);

/// Any number of threads may use it. May throw std::bad_alloc.
class TransferSession {
public:
    explicit TransferSession(std::string address) : channel_(std::move(address), *kvrpc::limitsOfNewChannels) {}

    const std::string& address() const noexcept { return channel_.address(); }
    kvrpc::Channel& channel() noexcept { return channel_; }

    /// Whether the target can be reached; if not, why.
    kvrpc::Failure connect();

    template <class Request>
    Answer call(Procedure procedure, Request request) {
        return call(encodeCall(procedure, request));
    }

    std::uint32_t nextTransfer() noexcept { return nextTransfer_++; }

private:
    Answer call(kvrpc::Bytes record);

    kvrpc::Channel channel_;
    std::atomic<std::uint32_t> nextTransfer_{1};
};

} // namespace file_transfer
