#include "file_transfer/transfer_session.h"

#include <memory>

namespace file_transfer {

Answer readAnswer(kvrpc::ByteSpan record) {
    Reply reply;
    const kvrpc::Failure failure = kvrpc::readReply(
        record, [](Xdr& xdr, void* decoded) { return xdr_record(xdr, *static_cast<Reply*>(decoded)); }, &reply);
    return {failure, reply.result};
}

kvrpc::Failure TransferSession::connect() {
    std::shared_ptr<kvrpc::Connection> connection;
    return channel_.connect(connection, replyDeadline());
}

Answer TransferSession::call(kvrpc::Bytes record) {
    const kvrpc::Deadline deadline = replyDeadline();
    std::unique_ptr<kvrpc::Call> call;
    std::shared_ptr<kvrpc::Connection> connection;
    if (const auto failure = channel_.start(call, connection, record, deadline)) { return {failure}; }
    if (const auto failure = connection->wait(*call, deadline)) { return {failure}; }
    return readAnswer(call->reply());
}

} // namespace file_transfer
