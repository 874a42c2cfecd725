#include "platform/error_lists.h"

#include <cstdarg>
#include <iterator>
#include <new>
#include <span>
#include <string_view>
#include <utility>

#include "error_lists/error_list_codec.h"
#include "error_lists/error_list_state.h"
#include "error_lists/message_tables.h"

namespace {

KvErrorListEntry makeEntry(std::uint32_t code, std::uint32_t line, const char* operation, std::string_view signature,
                           std::va_list arguments) {
    KvErrorListEntry entry{code, line, operation == nullptr ? "" : operation, {}, {}};
    // Behind an unknown conversion nothing can be read, since the size of its argument is unknown.
    signature = signature.substr(0, error_list_codec::knownLength(signature));
    if (!signature.empty()) { entry.signature = signature; }
    for (std::size_t i = 1; i < signature.size(); i += 2) {
        if (signature[i] == 's') {
            const char* const text = va_arg(arguments, const char*);
            entry.arguments.emplace_back(std::string{text == nullptr ? "(null)" : text});
        } else if (signature[i] == 'd') {
            entry.arguments.emplace_back(std::int32_t{va_arg(arguments, int)});
        } else {
            entry.arguments.emplace_back(std::uint32_t{va_arg(arguments, unsigned int)});
        }
    }
    return entry;
}

} // namespace

KvCErrorList::KvCErrorList() noexcept : state_(nullptr) {
    try {
        state_ = new State;
    } catch (...) {} // the list stays empty
}

KvCErrorList::~KvCErrorList() { delete state_; }

void KvCErrorList::setError(std::uint32_t code, std::uint32_t line, const char* operation, const char* signature,
                            ...) noexcept {
    if (state_ == nullptr) { return; }
    std::va_list arguments;
    va_start(arguments, signature);
    try {
        state_->entries.push_back(makeEntry(code, line, operation, signature == nullptr ? "" : signature, arguments));
    } catch (...) {} // the entry is lost
    va_end(arguments);
    state_->lentTexts.clear(); // not before, since they may be arguments
}

std::uint32_t KvCErrorList::getErrorCount() const noexcept {
    return state_ == nullptr ? 0 : static_cast<std::uint32_t>(state_->entries.size());
}

std::uint32_t KvCErrorList::getErrorCode(std::uint32_t index) const noexcept {
    return index < getErrorCount() ? state_->entries[index].code : 0;
}

void KvCErrorList::reset() noexcept {
    if (state_ == nullptr) { return; }
    state_->lentTexts.clear();
    state_->entries.clear();
}

std::int32_t KvCErrorList::deSerialize(const std::uint8_t* bytes, std::uint32_t length) noexcept try {
    if (state_ == nullptr || bytes == nullptr) { return -1; }
    state_->lentTexts.clear();
    auto received = error_list_codec::decode({bytes, length});
    if (!received) { return -1; }
    for (KvErrorListEntry& entry : *received) {
        state_->entries.push_back(std::move(entry));
    }
    return 0;
} catch (...) { return -1; }

KvCErrorListPool& KvCErrorListPool::operator+=(const KvCErrorListPool& other) noexcept {
    if (state_ == nullptr) { return *this; }
    state_->lentTexts.clear();
    const std::uint32_t count = other.getErrorCount(); // of before, when a pool is appended to itself
    for (std::uint32_t i = 0; i < count; ++i) {
        try {
            state_->entries.emplace_back(other.state_->entries[i]);
        } catch (...) {} // the entry is lost
    }
    return *this;
}

KvCErrorManager* KvCErrorManager::getInstance() noexcept {
    static KvCErrorManager manager;
    return &manager;
}

KvCErrorListPool* KvCErrorManager::createErrorList(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t,
                                                   std::uint32_t) noexcept {
    auto* const pool = new (std::nothrow) KvCErrorListPool;
    if (pool != nullptr && KvErrorListAccess::state(*pool) != nullptr) { return pool; }
    delete pool;
    return nullptr;
}

void KvCErrorManager::deleteErrorList(KvCErrorListPool* pool) noexcept { delete pool; }

std::int32_t KvCErrorManager::_registerMessages(const KvResText& table) noexcept {
    return message_tables::add(table) ? 0 : -1;
}

std::int32_t KvCErrorManager::_unregisterMessages(const KvResText& table) noexcept {
    return message_tables::remove(table) ? 0 : -1;
}

std::vector<KvErrorListEntry> KvErrorListAccess::entries(const KvCErrorList& list) {
    if (list.state_ == nullptr) { return {}; }
    return {list.state_->entries.begin(), list.state_->entries.end()};
}
