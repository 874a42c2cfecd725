// Names in a target's store: which texts name something below its root. One rule on every system.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simulated_target {

/// What is being written has a name that begins like this; hosts cannot use such names.
inline constexpr std::string_view kStagePrefix = ".kvtarget-stage-";

/// Names from the root down, at least one; each is a store name.
using StorePath = std::vector<std::string>;

/// Whether a text can name a file or directory within a directory of the store: 1 to 255 bytes, not "." or "..",
/// without separators, colons and control characters, without a dot or space at its end, and neither a device's name
/// nor one of the target's own.
bool isStoreName(std::string_view text) noexcept;

/// Store names joined by slashes or backslashes, in at most 2,048 bytes; none for any other text. What would be absolute
/// has an empty name at its begin or a colon in it, so it is none either.
std::optional<StorePath> parseStorePath(std::string_view text);

} // namespace simulated_target
