#include "frame/messages.h"

namespace applman {
namespace {

constexpr std::array<const char*, kMessageCount> textsOf(const std::array<MessageRow, kMessageCount>& rows) {
    std::array<const char*, kMessageCount> texts{};
    for (std::size_t index = 0; index < rows.size(); ++index) {
        texts[index] = rows[index].text;
    }
    return texts;
}

constexpr std::array<const char*, kMessageCount> kTexts = textsOf(kMessages);
constexpr KvResRange kRange{0, kMessageCount};

} // namespace

constinit const KvResText kMessageTable{kTexts.data(), &kRange, 1, kMessageBase};

} // namespace applman
