#include "simulator/request_report.h"

#include <memory>

#include "KvPlatformHost.h"
#include "platform/error_lists.h"
#include "platform/xdr.h"
#include "simulator/procedure_names.h"
#include "simulator/reply_layout.h"

namespace simulated_target {
namespace {

/// None behind the end.
std::optional<std::uint32_t> wordAt(kvrpc::ByteSpan bytes, std::size_t offset) {
    if (offset > bytes.size()) { return {}; }
    Xdr xdr = Xdr::decoder(bytes.subspan(offset));
    std::uint32_t word = 0;
    return xdr_u_int(xdr, word) ? std::optional{word} : std::nullopt;
}

} // namespace

std::vector<ReportedMessage> messagesOf(kvrpc::ByteSpan list) {
    if (list.empty()) { return {}; }
    const std::unique_ptr<KvCErrorListPool, void (*)(KvCErrorListPool*)> pool{
        KvPlatform_createPool(), [](KvCErrorListPool* unused) { KvPlatform_deletePool(unused); }};
    if (!pool) { return {}; }
    pool->deSerialize(list.data(), static_cast<std::uint32_t>(list.size()));
    std::vector<ReportedMessage> messages;
    for (std::uint32_t i = 0; i < KvPlatform_entryCount(*pool); ++i) {
        const char* const text = KvPlatform_entryText(*pool, i);
        messages.push_back({KvPlatform_entryCode(*pool, i), text == nullptr ? "" : text});
    }
    return messages;
}

RequestReport reportOf(const kvrpc::RpcCall& call, std::uint64_t number) {
    RequestReport report;
    report.number = number;
    report.time = std::chrono::system_clock::now();
    report.peer = call.peer;
    report.program = call.program;
    report.procedure = call.procedure;
    const auto argument = [&](int place) {
        return place < 0 ? std::nullopt : wordAt(call.arguments, 4 * static_cast<std::size_t>(place));
    };
    if (const NamedProcedure* const procedure = findProcedure(call.program, call.procedure)) {
        report.application = argument(procedure->applicationAt);
        report.parameter = argument(procedure->parameterAt);
    }
    return report;
}

void addAnswer(RequestReport& report, const kvrpc::RpcReply& reply) {
    report.status = reply.status;
    if (reply.status != kvrpc::AcceptStatus::success) { return; }
    const kvrpc::ByteSpan results{reply.results};
    if (const auto at = findField(report.program, report.procedure, results, ReplyField::result)) {
        report.result = static_cast<std::int32_t>(wordAt(results, *at).value_or(0));
    }
    if (const auto at = findField(report.program, report.procedure, results, ReplyField::errorList)) {
        Xdr xdr = Xdr::decoder(results.subspan(*at));
        std::vector<std::uint8_t> list;
        if (xdr_bytes(xdr, list)) { report.messages = messagesOf(list); }
    }
}

} // namespace simulated_target
