#include "file_transfer/transfer_session.h"

#include <memory>

namespace file_transfer {
namespace {

bool decodeReply(Xdr& xdr, void* reply) { return xdr_record(xdr, *static_cast<Reply*>(reply)); }

} // namespace

Answer readAnswer(kvrpc::ByteSpan record) {
    Reply reply;
    const kvrpc::Failure failure = kvrpc::readReply(record, decodeReply, &reply);
    return {failure, reply.result};
}

kvrpc::Failure TransferSession::connect() {
    std::shared_ptr<kvrpc::Connection> connection;
    return channel_.connect(connection, channel_.deadline());
}

Answer TransferSession::call(kvrpc::Bytes record) {
    Reply reply;
    const kvrpc::Failure failure = channel_.call(record, decodeReply, &reply);
    return {failure, reply.result};
}

} // namespace file_transfer
