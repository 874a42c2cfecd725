// The procedures of a target's two programs by name.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace simulated_target {

struct NamedProcedure {
    std::uint32_t program;
    std::uint32_t number;
    std::string_view name; // "start", "file.write"
    // Which words of the request, from 0, are the ID of a process and the number of a parameter; -1 = none.
    int applicationAt = -1;
    int parameterAt = -1;
};

/// By name, "start" or "file.write", or by number, "6" or "file.2". Null when no procedure is called so.
const NamedProcedure* findProcedure(std::string_view text) noexcept;
const NamedProcedure* findProcedure(std::uint32_t program, std::uint32_t number) noexcept;

/// The name, or numbers in its place when there is no such procedure.
std::string procedureName(std::uint32_t program, std::uint32_t number);

inline constexpr std::string_view kFilePrefix = "file."; // of what belongs to file transfer

} // namespace simulated_target
