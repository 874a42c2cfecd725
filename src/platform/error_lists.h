// Error lists and pools, the error manager and the registry of message tables, as the library calls them.
#pragma once

#include <cstdint>

#include "platform/KvExport.h"

/// A list of reported messages in the order in which they were added. Not safe for concurrent use.
class KVPLATFORM_API KvCErrorList {
public:
    KvCErrorList(const KvCErrorList&) = delete;
    KvCErrorList& operator=(const KvCErrorList&) = delete;

    /// Appends one entry. `signature` is null or one conversion of %s, %u, %d, %x per argument, without separators;
    /// texts are copied. An entry for which there is no memory is lost.
    void setError(std::uint32_t code, std::uint32_t line, const char* operation, const char* signature, ...) noexcept
        KV_PRINTF_LIKE(5, 6);

    std::uint32_t getErrorCount() const noexcept;

    /// `index` is 0 to count - 1; any other yields 0.
    std::uint32_t getErrorCode(std::uint32_t index) const noexcept;

    /// Removes every entry; the list stays usable.
    void reset() noexcept;

    /// Appends the entries of a serialised list. Bytes that are not one whole list add nothing. Result: 0, or negative.
    std::int32_t deSerialize(const std::uint8_t* bytes, std::uint32_t length) noexcept;

protected:
    KvCErrorList() noexcept;
    ~KvCErrorList();

    friend struct KvErrorListAccess; // the error-handling library's own view of the entries
    struct State;
    State* state_; // null when there was no memory: the list then stays empty
};

class KVPLATFORM_API KvCErrorListPool : public KvCErrorList {
public:
    /// Appends all entries of `other`, in order. `other` keeps its own.
    KvCErrorListPool& operator+=(const KvCErrorListPool& other) noexcept;

private:
    friend class KvCErrorManager;
    KvCErrorListPool() noexcept = default;
    ~KvCErrorListPool() = default;
};

/// Numbers of the texts of a table: the first, and how many.
struct KvResRange {
    std::uint32_t first;
    std::uint32_t count;
};

/// A table of message texts. All that it refers to must live until it is withdrawn.
struct KvResText {
    const char* const* texts;
    const KvResRange* range;
    std::uint32_t version;
    std::uint32_t baseCode;
};

class KVPLATFORM_API KvCErrorManager {
public:
    /// The one manager of the process; lives until the process ends.
    static KvCErrorManager* getInstance() noexcept;

    /// A new, empty pool, or null when there is no memory. The library always passes 0, 1, 20, 5, 300.
    KvCErrorListPool* createErrorList(std::uint32_t kind, std::uint32_t mode, std::uint32_t initialEntries,
                                      std::uint32_t growth, std::uint32_t maximumText) noexcept;
    void deleteErrorList(KvCErrorListPool* pool) noexcept;

    static std::int32_t _registerMessages(const KvResText& table) noexcept;
    static std::int32_t _unregisterMessages(const KvResText& table) noexcept;

private:
    KvCErrorManager() noexcept = default;
    ~KvCErrorManager() = default;
};
