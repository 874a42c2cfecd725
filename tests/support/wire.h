// Records to bytes and back, and replies for scripted targets.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <stdexcept>
#include <vector>

#include "error_lists/error_list_access.h"
#include "protocol/records.h"
#include "simulator/simulated_target.h"

namespace wire {

using applman::xdr_record;
using simulated_target::ScriptedReply;

template <class Record>
std::vector<std::uint8_t> bytesOf(Record record) {
    std::vector<std::uint8_t> bytes;
    Xdr encoder = Xdr::encoder(bytes);
    if (!xdr_record(encoder, record)) { throw std::logic_error("a record that cannot be encoded"); }
    return bytes;
}

template <class Record>
Record recordOf(const std::vector<std::uint8_t>& bytes) {
    Record record;
    Xdr decoder = Xdr::decoder(bytes);
    if (!xdr_record(decoder, record) || decoder.left() != 0) { throw std::logic_error("bytes of another record"); }
    return record;
}

/// What is encoded takes whole words.
inline std::vector<std::uint32_t> wordsOf(const std::vector<std::uint8_t>& bytes) {
    std::vector<std::uint32_t> words(bytes.size() / 4);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        words.at(i / 4) = words[i / 4] << 8 | bytes[i];
    }
    return words;
}

/// A serialised error list with these codes, reported by "target".
inline applman::ErrorListBytes errorList(std::initializer_list<std::uint32_t> codes) {
    std::vector<KvErrorListEntry> entries;
    for (const std::uint32_t code : codes) {
        entries.push_back({.code = code, .line = 1, .operation = "target"});
    }
    return KvErrorListAccess::serialize(entries);
}

inline ScriptedReply replyWith(kvrpc::AcceptStatus status, std::vector<std::uint8_t> results = {}) {
    return {.reply = {status, std::move(results)}};
}

template <class Record>
ScriptedReply reply(const Record& record) {
    return replyWith(kvrpc::AcceptStatus::success, bytesOf(record));
}

inline ScriptedReply result(std::int32_t value, std::initializer_list<std::uint32_t> codes = {}) {
    return reply(applman::TApplManResult{value, codes.size() == 0 ? applman::ErrorListBytes{} : errorList(codes)});
}

inline ScriptedReply value(applman::TApplManValue typed) {
    return reply(applman::TApplManValueResult{0, std::move(typed), {}});
}

/// The refusal of an information item.
inline ScriptedReply noValue(std::initializer_list<std::uint32_t> codes = {}) {
    return reply(applman::TApplManValueResult{-1, {}, errorList(codes)});
}

/// A call that fails: the target answers that something went wrong inside it.
inline ScriptedReply failedCall() { return replyWith(kvrpc::AcceptStatus::systemError); }

inline ScriptedReply notOffered() { return replyWith(kvrpc::AcceptStatus::procedureUnavailable); }

} // namespace wire
