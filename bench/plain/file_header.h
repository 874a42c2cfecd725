// What goes over the wire in front of a file's content; the answer is one byte, 0 = it is stored.
#pragma once

#include <cstdint>

namespace plain {

struct FileHeader {
    std::uint64_t size;
    std::uint32_t staged; // 1: written beside its name, synchronised, renamed; 0: written under its name
    char directory[20];   // zero-terminated
    char name[32];        // likewise
};

inline constexpr std::size_t kChunk = 256 << 10; // bytes that are read, sent, received and written at once

} // namespace plain
