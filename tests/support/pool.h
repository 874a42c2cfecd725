// A pool of messages that ends with its scope.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "KvPlatformHost.h"
#include "platform/error_lists.h"

class Pool {
public:
    Pool() : pool_(KvPlatform_createPool()) {}
    ~Pool() { KvPlatform_deletePool(pool_); }
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;

    operator KvCErrorListPool&() const { return *pool_; }
    KvCErrorListPool* operator->() const { return pool_; }
    KvCErrorListPool& operator*() const { return *pool_; }

    std::vector<std::uint32_t> codes() const {
        std::vector<std::uint32_t> all;
        for (std::uint32_t i = 0; i < pool_->getErrorCount(); ++i) {
            all.push_back(pool_->getErrorCode(i));
        }
        return all;
    }

    std::string text(std::uint32_t index) const {
        const char* const text = KvPlatform_entryText(*pool_, index);
        return text == nullptr ? "<none>" : text;
    }

private:
    KvCErrorListPool* pool_;
};
