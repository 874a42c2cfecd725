// What becomes of `size` differs on purpose: a value of fixed size leaves it, a text sets it only when it does not fit,
// arrays and addresses always set it. Nothing is copied unless all of it fits.
#include "protocol/information_decode.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <new>
#include <string>

#include "frame/report.h"
#include "platform/rtos.h"
#include "protocol/application_states.h"
#include "protocol/information_items.h"

namespace applman {
namespace {

std::int32_t sizeFrom(std::size_t bytes) {
    return static_cast<std::int32_t>(std::min<std::size_t>(bytes, std::numeric_limits<std::int32_t>::max()));
}

bool fits(std::size_t bytes, const CallerBuffer& to) {
    return to.capacity >= 0 && bytes <= static_cast<std::size_t>(to.capacity);
}

void copyBytes(const CallerBuffer& to, const void* source, std::size_t bytes) {
    if (bytes > 0) { std::memcpy(to.bytes, source, bytes); }
}

/// A value whose size was checked before it was asked for.
template <ValueTag tag>
Status copyFixed(const Reporter&, TApplManValue& value, const CallerBuffer& to) {
    copyBytes(to, &std::get<tag>(value), sizeof std::get<tag>(value));
    return Status::ok;
}

Status copyState(const Reporter& report, TApplManValue& value, const CallerBuffer& to) {
    const std::int32_t state = getExternApplState(report.pool(), std::get<kTagWord>(value));
    copyBytes(to, &state, sizeof state);
    return Status::ok;
}

Status copyText(const Reporter& report, TApplManValue& value, const CallerBuffer& to) {
    const Text& given = std::get<kTagText>(value);
    const char* const text = given ? given->c_str() : "";
    const std::size_t needed = std::strlen(text) + 1;
    if (!fits(needed, to)) {
        *to.size = sizeFrom(needed);
        return report.fail(Msg::invalidParameter, Status::size);
    }
    copyBytes(to, text, needed);
    return Status::ok;
}

template <ValueTag tag>
Status copyArray(const Reporter& report, TApplManValue& value, const CallerBuffer& to) {
    const auto& elements = std::get<tag>(value);
    const std::size_t bytes = elements.size() * sizeof elements[0];
    *to.size = sizeFrom(bytes);
    if (!fits(bytes, to)) { return report.fail(Msg::invalidParameter, Status::size); }
    copyBytes(to, elements.data(), bytes);
    return Status::ok;
}

void restoreNegatedBytes(Text& text) {
    if (!text) { return; }
    const auto end = std::find(text->begin(), text->end(), '\0');
    std::transform(text->begin(), end, text->begin(),
                   [](char c) { return static_cast<char>((256U - static_cast<unsigned char>(c)) & 0xFFU); });
}

Status copyNegatedText(const Reporter& report, TApplManValue& value, const CallerBuffer& to) {
    restoreNegatedBytes(std::get<kTagText>(value));
    return copyText(report, value, to);
}

Status copyAddresses(const Reporter& report, TApplManValue& value, const CallerBuffer& to) {
    const std::vector<std::uint32_t>& addresses = std::get<kTagWords>(value);
    return KvApplMan_decodeIpAddresses(report.pool(), addresses.data(), static_cast<std::uint32_t>(addresses.size()),
                                       to);
}

struct DeliveryRow {
    Delivery delivery;
    ValueTag tag; // that the value must have
    Status (*copy)(const Reporter& report, TApplManValue& value, const CallerBuffer& to);
};

constexpr std::array kDeliveries{
    DeliveryRow{Delivery::word, kTagWord, copyFixed<kTagWord>},
    DeliveryRow{Delivery::state, kTagWord, copyState},
    DeliveryRow{Delivery::quad, kTagQuad, copyFixed<kTagQuad>},
    DeliveryRow{Delivery::number, kTagDouble, copyFixed<kTagDouble>},
    DeliveryRow{Delivery::text, kTagText, copyText},
    DeliveryRow{Delivery::negatedText, kTagText, copyNegatedText},
    DeliveryRow{Delivery::words, kTagWords, copyArray<kTagWords>},
    DeliveryRow{Delivery::addresses, kTagWords, copyAddresses},
    DeliveryRow{Delivery::quads, kTagQuads, copyArray<kTagQuads>},
};

constexpr bool deliveriesAreInOrder() {
    for (std::size_t index = 0; index < kDeliveries.size(); ++index) {
        if (static_cast<std::size_t>(kDeliveries[index].delivery) != index) { return false; }
    }
    return kDeliveries.back().delivery == Delivery::quads;
}
static_assert(deliveriesAreInOrder());

std::string addressText(std::uint32_t address) {
    if (address == 0) { return {}; }
    constexpr std::uint16_t kIpV4 = 2;
    const KvSSocketAddressV4 socketAddress{kIpV4, 0, address, {}};
    std::array<char, 16> text{};
    KvNRtosAbstraction::ipToString(socketAddress, text.data(), text.size());
    text.back() = '\0';
    return text.data();
}

std::string addressesText(const std::uint32_t* addresses, std::uint32_t count) {
    std::string text;
    for (std::uint32_t index = 0; index < count; ++index) {
        if (index > 0) { text += ';'; }
        text += addressText(addresses[index]);
    }
    return text;
}

} // namespace

Status decodeParameterReturnValue(KvCErrorListPool& pool, std::uint32_t targetParamId, TApplManValueResult& reply,
                                  const CallerBuffer& to) {
    const Reporter report{pool, "decodeParameterReturnValue"};
    const InformationItem* const item = itemOfTargetParam(targetParamId);
    if (item == nullptr) { return report.fail(Msg::invalidParameter, Status::identifier); }
    const DeliveryRow& row = kDeliveries[static_cast<std::size_t>(item->delivery)];
    if (reply.value.index() != row.tag) { return report.fail(Msg::invalidType, Status::type); }
    return row.copy(report, reply.value, to);
}

Status KvApplMan_decodeIpAddresses(KvCErrorListPool& pool, const std::uint32_t* addresses, std::uint32_t count,
                                   const CallerBuffer& to) {
    const Reporter report{pool, "KvApplMan_decodeIpAddresses"};
    if (to.size == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    std::string text;
    try {
        text = addressesText(addresses, count);
    } catch (const std::bad_alloc&) { return report.fail(Msg::addressesOutOfMemory, Status::argument); }
    const std::size_t needed = text.size() + 1;
    *to.size = sizeFrom(needed);
    if (!fits(needed, to)) { return report.fail(Msg::invalidParameter, Status::size); }
    copyBytes(to, text.c_str(), needed);
    return Status::ok;
}

} // namespace applman
