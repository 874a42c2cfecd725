// Limits of connections that are short for as long as this lives, for what is meant to run into them.
#pragma once

#include "rpc_client/rpc_limits.h"

class ShortenedLimits {
public:
    static constexpr std::chrono::milliseconds kLimit{50};

    ShortenedLimits() {
        kvrpc::limits::connecting = kLimit;
        kvrpc::limits::callOverride = kLimit;
        kvrpc::limits::serverRecord = kLimit;
    }
    ~ShortenedLimits() {
        kvrpc::limits::connecting = connecting_;
        kvrpc::limits::callOverride = call_;
        kvrpc::limits::serverRecord = serverRecord_;
    }
    ShortenedLimits(const ShortenedLimits&) = delete;
    ShortenedLimits& operator=(const ShortenedLimits&) = delete;

private:
    const std::chrono::milliseconds connecting_ = kvrpc::limits::connecting;
    const std::chrono::milliseconds call_ = kvrpc::limits::callOverride;
    const std::chrono::milliseconds serverRecord_ = kvrpc::limits::serverRecord;
};
