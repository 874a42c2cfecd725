// Rows of a program's dispatch table: a procedure's number, and what decodes its request, serves it and encodes its reply.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "rpc_server/rpc_server.h"

namespace simulated_target {

template <class Record>
std::optional<Record> decodeRecord(std::span<const std::uint8_t> bytes) {
    std::optional<Record> record{std::in_place};
    Xdr xdr = Xdr::decoder(bytes);
    if (!xdr_record(xdr, *record)) { record.reset(); }
    return record;
}

template <class Record>
std::vector<std::uint8_t> encodeRecord(Record record) {
    std::vector<std::uint8_t> bytes;
    Xdr xdr = Xdr::encoder(bytes);
    if (!xdr_record(xdr, record)) { bytes.clear(); }
    return bytes;
}

inline kvrpc::RpcReply refusedCall(kvrpc::AcceptStatus status) {
    kvrpc::RpcReply reply;
    reply.status = status;
    return reply;
}

template <class Reply>
kvrpc::RpcReply repliedCall(Reply record) {
    kvrpc::RpcReply reply;
    reply.results = encodeRecord(std::move(record));
    return reply;
}

/// `Server` is what holds the state that a procedure works on.
template <class Server>
struct ProcedureRow {
    std::uint32_t number;
    kvrpc::RpcReply (*serve)(Server& server, std::span<const std::uint8_t> arguments);
};

/// Serves a procedure with a member function of `Server` that takes the request and returns the reply.
template <class Server, auto kMember, class Request>
kvrpc::RpcReply serveWith(Server& server, std::span<const std::uint8_t> arguments) {
    const std::optional<Request> request = decodeRecord<Request>(arguments);
    if (!request) { return refusedCall(kvrpc::AcceptStatus::garbageArguments); }
    return repliedCall((server.*kMember)(*request));
}

template <class Server, std::size_t kCount>
kvrpc::RpcReply serveFrom(const ProcedureRow<Server> (&rows)[kCount], Server& server, std::uint32_t procedure,
                          std::span<const std::uint8_t> arguments) {
    for (const ProcedureRow<Server>& row : rows) {
        if (row.number == procedure) { return row.serve(server, arguments); }
    }
    return refusedCall(kvrpc::AcceptStatus::procedureUnavailable);
}

} // namespace simulated_target
