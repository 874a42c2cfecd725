// A file or folder by its descriptor. What fails throws.
#pragma once

#include <cstdint>
#include <fcntl.h>
#include <span>
#include <sys/stat.h>
#include <unistd.h>

#include "plain/stream.h"

namespace plain {

class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {
        if (number < 0) { fail("open"); }
    }
    ~Descriptor() { close(number_); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return number_; }

    std::size_t read(std::span<std::uint8_t> buffer) const {
        const ssize_t count = ::read(number_, buffer.data(), buffer.size());
        if (count < 0) { fail("read"); }
        return static_cast<std::size_t>(count);
    }
    void write(std::span<const std::uint8_t> bytes) const {
        while (!bytes.empty()) {
            const ssize_t count = ::write(number_, bytes.data(), bytes.size());
            if (count < 0) { fail("write"); }
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        }
    }
    void synchronise() const {
        if (fsync(number_) != 0) { fail("fsync"); }
    }

private:
    int number_;
};

inline std::uint64_t sizeOf(const Descriptor& file) {
    struct stat status {};
    if (fstat(file.number(), &status) != 0) { fail("fstat"); }
    return static_cast<std::uint64_t>(status.st_size);
}

} // namespace plain
