// Record marking: fragments that arrive in slices of any size are the records that a plain reading of them finds.
#include <algorithm>
#include <optional>
#include <utility>

#include "fuzz/fuzz.h"
#include "rpc_wire/record_reader.h"

using namespace kvrpc;
using Outcome = RecordReader::Outcome;
using Reading = std::pair<std::vector<Bytes>, Outcome>; // records and what came then

static constexpr std::size_t kLimit = 256;    // bytes of a record, so that it is reached
static constexpr std::size_t kLongest = 1024; // bytes of input: too few to send too many empty fragments

static Input unread;          // what the socket's other side has sent
static std::size_t slice = 1; // bytes that arrive at once

IoResult Socket::receive(std::span<std::uint8_t> buffer, Deadline) const noexcept {
    const std::size_t count = std::min({slice, unread.size(), buffer.size()});
    std::copy_n(unread.begin(), count, buffer.begin());
    unread = unread.subspan(count);
    return {count == 0 ? Io::ended : Io::done, count};
}
void Socket::close() noexcept {}

static Reading readPlainly(Input bytes) {
    Reading reading{{}, Outcome::ended};
    Bytes record;
    while (bytes.size() >= 4) {
        const std::size_t length =
            std::size_t{bytes[0] & 0x7FU} << 24 | std::size_t{bytes[1]} << 16 | std::size_t{bytes[2]} << 8 | bytes[3];
        const bool last = bytes[0] >= 0x80;
        if (record.size() + length > kLimit) { return {reading.first, Outcome::malformed}; }
        if (length > bytes.size() - 4) { break; }
        const Input fragment = bytes.subspan(4, length);
        record.insert(record.end(), fragment.begin(), fragment.end());
        bytes = bytes.subspan(4 + length);
        if (last) { reading.first.push_back(std::exchange(record, {})); }
    }
    return reading;
}

void record_marking(Input input) {
    input = input.first(std::min(input.size(), kLongest));
    slice = std::size_t{takeByte(input)} + 1;
    unread = input;
    static std::optional<RecordReader> reader; // large
    reader.emplace(kLimit);
    Reading reading;
    Bytes record;
    while ((reading.second = reader->read(Socket{}, Deadline::max(), record)) == Outcome::record) {
        reading.first.push_back(record);
    }
    require(reading == readPlainly(input));
}
