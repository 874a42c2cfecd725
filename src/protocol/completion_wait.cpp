#include "protocol/completion_wait.h"

#include <limits>

#include "frame/error_codes.h"
#include "frame/report.h"
#include "frame/temporary_list.h"
#include "platform/rtos.h"
#include "protocol/information_items.h"
#include "protocol/parameter_numbers.h"
#include "protocol/procedures.h"

namespace applman {
namespace {

using Client = KV_RPC_PROG_APPLMAN_HOST2Client;

constexpr std::int32_t kFinished = 0;
constexpr std::int32_t kBusy = 2;
constexpr std::uint32_t kFirstDelay = 1;    // milliseconds
constexpr std::uint32_t kLongestDelay = 32; // milliseconds

Status readTimeout(KvCErrorListPool& pool, Client* client, std::uint32_t accessId, std::uint32_t applId,
                   std::uint32_t* seconds) {
    std::int32_t size = sizeof *seconds;
    return KvApplMan_getApplInfo(pool, client, accessId, applId, param::kCommandTimeout.host, seconds, &size);
}

/// The tick at which `seconds` after `start` have passed; the last tick there is when that is beyond it.
std::uint64_t tickAfter(std::uint64_t start, std::uint32_t seconds) {
    constexpr std::uint64_t kLast = std::numeric_limits<std::uint64_t>::max();
    const std::uint64_t rate = KvRtosAbstractionTime_getTicksPerSec();
    if (rate != 0 && seconds > kLast / rate) { return kLast; }
    const std::uint64_t ticks = seconds * rate;
    return ticks > kLast - start ? kLast : start + ticks;
}

/// One wait: what it asks for, where its messages are collected, and how long it may last.
class Wait {
public:
    Wait(Client& client, std::uint32_t applId, std::uint32_t accessId, KvCErrorListPool& collected,
         std::uint32_t timeout)
        : client_(client), applId_(applId), accessId_(accessId), report_(collected, "waitWhileBusy"), timeout_(timeout),
          start_(KvRtosAbstractionTime_getTicks64()), now_(start_), deadline_(tickAfter(start_, timeout)) {}

    /// Polls until the command is not busy any more, the time is up or a poll fails.
    Status poll() {
        do {
            Reply<TApplManResult> reply{client_};
            if (APPLMAN_GET_COMMAND_STATE(client_, report_.pool(), {kMode, accessId_, applId_}, reply) != 0) {
                return report_.failRemoteCall();
            }
            state_ = reply->result;
            if (state_ == kBusy) { nap(); }
        } while (state_ == kBusy && now_ < deadline_);
        return Status::ok;
    }

    /// What became of the command, once it is polled. One that failed or ran out of time is reported, unless it was to
    /// unload a process that the target does not know any more: then it is done.
    Status outcome(const CommandFailure& failure) const {
        if (state_ == kFinished) { return Status::ok; }
        if (state_ == kBusy) { report_.add(Msg::waitTimedOut, static_cast<std::int32_t>(timeout_)); }
        if (failure.status == Status::unload && hasCode(report_.pool(), kTargetUnknownProcess)) {
            report_.pool().reset();
            return Status::ok;
        }
        if (!failure.message) { return report_.fail(Msg::unknownOperationFailed, failure.status, failure.status); }
        report_.addChosen(*failure.message);
        return failure.status;
    }

private:
    /// Sleeps before the next poll, unless the deadline has passed and the target grants no more time.
    void nap() {
        now_ = KvRtosAbstractionTime_getTicks64();
        if (now_ >= deadline_) { extend(); }
        if (now_ >= deadline_) { return; }
        KvNRtosAbstraction::usleep(delay_ * 1000);
        if (delay_ < kLongestDelay) { delay_ *= 2; }
    }

    /// The process itself may ask for more time than the application manager did; what that reading reports is dropped.
    void extend() {
        const TemporaryList dropped;
        std::uint32_t granted = 0;
        if (!dropped || readTimeout(dropped.pool(), &client_, accessId_, applId_, &granted) != Status::ok) { return; }
        if (granted <= timeout_) { return; }
        timeout_ = granted;
        deadline_ = tickAfter(start_, granted);
    }

    Client& client_;
    std::uint32_t applId_;
    std::uint32_t accessId_;
    Reporter report_;
    std::uint32_t timeout_; // seconds
    std::uint64_t start_;
    std::uint64_t now_;
    std::uint64_t deadline_;
    std::uint32_t delay_ = kFirstDelay; // milliseconds
    std::int32_t state_ = kFinished;
};

} // namespace

Status waitWhileBusy(KvCErrorListPool& pool, Client* client, std::uint32_t applId, std::uint32_t accessId,
                     const CommandFailure& failure) {
    const Reporter report{pool, "waitWhileBusy"};
    if (client == nullptr) { return report.fail(Msg::waitWithoutClient, Status::argument); }
    std::uint32_t timeout = 0;
    if (const Status read = readTimeout(pool, client, accessId, kApplicationManager, &timeout); read != Status::ok) {
        return report.fail(Msg::commandTimeoutUnknown, read);
    }
    if (timeout == 0) { return report.fail(Msg::commandTimeoutUnknown, failure.status); }
    const CollectedList collected{pool};
    if (!collected) { return report.fail(Msg::invalidArgument, Status::argument); }

    Wait wait{*client, applId, accessId, collected.pool(), timeout};
    const Status polled = wait.poll();
    return polled == Status::ok ? wait.outcome(failure) : polled;
}

} // namespace applman
