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

struct Destination {
    const Reporter& report;
    void* buffer;
    std::int32_t* size;
};

std::int32_t sizeFrom(std::size_t bytes) {
    return static_cast<std::int32_t>(std::min<std::size_t>(bytes, std::numeric_limits<std::int32_t>::max()));
}

bool fits(std::size_t bytes, std::int32_t size) { return size >= 0 && bytes <= static_cast<std::size_t>(size); }

void copyBytes(void* buffer, const void* source, std::size_t bytes) {
    if (bytes > 0) { std::memcpy(buffer, source, bytes); }
}

/// A value whose size was checked before it was asked for.
template <class Value>
Status copyFixed(const Destination& to, Value value) {
    std::memcpy(to.buffer, &value, sizeof value);
    return Status::ok;
}

Status copyText(const Destination& to, const Text& value) {
    const char* const text = value ? value->c_str() : "";
    const std::size_t needed = std::strlen(text) + 1;
    if (!fits(needed, *to.size)) {
        *to.size = sizeFrom(needed);
        return to.report.fail(Msg::invalidParameter, Status::size);
    }
    copyBytes(to.buffer, text, needed);
    return Status::ok;
}

template <class Element>
Status copyArray(const Destination& to, const std::vector<Element>& elements) {
    const std::size_t bytes = elements.size() * sizeof(Element);
    const bool fitting = fits(bytes, *to.size);
    *to.size = sizeFrom(bytes);
    if (!fitting) { return to.report.fail(Msg::invalidParameter, Status::size); }
    copyBytes(to.buffer, elements.data(), bytes);
    return Status::ok;
}

void restoreNegatedBytes(Text& text) {
    if (!text) { return; }
    const auto end = std::find(text->begin(), text->end(), '\0');
    std::transform(text->begin(), end, text->begin(),
                   [](char c) { return static_cast<char>((256U - static_cast<unsigned char>(c)) & 0xFFU); });
}

using Decode = Status (*)(KvCErrorListPool& pool, TApplManValue& value, const Destination& to);

struct DeliveryRow {
    Delivery delivery;
    ValueTag tag;
    Decode decode;
};

constexpr std::array kDeliveries{
    DeliveryRow{Delivery::word, kTagWord,
                [](KvCErrorListPool&, TApplManValue& value, const Destination& to) {
                    return copyFixed(to, std::get<kTagWord>(value));
                }},
    DeliveryRow{Delivery::state, kTagWord,
                [](KvCErrorListPool& pool, TApplManValue& value, const Destination& to) {
                    return copyFixed(to, getExternApplState(pool, std::get<kTagWord>(value)));
                }},
    DeliveryRow{Delivery::quad, kTagQuad,
                [](KvCErrorListPool&, TApplManValue& value, const Destination& to) {
                    return copyFixed(to, std::get<kTagQuad>(value));
                }},
    DeliveryRow{Delivery::number, kTagDouble,
                [](KvCErrorListPool&, TApplManValue& value, const Destination& to) {
                    return copyFixed(to, std::get<kTagDouble>(value));
                }},
    DeliveryRow{Delivery::text, kTagText,
                [](KvCErrorListPool&, TApplManValue& value, const Destination& to) {
                    return copyText(to, std::get<kTagText>(value));
                }},
    DeliveryRow{Delivery::negatedText, kTagText,
                [](KvCErrorListPool&, TApplManValue& value, const Destination& to) {
                    restoreNegatedBytes(std::get<kTagText>(value));
                    return copyText(to, std::get<kTagText>(value));
                }},
    DeliveryRow{Delivery::words, kTagWords,
                [](KvCErrorListPool&, TApplManValue& value, const Destination& to) {
                    return copyArray(to, std::get<kTagWords>(value));
                }},
    DeliveryRow{Delivery::addresses, kTagWords,
                [](KvCErrorListPool& pool, TApplManValue& value, const Destination& to) {
                    const auto& addresses = std::get<kTagWords>(value);
                    return KvApplMan_decodeIpAddresses(
                        pool, addresses.data(), static_cast<std::uint32_t>(addresses.size()), to.buffer, to.size);
                }},
    DeliveryRow{Delivery::quads, kTagQuads,
                [](KvCErrorListPool&, TApplManValue& value, const Destination& to) {
                    return copyArray(to, std::get<kTagQuads>(value));
                }},
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
                                  void* buffer, std::int32_t* size) {
    const Reporter report{pool, "decodeParameterReturnValue"};
    const InformationItem* const item = itemOfTargetParam(targetParamId);
    if (item == nullptr) { return report.fail(Msg::invalidParameter, Status::identifier); }
    const DeliveryRow& row = kDeliveries[static_cast<std::size_t>(item->delivery)];
    if (reply.value.index() != row.tag) { return report.fail(Msg::invalidType, Status::type); }
    return row.decode(pool, reply.value, Destination{report, buffer, size});
}

Status KvApplMan_decodeIpAddresses(KvCErrorListPool& pool, const std::uint32_t* addresses, std::uint32_t count,
                                   void* buffer, std::int32_t* size) {
    const Reporter report{pool, "KvApplMan_decodeIpAddresses"};
    if (size == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    std::string text;
    try {
        text = addressesText(addresses, count);
    } catch (const std::bad_alloc&) { return report.fail(Msg::addressesOutOfMemory, Status::argument); }
    const std::size_t needed = text.size() + 1;
    const bool fitting = fits(needed, *size);
    *size = sizeFrom(needed);
    if (!fitting) { return report.fail(Msg::invalidParameter, Status::size); }
    std::memcpy(buffer, text.c_str(), needed);
    return Status::ok;
}

} // namespace applman
