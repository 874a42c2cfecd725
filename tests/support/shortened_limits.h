// Limits of connections that are short for as long as this lives, for what is meant to run into them.
#pragma once

#include "rpc_client/rpc_limits.h"

class ShortenedLimits {
public:
    ShortenedLimits() = default;
    ~ShortenedLimits() {
        kvrpc::limits::connecting = connecting_;
        kvrpc::limits::callOverride = call_;
        kvrpc::limits::serverRecord = serverRecord_;
    }
    ShortenedLimits(const ShortenedLimits&) = delete;
    ShortenedLimits& operator=(const ShortenedLimits&) = delete;

private:
    static constexpr std::chrono::milliseconds kShort{50};
    const std::chrono::milliseconds connecting_ = kvrpc::limits::connecting.exchange(kShort);
    const std::chrono::milliseconds call_ = kvrpc::limits::callOverride.exchange(kShort);
    const std::chrono::milliseconds serverRecord_ = kvrpc::limits::serverRecord.exchange(kShort);
};
