// The file-transfer program: what hosts send goes into the store.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "rpc_server/rpc_server.h"
#include "simulator/store.h"

namespace simulated_target {

class FileService {
public:
    /// Without a store every transfer fails. The store must outlive the service.
    explicit FileService(const Store* store);
    ~FileService();
    FileService(const FileService&) = delete;
    FileService& operator=(const FileService&) = delete;

    /// Calls of one connection come one at a time.
    kvrpc::RpcReply handle(const kvrpc::RpcCall& call);

    /// What the connection has not committed is removed.
    void connectionClosed(std::uint64_t connection) noexcept;

    /// The local time that a host has set; empty before.
    std::string hostTime() const;

private:
    class Connection;
    std::shared_ptr<Connection> connection(std::uint64_t number);
    void setHostTime(const std::string& time);

    const Store* const store_;
    mutable std::mutex mutex_{}; // guards what follows
    std::map<std::uint64_t, std::shared_ptr<Connection>> connections_{};
    std::string hostTime_{};
};

} // namespace simulated_target
