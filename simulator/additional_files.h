// The additional files of a process: where each has to be transferred to, and which there are.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "protocol/records.h"
#include "simulator/commands.h"

namespace simulated_target {

/// What a host asks for; both registration requests carry it.
struct FileRequest {
    std::uint32_t fileType = 0;
    std::string sourcePath{};
    std::string targetPath{};
    std::string targetName{};
};

/// The error codes with which hosts are answered; 0 is success.
enum FileResult : std::int32_t {
    kFileDone = 0,
    kFileUnknownProcess = 1,
    kFileUnknownType = 2,
    kFileBadName = 3,
    kFileNotRegistered = 4,
    kFileNotRemoved = 5,
    kFileLimitReached = 6,
};

/// How an operation on files went; the message goes with any result but kFileDone.
struct FileOutcome {
    FileResult result = kFileDone;
    Failure failure{};
};

bool isFileType(std::uint32_t number) noexcept;

/// Registers a file, or a directory, that is to be transferred. A name that is registered already stays registered once.
FileOutcome registerFile(Application& process, const FileRequest& request, const std::set<std::uint32_t>& lackedTypes,
                         AdditionalFile* registered);

/// Removes a file, or a directory with all that is in it, from the store and from the list.
FileOutcome removeFile(Application& process, std::uint32_t fileType, const std::string& name, const Store* store);

/// Where a registered file lies; for a directory the directory itself.
std::string storeDirectory(const AdditionalFile& file);

} // namespace simulated_target
