// Stands in for the file-transfer channel: keeps the calls in their order and refuses those that a test names.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/error_lists.h"

struct FileTransferDouble {
    /// "create", "put directory/name", "make base|name", "delete".
    std::vector<std::string> calls{};

    /// What a call returns in place of success.
    std::map<std::string, std::int32_t> results{};

    int clients = 0; // made and not yet deleted

    void* device() { return this; }
    void* hostsClient() { return &clients; }
};

/// The one that the channel's functions work on; a test makes it anew.
extern FileTransferDouble channel;

/// Every message of a list as "code operation arguments".
std::vector<std::string> messagesOf(const KvCErrorList& list);
