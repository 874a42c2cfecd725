// The applications in a target's flash memory.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "protocol/records.h"
#include "simulator/commands.h"

namespace simulated_target {

class FlashMemory {
public:
    /// Names by ID.
    explicit FlashMemory(const std::map<std::uint32_t, std::string>& applications);

    std::vector<std::uint32_t> ids() const;

    /// Delivers parameter `number` of an application.
    Failure read(std::uint32_t id, std::uint32_t number, applman::TApplManValue& value) const;

    /// Keeps a value; only the 64-bit values can be written.
    Failure write(std::uint32_t id, std::uint32_t number, const applman::TApplManValue& value);

    Failure clear(std::int64_t id);

    /// Null when there is no such application. IDs are 64 bits wide where they are commanded.
    const std::string* nameOf(std::int64_t id) const;

private:
    struct FlashApplication {
        std::string name{};
        std::vector<std::int64_t> values{};
    };

    std::map<std::uint32_t, FlashApplication> applications_{};
};

} // namespace simulated_target
