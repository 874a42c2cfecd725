// What this process holds of the system.
#pragma once

#include <cstddef>

std::size_t openHandles(); // files and sockets; on Windows everything that has a handle
std::size_t threads();
