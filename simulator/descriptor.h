// A file descriptor that is closed with its owner. POSIX only.
#pragma once

#include <unistd.h>
#include <utility>

namespace simulated_target {

class Descriptor {
public:
    explicit Descriptor(int number = -1) noexcept : number_(number) {} // -1 = none
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() {
        if (number_ != -1) { close(number_); }
    }

    int number() const noexcept { return number_; }
    bool valid() const noexcept { return number_ != -1; }

private:
    int number_;
};

} // namespace simulated_target
