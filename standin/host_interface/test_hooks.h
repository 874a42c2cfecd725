// What tests may see and steer of the host interface beyond its functions. Not exported.
#pragma once

#include <cstdint>
#include <optional>

namespace host_interface {

/// Every later request for `level` is refused, until refuseNoLevel.
void refuseLevel(std::uint32_t level);
void refuseNoLevel();

/// The level that an access-restriction handle was last granted for an application process.
std::optional<std::uint32_t> grantedLevel(void* handle, std::uint32_t applId);

} // namespace host_interface
