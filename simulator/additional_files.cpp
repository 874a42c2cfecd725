#include "simulator/additional_files.h"

#include <algorithm>

#include "simulator/parameters.h"
#include "simulator/store_path.h"
#include "simulator/target_messages.h"

namespace simulated_target {
namespace {

constexpr std::uint32_t kDirectoryType = 512;
constexpr std::uint32_t kHighestFileType = 16; // besides directories
constexpr std::size_t kMostFiles = 1024;       // of a process

std::string baseName(const std::string& path) {
    const std::size_t separator = path.find_last_of("/\\");
    return separator == std::string::npos ? path : path.substr(separator + 1);
}

/// The host's own directory and name below the process's folder of files; the source's name when it gave none.
AdditionalFile placeOf(const Application& process, const FileRequest& request) {
    std::string directory = binaryDirectory(process) + "/files";
    if (!request.targetPath.empty()) { directory += "/" + request.targetPath; }
    std::string name = request.targetName.empty() ? baseName(request.sourcePath) : request.targetName;
    return {request.fileType, std::move(directory), std::move(name), request.sourcePath};
}

auto find(Application& process, std::uint32_t fileType, const std::string& name) {
    return std::find_if(process.files.begin(), process.files.end(),
                        [&](const AdditionalFile& file) { return file.fileType == fileType && file.name == name; });
}

} // namespace

bool isFileType(std::uint32_t number) noexcept { return number == kDirectoryType || number <= kHighestFileType; }

std::string storeDirectory(const AdditionalFile& file) {
    return file.fileType == kDirectoryType ? file.directory + "/" + file.name : file.directory;
}

FileOutcome registerFile(Application& process, const FileRequest& request, const std::set<std::uint32_t>& lackedTypes,
                         AdditionalFile* registered) {
    if (!isFileType(request.fileType) || lackedTypes.contains(request.fileType)) {
        return {kFileUnknownType, message(Code::unknownFileType, {request.fileType})};
    }
    AdditionalFile file = placeOf(process, request);
    if (!isStoreName(file.name) || !parseStorePath(storeDirectory(file))) {
        return {kFileBadName, message(Code::badFileName, {file.directory, file.name})};
    }
    const auto known = find(process, file.fileType, file.name);
    if (known != process.files.end()) {
        *known = file;
    } else if (process.files.size() < kMostFiles) {
        process.files.push_back(file);
    } else {
        return {kFileLimitReached, message(Code::limitReached, {static_cast<std::uint32_t>(kMostFiles)})};
    }
    *registered = std::move(file);
    return {};
}

FileOutcome removeFile(Application& process, std::uint32_t fileType, const std::string& name, const Store* store) {
    const auto file = find(process, fileType, name);
    if (file == process.files.end()) {
        return {kFileNotRegistered, message(Code::fileNotRegistered, {name, fileType})};
    }
    const auto directory = parseStorePath(file->directory);
    if (store == nullptr || !directory || !store->remove(*directory, file->name)) {
        return {kFileNotRemoved, message(Code::fileNotRemoved, {file->directory, name})};
    }
    process.files.erase(file);
    return {};
}

} // namespace simulated_target
