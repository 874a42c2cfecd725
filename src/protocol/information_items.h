// The information items: sizes, types and defaults of each in one table, and the reader that the library itself uses
// where it already holds a client.
#pragma once

#include <cstdint>

#include "frame/rpc_client_cache.h"
#include "frame/status.h"
#include "platform/error_lists.h"
#include "protocol/parameter_numbers.h"
#include "protocol/records.h"

namespace applman {

/// How a value is delivered; it also fixes the type that the target must answer with.
enum class Delivery : std::uint8_t { word, state, quad, number, text, negatedText, words, addresses, quads };

/// What is delivered in place of a value that the target cannot answer for.
enum class Default : std::uint8_t {
    none,
    zeroWord,
    oneWord,
    zeroQuad,
    oneElement,
    emptyText,
    groupSerialNumbers, // the device's CN serial number, once per process of the group
    groupAddresses,     // the client's address, likewise
    deviceSerialNumber, // of the device list, when it is known
    commandTimeout,     // 120 seconds
};

struct InformationItem {
    ParameterNumbers numbers;
    std::int32_t fixedSize; // bytes; 0 = any
    Delivery delivery;
    Default forProcess;
    Default forManager;
};

/// Null when there is no such item.
const InformationItem* itemOfInfoId(std::uint32_t infoId);
const InformationItem* itemOfTargetParam(std::uint32_t targetParamId);

/// The target's number of an item, once the size fits the item.
Status mapParamAndCheckParamSize(KvCErrorListPool& pool, std::uint32_t infoId, std::int32_t size,
                                 std::uint32_t* targetParamId);

/// Reads one item over a client. Buffer and size are those of the exported function.
Status KvApplMan_getApplInfo(KvCErrorListPool& pool, KV_RPC_PROG_APPLMAN_HOST2Client* client, std::uint32_t accessId,
                             std::uint32_t applId, std::uint32_t infoId, void* buffer, std::int32_t* size);

} // namespace applman
