#include "protocol/application_states.h"

#include <algorithm>
#include <array>

#include "frame/public_constants.h"
#include "frame/report.h"

namespace applman {
namespace {

/// The exported state of each target state.
constexpr std::array<std::int32_t, 7> kExternStates{1, 2, 3, 4, 0, 5, 6};
static_assert(public_constants::areThoseOf(public_constants::kStates, kExternStates,
                                           [](std::int32_t state) { return static_cast<std::uint32_t>(state); }));

} // namespace

std::int32_t getExternApplState(KvCErrorListPool& pool, std::uint32_t targetState) {
    if (targetState < kExternStates.size()) { return kExternStates[targetState]; }
    const Reporter report{pool, "getExternApplState"};
    return numberOf(report.fail(Msg::invalidState, Status::state));
}

std::int32_t getInternalApplState(KvCErrorListPool& pool, std::uint32_t externState) {
    const auto* const found = std::find_if(kExternStates.begin(), kExternStates.end(), [&](std::int32_t state) {
        return static_cast<std::uint32_t>(state) == externState;
    });
    if (found != kExternStates.end()) { return static_cast<std::int32_t>(found - kExternStates.begin()); }
    const Reporter report{pool, "getInternalApplState"};
    return numberOf(report.fail(Msg::invalidState, Status::state));
}

} // namespace applman
