#include "rpc_wire/record_reader.h"

#include <algorithm>

#include "platform/xdr.h"

namespace kvrpc {
namespace {

constexpr std::uint32_t kMostEmptyFragments = 1024; // in one record, so that nobody keeps a reader busy with nothing

} // namespace

RecordReader::Outcome RecordReader::take(std::vector<std::uint8_t>& record) {
    record.clear();
    if (record_.empty() && record_.capacity() < record.capacity()) { record_.swap(record); }
    const Progress progress = consume();
    if (progress == Progress::malformed) { return Outcome::malformed; }
    if (progress == Progress::partial) { return Outcome::timedOut; }
    record.swap(record_);
    record_.clear();
    return Outcome::record;
}

RecordReader::Outcome RecordReader::read(const Socket& socket, Deadline deadline, std::vector<std::uint8_t>& record) {
    for (bool tried = false;; tried = true) {
        const Outcome taken = take(record);
        if (taken != Outcome::timedOut) { return taken; }
        if (tried && Clock::now() >= deadline) { return Outcome::timedOut; } // also while bytes keep coming
        const IoResult received = socket.receive(buffer_, deadline);
        if (received.io == Io::timedOut) { return Outcome::timedOut; }
        if (received.io == Io::ended) { return Outcome::ended; }
        if (received.io != Io::done) { return Outcome::failed; }
        begin_ = 0;
        end_ = received.count;
    }
}

bool RecordReader::holdsRecord() const noexcept {
    const std::size_t received = end_ - begin_;
    if (midRecord() || received < kMarkSize) { return false; }
    const std::uint32_t mark = xdr_word_at(buffer_.data() + begin_);
    return (mark & kLastFragment) != 0 && (mark & ~kLastFragment) <= received - kMarkSize;
}

RecordReader::Progress RecordReader::consume() {
    while (begin_ < end_) {
        if (markBytes_ < kMarkSize) {
            mark_ = mark_ << 8 | buffer_[begin_++];
            if (++markBytes_ < kMarkSize) { continue; }
            fragmentLeft_ = mark_ & ~kLastFragment;
            if (fragmentLeft_ > limit_ - record_.size()) { return Progress::malformed; }
            if (fragmentLeft_ == 0 && ++emptyFragments_ > kMostEmptyFragments) { return Progress::malformed; }
        }
        const std::size_t count = std::min<std::size_t>(fragmentLeft_, end_ - begin_);
        record_.insert(record_.end(), buffer_.data() + begin_, buffer_.data() + begin_ + count);
        begin_ += count;
        fragmentLeft_ -= static_cast<std::uint32_t>(count);
        if (fragmentLeft_ > 0) { continue; }
        markBytes_ = 0;
        if ((mark_ & kLastFragment) != 0) {
            emptyFragments_ = 0;
            return Progress::whole;
        }
    }
    return Progress::partial;
}

} // namespace kvrpc
