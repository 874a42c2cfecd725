// What the tests of the exported functions share.
#pragma once

#include <functional>
#include <utility>

#include "api/KvApplicationManagerAP.h"
#include "protocol/procedure_numbers.h"
#include "support/one_target.h"

using Words = std::vector<std::uint32_t>;

/// The status of a call and what it reported.
using Outcome = std::pair<std::int32_t, Messages>;

inline const char* const kBadHandles = "checkDeviceAndAccessRestrictionHandle 1024";

using DeviceCall = std::function<std::int32_t(KvCErrorListPool&, void* device, void* access)>;

/// A call of a function with what follows the handles.
template <class... Parameters, class... Arguments>
DeviceCall with(std::int32_t (*function)(KvCErrorListPool&, void*, void*, Parameters...), Arguments... arguments) {
    return [=](KvCErrorListPool& pool, void* device, void* access) {
        return function(pool, device, access, static_cast<Parameters>(arguments)...);
    };
}

/// Every call whose outcome is taken starts with an empty pool.
class ApiTest : public OneTarget {
protected:
    using OneTarget::OneTarget;

    Outcome outcome(std::int32_t status) {
        Messages reported = messages(pool);
        pool->reset();
        return {status, std::move(reported)};
    }

    /// The arguments of a request as words, at most so many.
    Words sentWords(std::size_t index, std::size_t most = 100) const {
        Words words = wire::wordsOf(t.target.requests().at(index).arguments);
        words.resize(std::min(words.size(), most));
        return words;
    }
};
