#include "error_lists/message_tables.h"

#include <algorithm>
#include <charconv>
#include <mutex>
#include <new>
#include <optional>
#include <string_view>
#include <vector>

#include "error_lists/platform_messages.h"

namespace message_tables {
namespace {

struct Registry {
    std::mutex mutex{};
    std::vector<KvResText> tables{};
};

/// Never destroyed, so that a library that is unloaded last can still withdraw its table.
Registry& registry() noexcept {
    alignas(Registry) static std::byte storage[sizeof(Registry)];
    static Registry* const instance = new (storage) Registry;
    return *instance;
}

bool isSame(const KvResText& a, const KvResText& b) noexcept {
    return a.texts == b.texts && a.range == b.range && a.version == b.version && a.baseCode == b.baseCode;
}

const char* textIn(const KvResText& table, std::uint32_t code) noexcept {
    const std::uint64_t first = std::uint64_t{table.baseCode} + table.range->first;
    if (code < first || code - first >= table.range->count) { return nullptr; }
    return table.texts[code - first];
}

/// A copy, since the table may be withdrawn as soon as the lock is released.
std::optional<std::string> registeredText(std::uint32_t code) {
    if (const char* const text = platform_messages::builtInText(code)) { return text; }
    Registry& all = registry();
    const std::lock_guard lock{all.mutex};
    for (const KvResText& table : all.tables) {
        if (const char* const text = textIn(table, code)) { return text; }
    }
    return {};
}

template <class Number>
std::string digits(Number number, int base) {
    char buffer[16];
    const auto end = std::to_chars(std::begin(buffer), std::end(buffer), number, base).ptr;
    return {buffer, end};
}

std::string withArguments(std::string_view text, const KvErrorListEntry& entry) {
    std::string result;
    while (!text.empty()) {
        const std::size_t plain = std::min(text.find('%'), text.size());
        result += text.substr(0, plain);
        text.remove_prefix(plain);
        const char digit = text.size() < 2 ? '\0' : text[1];
        const auto index = static_cast<std::size_t>(digit - '1');
        if (digit >= '1' && digit <= '5' && index < entry.arguments.size()) {
            result += argumentText(entry, index);
            text.remove_prefix(2);
        } else if (!text.empty()) {
            result += text.front();
            text.remove_prefix(1);
        }
    }
    return result;
}

std::string withoutTable(const KvErrorListEntry& entry) {
    std::string result = "Message 0x" + digits(entry.code, 16) + " is not registered.";
    for (std::size_t i = 0; i < entry.arguments.size(); ++i) {
        result += (i == 0 ? " Its arguments: " : ", ") + argumentText(entry, i);
    }
    return result;
}

} // namespace

bool add(const KvResText& table) noexcept try {
    if (table.texts == nullptr || table.range == nullptr) { return false; }
    Registry& all = registry();
    const std::lock_guard lock{all.mutex};
    all.tables.push_back(table);
    return true;
} catch (...) { return false; }

bool remove(const KvResText& table) noexcept try {
    Registry& all = registry();
    const std::lock_guard lock{all.mutex};
    const auto found = std::ranges::find_if(all.tables, [&](const KvResText& each) { return isSame(each, table); });
    if (found == all.tables.end()) { return false; }
    all.tables.erase(found);
    if (all.tables.empty()) { std::vector<KvResText>{}.swap(all.tables); } // nothing stays behind when we are unloaded
    return true;
} catch (...) { return false; }

std::string render(const KvErrorListEntry& entry) {
    const auto text = registeredText(entry.code);
    return text ? withArguments(*text, entry) : withoutTable(entry);
}

std::string argumentText(const KvErrorListEntry& entry, std::size_t index) {
    const auto& argument = entry.arguments[index];
    if (const auto* const text = std::get_if<std::optional<std::string>>(&argument)) { return text->value_or(""); }
    if (const auto* const number = std::get_if<std::int32_t>(&argument)) { return digits(*number, 10); }
    return digits(std::get<std::uint32_t>(argument), (*entry.signature)[2 * index + 1] == 'x' ? 16 : 10);
}

} // namespace message_tables
