// Byte buffers that calls use one after the other, so that a call of the usual size allocates nothing.
#pragma once

#include <array>
#include <cstddef>
#include <mutex>
#include <utility>

#include "rpc_wire/rpc_message.h"

namespace kvrpc {

/// Keeps a few small ones. Whoever owns it guards it.
class SpareBuffers {
public:
    /// An empty one, with the memory of one that was given back where there is any.
    Bytes take() noexcept { return count_ == 0 ? Bytes{} : std::move(buffers_[--count_]); }

    /// What is not kept stays with the caller.
    void giveBack(Bytes& buffer) noexcept {
        if (count_ == buffers_.size() || buffer.capacity() == 0 || buffer.capacity() > kLargest) { return; }
        buffer.clear();
        buffers_[count_++] = std::move(buffer);
    }

private:
    static constexpr std::size_t kLargest = 4096; // bytes
    std::array<Bytes, 8> buffers_{};
    std::size_t count_ = 0;
};

/// One of them for as long as it lives.
class SpareBuffer {
public:
    SpareBuffer(SpareBuffers& buffers, std::mutex& guard) : buffers_(buffers), guard_(guard) {
        const std::lock_guard lock{guard_};
        buffer_ = buffers_.take();
    }
    ~SpareBuffer() {
        const std::lock_guard lock{guard_};
        buffers_.giveBack(buffer_);
    }
    SpareBuffer(const SpareBuffer&) = delete;
    SpareBuffer& operator=(const SpareBuffer&) = delete;

    Bytes& operator*() noexcept { return buffer_; }

private:
    SpareBuffers& buffers_;
    std::mutex& guard_;
    Bytes buffer_{};
};

} // namespace kvrpc
