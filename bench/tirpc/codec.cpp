#include "tirpc/codec.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <applman.h>

#include "harness/codec_values.h"
#include "harness/measurement.h"

namespace tirpc {
namespace {

using bench::keep;
using bench::Nanoseconds;
using bench::Seconds;
using bench::timeOf;
using Bytes = std::vector<char>;

/// A stream over memory.
class Stream {
public:
    Stream(char* bytes, std::size_t size, xdr_op direction) {
        xdrmem_create(&xdr_, bytes, static_cast<u_int>(size), direction);
    }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    ~Stream() { xdr_destroy(&xdr_); }

    XDR* begin() {
        xdr_setpos(&xdr_, 0);
        return &xdr_;
    }
    XDR* get() { return &xdr_; }

private:
    XDR xdr_{};
};

Nanoseconds timeToEncode(Seconds time, applman_value& value, Bytes& bytes) {
    Stream stream{bytes.data(), bytes.size(), XDR_ENCODE};
    return timeOf(time, [&] {
        bench::expect(xdr_applman_value(stream.begin(), &value), "it is encoded");
        keep(bytes);
    });
}
Nanoseconds timeToEncodeAfresh(Seconds time, applman_value& value, std::size_t size) {
    return timeOf(time, [&] {
        const std::unique_ptr<char[]> fresh{new char[size]};
        Stream stream{fresh.get(), size, XDR_ENCODE};
        bench::expect(xdr_applman_value(stream.get(), &value), "it is encoded");
        keep(fresh);
    });
}
/// Into a value that has been released, and released again.
Nanoseconds timeToDecode(Seconds time, Bytes& bytes) {
    Stream stream{bytes.data(), bytes.size(), XDR_DECODE};
    return timeOf(time, [&] {
        applman_value value{};
        bench::expect(xdr_applman_value(stream.begin(), &value), "it is decoded");
        keep(value);
        xdr_free(reinterpret_cast<xdrproc_t>(xdr_applman_value), &value);
    });
}
/// Into one and the same value.
Nanoseconds timeToDecodeAgain(Seconds time, Bytes& bytes) {
    Stream stream{bytes.data(), bytes.size(), XDR_DECODE};
    applman_value value{};
    const Nanoseconds taken = timeOf(time, [&] {
        bench::expect(xdr_applman_value(stream.begin(), &value), "it is decoded");
        keep(value);
    });
    xdr_free(reinterpret_cast<xdrproc_t>(xdr_applman_value), &value);
    return taken;
}

/// Encoding, encoding into fresh memory, decoding, as GB/s.
void measureLarge(const bench::Arguments& arguments, applman_value& value, std::size_t size) {
    const Seconds time{arguments.real("seconds") / 3};
    Bytes bytes(size);
    const auto encoded = static_cast<double>(size);
    bench::report("encode_gb_s", encoded / timeToEncode(time, value, bytes).count());
    bench::report("encode_fresh_gb_s", encoded / timeToEncodeAfresh(time, value, size).count());
    bench::report("decode_gb_s", encoded / timeToDecodeAgain(time, bytes).count());
}

} // namespace

void measureThreeWords(const bench::Arguments& arguments) {
    const Seconds time{arguments.real("seconds") / 2};
    applman_request request{1, 16, 7};
    applman_request decoded{};
    Bytes bytes(12);
    Stream encoder{bytes.data(), bytes.size(), XDR_ENCODE};
    Stream decoder{bytes.data(), bytes.size(), XDR_DECODE};
    bench::report("encode_ns", timeOf(time, [&] {
                                   keep(request);
                                   xdr_applman_request(encoder.begin(), &request);
                                   keep(bytes);
                               }).count());
    bench::report("decode_ns", timeOf(time, [&] {
                                   xdr_applman_request(decoder.begin(), &decoded);
                                   keep(decoded);
                               }).count());
    bench::expect(decoded.mode == request.mode && decoded.appl_id == request.appl_id, "the words come back");
}

void measureWords(const bench::Arguments& arguments) {
    auto words = bench::manyWords();
    applman_value value{};
    value.tag = APPLMAN_WORDS;
    value.applman_value_u.words.words_len = static_cast<u_int>(words.size());
    value.applman_value_u.words.words_val = words.data();
    measureLarge(arguments, value, 8 + 4 * words.size());
}

void measureTexts(const bench::Arguments& arguments) {
    const Seconds time{arguments.real("seconds") / 2};
    auto texts = bench::manyTexts();
    std::vector<char*> pointers(texts.size());
    std::transform(texts.begin(), texts.end(), pointers.begin(), [](std::string& text) { return text.data(); });
    applman_value value{};
    value.tag = APPLMAN_TEXTS;
    value.applman_value_u.texts.texts_len = static_cast<u_int>(pointers.size());
    value.applman_value_u.texts.texts_val = pointers.data();
    Bytes bytes(8 + texts.size() * (4 + bench::kTextLength));
    const auto count = static_cast<double>(texts.size());
    bench::report("encode_ns", timeToEncode(time, value, bytes).count() / count);
    bench::report("decode_ns", timeToDecode(time, bytes).count() / count);
}

void measureBytes(const bench::Arguments& arguments) {
    auto content = bench::manyBytes();
    applman_value value{};
    value.tag = APPLMAN_BYTES;
    value.applman_value_u.bytes.bytes_len = static_cast<u_int>(content.size());
    value.applman_value_u.bytes.bytes_val = reinterpret_cast<char*>(content.data());
    measureLarge(arguments, value, 8 + content.size());
}

} // namespace tirpc
