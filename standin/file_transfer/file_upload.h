// Sends one host file over a file-transfer connection, several steps ahead of their replies.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>

#include "file_transfer/transfer_session.h"
#include "platform/host_interface.h"
#include "platform/host_system.h"

namespace file_transfer {

class FileUpload {
public:
    /// Reasons of failures go to the pool. `path` is the file's, for messages.
    FileUpload(KvCErrorListPool& pool, TransferSession& session, host_system::InputFile& file, std::string path,
               KvHIM_BytesCallback callback, void* context);
    ~FileUpload();
    FileUpload(const FileUpload&) = delete;
    FileUpload& operator=(const FileUpload&) = delete;

    /// Result: the bytes sent, or negative. May throw std::bad_alloc; the target then discards what it received.
    std::int64_t send(const std::string& directory, const std::string& name);

private:
    struct Step {
        Procedure procedure;
        std::uint64_t bytes; // of this file, once this step is acknowledged
        std::unique_ptr<kvrpc::Call> call;
    };

    bool sendContent();
    bool readChunk(std::size_t count);
    bool sendStep(Procedure procedure, std::uint64_t bytes, kvrpc::Bytes record);
    bool awaitOldest();
    bool awaitAll();
    void tellProgress(std::uint64_t bytes) noexcept;
    bool broken(Procedure procedure, const kvrpc::Failure& failure);
    void abort();

    KvCErrorListPool& pool_;
    TransferSession& session_;
    host_system::InputFile& file_;
    const std::string path_;
    KvHIM_BytesCallback callback_;
    void* const context_;
    const std::uint64_t size_;
    const std::uint32_t transfer_;
    std::shared_ptr<kvrpc::Connection> connection_{};
    std::deque<Step> inFlight_{};
    WriteRequest chunk_{};
    std::uint64_t told_ = 0;
    bool finished_ = false; // the target holds nothing of it that would have to be discarded
};

} // namespace file_transfer
