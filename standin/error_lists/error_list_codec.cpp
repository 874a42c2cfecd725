#include "error_lists/error_list_codec.h"

#include <utility>

#include "platform/xdr.h"

namespace error_list_codec {
namespace {

/// Bytes of memory that one list may take, so that no target takes a host's memory with one reply.
constexpr std::size_t kLargestList = 8 * 1024 * 1024;

bool xdr_argument(Xdr& x, std::optional<std::string>& text) { return xdr_string(x, text); }
bool xdr_argument(Xdr& x, std::uint32_t& number) { return xdr_u_int(x, number); }
bool xdr_argument(Xdr& x, std::int32_t& number) { return xdr_int(x, number); }

/// Readies an argument of the right kind per conversion.
bool prepareArguments(KvErrorListEntry& entry, const Xdr& x) {
    const std::string_view signature = *entry.signature;
    const std::size_t count = signature.size() / 2;
    if (knownLength(signature) != signature.size() || count > x.left() / 4) { return false; }
    entry.arguments.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        switch (signature[2 * i + 1]) {
        case 's':
            break;
        case 'd':
            entry.arguments[i].emplace<std::int32_t>();
            break;
        default:
            entry.arguments[i].emplace<std::uint32_t>();
            break;
        }
    }
    return true;
}

bool xdr_signature(Xdr& x, KvErrorListEntry& entry) {
    if (!xdr_string(x, entry.signature)) { return false; }
    if (x.encoding()) { return true; }
    if (!prepareArguments(entry, x)) { return false; }
    if (entry.signature->empty()) { entry.signature.reset(); }
    return true;
}

bool xdr_entry(Xdr& x, KvErrorListEntry& entry) {
    return xdr_u_int(x, entry.code) && xdr_u_int(x, entry.line) && xdr_string(x, entry.operation) &&
           xdr_signature(x, entry) && xdr_vector(x, entry.arguments, [](Xdr& cursor, auto& argument) {
               return std::visit([&](auto& value) { return xdr_argument(cursor, value); }, argument);
           });
}

/// The memory that an entry takes, in bytes.
std::size_t footprint(const KvErrorListEntry& entry) noexcept {
    std::size_t bytes = sizeof entry + entry.operation.size() + (entry.signature ? entry.signature->size() : 0) +
                        entry.arguments.size() * sizeof entry.arguments[0];
    for (const auto& argument : entry.arguments) {
        const auto* const text = std::get_if<std::optional<std::string>>(&argument);
        bytes += text == nullptr || !*text ? 0 : (*text)->size();
    }
    return bytes;
}

} // namespace

std::size_t knownLength(std::string_view signature) noexcept {
    constexpr std::string_view kLetters = "sudx";
    std::size_t length = 0;
    while (length + 1 < signature.size() && signature[length] == '%' &&
           kLetters.find(signature[length + 1]) != std::string_view::npos) {
        length += 2;
    }
    return length;
}

std::optional<std::deque<KvErrorListEntry>> decode(std::span<const std::uint8_t> bytes) {
    Xdr x = Xdr::decoder(bytes);
    std::uint32_t count = 0;
    if (!xdr_u_int(x, count)) { return {}; }

    std::deque<KvErrorListEntry> entries;
    std::size_t budget = kLargestList;
    for (std::uint32_t i = 0; i < count; ++i) {
        KvErrorListEntry entry;
        if (!xdr_entry(x, entry)) { return {}; }
        const std::size_t size = footprint(entry);
        if (size > budget) { continue; }
        budget -= size;
        entries.push_back(std::move(entry));
    }
    if (x.left() != 0) { return {}; }
    return entries;
}

} // namespace error_list_codec

std::vector<std::uint8_t> KvErrorListAccess::serialize(const std::vector<KvErrorListEntry>& entries) {
    std::vector<std::uint8_t> bytes;
    Xdr x = Xdr::encoder(bytes);
    std::vector<KvErrorListEntry> list = entries; // a routine of both directions takes what it may change
    xdr_array(x, list, error_list_codec::xdr_entry);
    return bytes;
}
