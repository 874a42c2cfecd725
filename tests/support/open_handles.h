#pragma once

#include <cstddef>

/// How many files and sockets this process holds; on Windows everything that has a handle.
std::size_t openHandles();
