// Additional files of one application on their way: what a worker does for files add, and what takes it back. They tell, as
// events:
//   application  id, before (the files that it has already, as names)
//   adding       name       from here on the target may know the file
//   progress     name, fraction, bytes, totalBytes
//   added        name
//   warning      what a call has reported that succeeded
//   removed      name
//   failed       why, as failure.h writes it
//   clean        nothing is left of what was to be taken back
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "devices.h"
#include "worker.h"

namespace tool {

struct FileAdding {
    Device device{};
    std::string application{};
    std::vector<std::filesystem::path> sources{};
    std::optional<std::uint32_t> type{}; ///< without it, that of a directory or of a file, as the source is
    kvapplman::FileOptions options{};
    CommonOptions common{};
};

/// The name that a source has on the target.
std::string targetNameOf(const FileAdding& what, const std::filesystem::path& source);

Job fileAddingJob(FileAdding what);

/// Removes these files of an application.
Job fileRemovingJob(Device device, std::uint32_t id, std::vector<std::string> names);

} // namespace tool
