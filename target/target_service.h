// What stands behind a target's port: both programs, the replies that tests prescribe, and the record of requests.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

#include "target/application_manager.h"
#include "target/file_service.h"
#include "target/simulated_target.h"

namespace simulated_target {

class TargetService : public kvrpc::RpcService {
public:
    /// Throws std::system_error when the store cannot be used.
    explicit TargetService(const Options& options);

    kvrpc::RpcReply handle(const kvrpc::RpcCall& call) override;
    void connectionClosed(std::uint64_t connection) noexcept override;

    /// Ends the delays of prescribed replies, present and future ones, until it is taken back.
    void hurry(bool on) noexcept;

    std::vector<Request> requests() const;
    void forgetRequests();
    void script(std::uint32_t procedure, ScriptedReply reply);
    void scriptAlways(std::uint32_t procedure, ScriptedReply reply);
    void forgetScripts();
    std::string hostTime() const { return files_.hostTime(); }

private:
    kvrpc::RpcReply manage(const kvrpc::RpcCall& call);
    /// Records a call and finds the reply prescribed for it, in one go: the order of the record is that of the replies.
    std::optional<ScriptedReply> admit(const kvrpc::RpcCall& call);
    kvrpc::RpcReply answerLate(const ScriptedReply& scripted);

    const bool recording_;
    const std::optional<Store> store_;
    ApplicationManager manager_;
    FileService files_;

    mutable std::mutex mutex_{}; // guards what follows
    std::condition_variable hurried_{};
    bool hurry_ = false;
    std::vector<Request> requests_{};
    std::map<std::uint32_t, std::deque<ScriptedReply>> scripts_{};
    std::map<std::uint32_t, ScriptedReply> lastingScripts_{};
};

} // namespace simulated_target
