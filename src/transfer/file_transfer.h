// Sending host files and directory trees over a device's file-transfer channel.
#pragma once

#include <cstdint>
#include <string>

#include "frame/status.h"
#include "platform/error_lists.h"
#include "transfer/progress.h"

namespace applman {

/// Sends one host file as `targetName` into `targetDirectory`. `client` may be null: then one is made and deleted.
/// With a tracker the file counts as done also when its transfer failed. Load options other than 0 are refused.
Status copyBinaryToTarget(KvCErrorListPool& pool, void* device, void* client, const std::u16string& hostPath,
                          const char* targetDirectory, const char* targetName, std::uint8_t loadOptions,
                          TApplManProgressTracker* tracker);

/// Sends a host directory tree below `targetDirectory`; stops at the first failure. `client` may be null, as above.
/// Links are followed; a directory to which one leads back cannot be enumerated. What is no file and no directory, and a
/// link that leads nowhere, fails as a transfer.
Status copyDirToTarget(KvCErrorListPool& pool, void* device, void* client, const char16_t* hostDirectory,
                       const char* targetDirectory, std::uint8_t loadOptions, TApplManProgressTracker* tracker);

Status createFTHandle(KvCErrorListPool& pool, void* device, void** client);
Status deleteFTHandle(KvCErrorListPool& pool, void* client);

} // namespace applman
