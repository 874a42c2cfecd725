// What the library owns for as long as it is loaded.
#pragma once

namespace applman {

/// The mutex that guards looking up, creating and registering a device's command-channel client.
void* rpcClientMutex() noexcept;

} // namespace applman
