// Reporting a failure: message, source line and arguments in one statement, proved against the catalogue at compile time.
// Reporting never throws, so it may stand in a handler: a list that lacks memory loses the entry. Nothing else in the
// library calls setError.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "frame/messages.h"
#include "frame/status.h"
#include "platform/error_lists.h"

namespace applman {

namespace reporting {

constexpr const char* argument(const char* text) { return text; }
inline const char* argument(const std::string& text) { return text.c_str(); }
constexpr std::uint32_t argument(std::uint32_t value) { return value; }
constexpr std::int32_t argument(std::int32_t value) { return value; }
constexpr std::int32_t argument(Status value) { return numberOf(value); }
template <class T>
void argument(T) = delete; // nothing wider slips through

template <class T>
constexpr char kindOf() {
    using Argument = decltype(argument(std::declval<const T&>()));
    return std::is_same_v<Argument, const char*> ? 's' : std::is_same_v<Argument, std::uint32_t> ? 'u' : 'd';
}

template <class... Args>
constexpr bool fits(const char* signature) {
    const std::array<char, sizeof...(Args) + 1> kinds{kindOf<Args>()..., '\0'};
    const std::string_view wanted{signature == nullptr ? "" : signature};
    if (wanted.size() != 2 * sizeof...(Args)) { return false; }
    for (std::size_t i = 0; i < sizeof...(Args); ++i) {
        const char letter = wanted[2 * i + 1] == 'x' ? 'u' : wanted[2 * i + 1];
        if (wanted[2 * i] != '%' || letter != kinds[i]) { return false; }
    }
    return true;
}

inline void argumentsDoNotFitTheMessage() {} // not constexpr: naming it stops the build

/// A message with the line that reports it; made from the message alone, where it is named.
template <class... Args>
struct Reported {
    Msg message;
    std::uint32_t line;
    // NOLINTNEXTLINE(google-explicit-constructor): a message is named where it is reported
    consteval Reported(Msg named, std::uint32_t where = __builtin_LINE()) : message(named), line(where) {
        if (!fits<Args...>(signatureOf(named))) { argumentsDoNotFitTheMessage(); }
    }
};

} // namespace reporting

/// Adds messages to one list under the name of one operation. Cheap to make and to copy; refers to both.
class Reporter {
public:
    Reporter(KvCErrorListPool& pool, const char* operation) : pool_(pool), operation_(operation) {}

    KvCErrorListPool& pool() const { return pool_; }
    const char* operation() const { return operation_; }

    template <class... Args>
    void add(reporting::Reported<std::type_identity_t<Args>...> what, const Args&... args) const noexcept {
        if constexpr (sizeof...(Args) == 0) {
            pool_.setError(codeOf(what.message), what.line, operation_, nullptr);
        } else {
            pool_.setError(codeOf(what.message), what.line, operation_, signatureOf(what.message),
                           reporting::argument(args)...);
        }
    }

    /// Adds the message; the result is `status`, for the return statement.
    template <class... Args>
    Status fail(reporting::Reported<std::type_identity_t<Args>...> what, Status status,
                const Args&... args) const noexcept {
        add<Args...>(what, args...);
        return status;
    }

    /// Reports a remote call that failed; the message names the operation that made the call.
    Status failRemoteCall(std::uint32_t line = __builtin_LINE()) const noexcept {
        pool_.setError(codeOf(Msg::remoteCallFailed), line, operation_, "%s", operation_);
        return Status::remoteCall;
    }

    /// Adds a message without arguments that a table chose.
    void addChosen(Msg message, std::uint32_t line = __builtin_LINE()) const noexcept {
        pool_.setError(codeOf(message), line, operation_, nullptr);
    }

private:
    KvCErrorListPool& pool_;
    const char* operation_;
};

} // namespace applman
