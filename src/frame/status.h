// The status values that operations return.
#pragma once

#include <cstdint>

namespace applman {

/// 0 is success. A result of the host interface library that is passed through fits in too, positive ones as well, so
/// failure is always "not ok", never "negative".
enum class [[nodiscard]] Status : std::int32_t{
    ok = 0,
    argument = -100, // an argument, a handle, a client or memory is missing
    registration = -110,
    initialisation = -120,
    load = -130,
    apply = -140,
    start = -150,
    stop = -160,
    terminate = -161,
    pause = -165,
    step = -166,
    unload = -170,
    information = -175, // information was not received
    parameter = -176,   // the target rejected a parameter
    channel = -180,     // the command channel was not configured or established
    remoteCall = -185,
    ftCreate = -190, // creating the file-transfer client
    ftDelete = -191, // deleting it
    transfer = -195,
    size = -200,
    type = -204,
    identifier = -205,
    state = -210,
    applications = -215,
    accessHandle = -245,
    binaryNotFound = -250,
    fileSource = -830,
    fileRemove = -831,
    fileLoad = -832,
    fileInformation = -833,
    groupHandle = -840,
    coreIds = -841,
    flashMode = -850,
    flashList = -851,
    flashLoad = -852,
    flashClear = -853,
};

constexpr std::int32_t numberOf(Status status) { return static_cast<std::int32_t>(status); }

} // namespace applman
