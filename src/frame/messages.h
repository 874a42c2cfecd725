// The message catalogue: every code of the library, its text and the signature of its arguments. The rows themselves
// stand in message_rows.h; here they become what is reported (Msg) and what is registered (kMessages).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/error_lists.h"

namespace applman {

inline constexpr std::uint32_t kMessageBase = 0x12500000;
inline constexpr std::size_t kMessageCount = 97;

/// The messages that are reported.
enum class Msg : std::uint32_t {
    invalidArgument = 1024, // the error-handling library's generic code; its text is there
#define MESSAGE(name, code, signature, text) name = (code),
#define UNREPORTED(code, text)
#include "frame/message_rows.h"
};

struct MessageRow {
    std::uint32_t code;
    const char* signature; // null when the message has no arguments
    const char* text;
};

inline constexpr std::array<MessageRow, kMessageCount> kMessages{{
#define MESSAGE(name, code, signature, text) {code, signature, text},
#define UNREPORTED(code, text) {code, nullptr, text},
#include "frame/message_rows.h"
}};

constexpr bool messagesAreInOrder() {
    for (std::size_t index = 0; index < kMessages.size(); ++index) {
        if (kMessages[index].code != kMessageBase + index) { return false; }
    }
    return true;
}
static_assert(messagesAreInOrder());

constexpr std::uint32_t codeOf(Msg message) { return static_cast<std::uint32_t>(message); }

constexpr const char* signatureOf(Msg message) {
    return message == Msg::invalidArgument ? nullptr : kMessages[codeOf(message) - kMessageBase].signature;
}

/// The descriptor under which the catalogue is registered with the error manager.
extern const KvResText kMessageTable;

} // namespace applman
