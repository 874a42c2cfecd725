// Lists of device handles, as group creation and download take them.
#pragma once

#include <cstdint>

#include "frame/status.h"
#include "platform/error_lists.h"

namespace applman {

/// Finds the first present device of a list; there must be one.
Status KvApplMan_checkDevHandleList(KvCErrorListPool& pool, void* const* devHandles, std::uint32_t count,
                                    std::int32_t* firstDevIndex);

} // namespace applman
