// What the fuzz targets share. A program runs one of them, KV_FUZZ_TARGET.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

using Bytes = std::vector<std::uint8_t>;
using Input = std::span<const std::uint8_t>; // in memory of its own, so that a read behind its end is seen

void KV_FUZZ_TARGET(Input input);

extern "C" inline __attribute__((used)) int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    KV_FUZZ_TARGET({bytes, size});
    return 0;
}

/// Ends the run with a finding.
inline void require(bool holds) {
    if (!holds) { std::abort(); }
}

/// Takes the first byte off; 0 when there is none.
inline std::uint8_t takeByte(Input& input) {
    if (input.empty()) { return 0; }
    const std::uint8_t byte = input.front();
    input = input.subspan(1);
    return byte;
}
