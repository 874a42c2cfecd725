// Stands in for the file-transfer channel: keeps the calls in their order and refuses those that a test names.
#pragma once

#include <map>

#include "transfer/file_transfer.h"
#include "transfer/temporary_tree.h"
#include "transfer/text.h"

struct FileTransferDouble {
    /// "create", "put directory/name", "make base|name", "delete".
    std::vector<std::string> calls{};

    /// What a call returns in place of success.
    std::map<std::string, std::int32_t> results{};

    int clients = 0; // made and not yet deleted

    void* device() { return this; }
};

/// The one that the channel's functions work on; a test makes it anew.
extern FileTransferDouble channel;

using Texts = std::vector<std::string>;

class FileTransferTest : public testing::Test {
protected:
    FileTransferTest() { channel = {}; }
    ~FileTransferTest() override { EXPECT_EQ(channel.clients, 0); } // whatever was made is deleted

    applman::Status sendTree(const char* target = "/dir") {
        return applman::copyDirToTarget(pool, channel.device(), nullptr, tree.path().c_str(), target, 0, &tracker);
    }

    /// A path as messages show it.
    std::string shown(const std::string& name = "") { return applman::wideToMessageText(tree.path(name).c_str()); }

    TemporaryTree tree;
    Pool pool;
    applman::TApplManProgressTracker tracker{};
};
