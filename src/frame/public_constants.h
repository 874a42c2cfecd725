// Proofs that a table has the numbers of KvApplManConstants.h. The rows of the constants are made by the build, a file
// per family: CONSTANT(name, camelCase, kCamelCase).
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "KvApplManConstants.h"

namespace applman::public_constants {

#define CONSTANT(name, camelCase, kCamelCase) std::uint32_t{name},
inline constexpr std::array kItems{
#include <public_constants/APPLMAN_ITEM.h>
};
inline constexpr std::array kParams{
#include <public_constants/APPLMAN_PARAM.h>
};
inline constexpr std::array kStates{
#include <public_constants/APPLMAN_STATE.h>
};
#undef CONSTANT

/// True when there is a row for each of the constants and no other.
template <class Constants, class Rows, class NumberOf>
constexpr bool areThoseOf(const Constants& constants, const Rows& rows, NumberOf numberOf) {
    return constants.size() == rows.size() && std::all_of(rows.begin(), rows.end(), [&](const auto& row) {
               return std::count(constants.begin(), constants.end(), numberOf(row)) == 1;
           });
}

} // namespace applman::public_constants
