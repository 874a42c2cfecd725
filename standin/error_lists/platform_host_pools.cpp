// A host's pools and its view of their entries.
#include <string>
#include <utility>

#include "KvPlatformHost.h"
#include "error_lists/error_list_state.h"
#include "error_lists/message_tables.h"

namespace {

const KvErrorListEntry* entryAt(const KvCErrorListPool& pool, std::uint32_t index) noexcept {
    return index < pool.getErrorCount() ? &KvErrorListAccess::state(pool)->entries[index] : nullptr;
}

/// The text, owned by the pool until it changes.
const char* lend(const KvCErrorListPool& pool, std::string text) {
    return KvErrorListAccess::state(pool)->lentTexts.insert(std::move(text)).first->c_str();
}

} // namespace

KvCErrorListPool* KvPlatform_createPool() noexcept {
    return KvCErrorManager::getInstance()->createErrorList(0, 1, 20, 5, 300);
}

void KvPlatform_deletePool(KvCErrorListPool* pool) noexcept { KvCErrorManager::getInstance()->deleteErrorList(pool); }

void KvPlatform_clearPool(KvCErrorListPool& pool) noexcept { pool.reset(); }

std::uint32_t KvPlatform_entryCount(const KvCErrorListPool& pool) noexcept { return pool.getErrorCount(); }

std::uint32_t KvPlatform_entryCode(const KvCErrorListPool& pool, std::uint32_t index) noexcept {
    return pool.getErrorCode(index);
}

std::uint32_t KvPlatform_entryLine(const KvCErrorListPool& pool, std::uint32_t index) noexcept {
    const KvErrorListEntry* const entry = entryAt(pool, index);
    return entry == nullptr ? 0 : entry->line;
}

const char* KvPlatform_entryOperation(const KvCErrorListPool& pool, std::uint32_t index) noexcept {
    const KvErrorListEntry* const entry = entryAt(pool, index);
    return entry == nullptr ? nullptr : entry->operation.c_str();
}

const char* KvPlatform_entrySignature(const KvCErrorListPool& pool, std::uint32_t index) noexcept {
    const KvErrorListEntry* const entry = entryAt(pool, index);
    return entry == nullptr || !entry->signature ? nullptr : entry->signature->c_str();
}

std::uint32_t KvPlatform_entryArgumentCount(const KvCErrorListPool& pool, std::uint32_t index) noexcept {
    const KvErrorListEntry* const entry = entryAt(pool, index);
    return entry == nullptr ? 0 : static_cast<std::uint32_t>(entry->arguments.size());
}

const char* KvPlatform_entryArgument(const KvCErrorListPool& pool, std::uint32_t index, std::uint32_t argument) noexcept
    try {
    const KvErrorListEntry* const entry = entryAt(pool, index);
    if (entry == nullptr || argument >= entry->arguments.size()) { return nullptr; }
    return lend(pool, message_tables::argumentText(*entry, argument));
} catch (...) { return nullptr; }

const char* KvPlatform_entryText(const KvCErrorListPool& pool, std::uint32_t index) noexcept try {
    const KvErrorListEntry* const entry = entryAt(pool, index);
    return entry == nullptr ? nullptr : lend(pool, message_tables::render(*entry));
} catch (...) { return nullptr; }

void KvPlatform_addEntry(KvCErrorListPool& pool, std::uint32_t code) noexcept { pool.setError(code, 0, "", nullptr); }
