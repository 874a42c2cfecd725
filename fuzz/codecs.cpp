// What reads bytes of others in memory: records, headers, error lists, paths, texts.
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <iterator>

#include "KvPlatformHost.h"
#include "error_lists/error_list_access.h"
#include "fuzz/fuzz.h"
#include "platform/host_system.h"
#include "protocol/records.h"
#include "rpc_client/rpc_channel.h"
#include "simulator/store_path.h"

using namespace applman;
using namespace host_system;
using namespace simulated_target;

/// What was decoded encodes to as many bytes and decodes from them to the same.
template <class Record>
void record(Input input) {
    const auto encoded = [](Record& decoded) {
        Bytes bytes;
        Xdr encoder = Xdr::encoder(bytes);
        require(xdr_record(encoder, decoded));
        return bytes;
    };
    Record decoded;
    Xdr decoder = Xdr::decoder(input);
    if (xdr_record(decoder, decoded)) {
        const Bytes bytes = encoded(decoded);
        require(bytes.size() == input.size() - decoder.left());
        Record again;
        Xdr second = Xdr::decoder(bytes);
        require(xdr_record(second, again) && encoded(again) == bytes);
    }
}

void value(Input input) { record<TApplManValue>(input); }

/// The first byte says which.
void reply_record(Input input) {
    static constexpr void (*kRecords[])(Input) = {record<TApplManResult>,         record<TApplManValueResult>,
                                                  record<TApplManRegisterResult>, record<TApplManFileListResult>,
                                                  record<TApplManAddFileResult>,  record<TApplManGroupResult>,
                                                  record<TApplManCoreIdResult>,   record<TApplManFlashListResult>};
    const std::size_t which = takeByte(input) % std::size(kRecords);
    kRecords[which](input);
}

/// With the results of a reply that was accepted.
void reply_header(Input input) {
    const kvrpc::ReplyHead head = kvrpc::parseReply(input);
    const auto kind = kvrpc::kindOf(input);
    const bool accepted = head.kind == kvrpc::ReplyHead::Kind::accepted;
    require(head.kind == kvrpc::ReplyHead::Kind::malformed || (kind && kind->reply));
    require(accepted ? head.results.data() + head.results.size() == input.data() + input.size() : head.results.empty());
    TApplManValueResult results;
    const auto decode = [](Xdr& x, void* to) { return xdr_record(x, *static_cast<TApplManValueResult*>(to)); };
    require(kvrpc::readReply(input, decode, &results) || (accepted && head.status == 0));
}

void call_header(Input input) {
    const auto head = kvrpc::parseCall(input);
    const auto kind = kvrpc::kindOf(input);
    require(!head || (kind && !kind->reply && kind->xid == head->xid));
    if (!head || head->arguments.empty()) { return; }
    require(head->arguments.data() + head->arguments.size() == input.data() + input.size());
}

/// All of a list or nothing is taken in, what was taken in serialises to the same list, every entry has a text.
void error_list(Input input) {
    const auto serialized = [](Input bytes) {
        KvCErrorListPool* const pool = KvPlatform_createPool();
        const bool taken = pool->deSerialize(bytes.data(), static_cast<std::uint32_t>(bytes.size())) == 0;
        const std::uint32_t count = pool->getErrorCount();
        require(taken || count == 0);
        for (std::uint32_t i = 0; i < count; ++i) {
            require(KvPlatform_entryText(*pool, i) != nullptr);
        }
        Bytes list = taken ? KvErrorListAccess::serialize(KvErrorListAccess::entries(*pool)) : Bytes{};
        KvPlatform_deletePool(pool);
        return list;
    };
    const Bytes list = serialized(input);
    require(list.empty() || (list.size() == input.size() && serialized(list) == list));
}

/// What is taken names, by the system's own rules, something below the root.
void store_path(Input input) {
    std::string text{input.begin(), input.end()};
    const auto path = parseStorePath(text);
    if (!path) { return; }
    require(!path->empty() && text.find('\0') == std::string::npos);
    std::replace(text.begin(), text.end(), '\\', '/');
    std::string below = "/root";
    for (const std::string& name : *path) {
        require(isStoreName(name) && name.find_first_of("/\\:") == std::string::npos);
        below += '/' + name;
    }
    require(below == "/root/" + text && std::filesystem::path{below}.lexically_normal() == below);
}

/// The result is well formed, and what was well formed comes back.
void utf(Input input) {
    const auto wellFormed = [](std::u16string_view text) {
        for (std::size_t i = 0; i < text.size(); ++i) {
            const bool pair = (text[i] & 0xFC00) == 0xD800 && i + 1 < text.size() && (text[i + 1] & 0xFC00) == 0xDC00;
            if (!pair && (text[i] & 0xF800) == 0xD800) { return false; }
            i += pair ? 1 : 0;
        }
        return true;
    };
    const std::string text{input.begin(), input.end()};
    const std::u16string wide = utf16FromUtf8(text);
    require(wellFormed(wide) && utf16FromUtf8(utf8FromUtf16(wide)) == wide);
    require(wide.find(u'\uFFFD') != std::u16string::npos || utf8FromUtf16(wide) == text);

    std::u16string units(input.size() / 2, u'\0');
    std::memcpy(units.data(), text.data(), 2 * units.size());
    const std::u16string back = utf16FromUtf8(utf8FromUtf16(units));
    require(wellFormed(back) && back.size() == units.size() && (back == units) == wellFormed(units));
}
