#include "project/codec.h"

#include <utility>
#include <vector>

#include "harness/codec_values.h"
#include "harness/measurement.h"
#include "platform/rpc_program.h"
#include "protocol/procedures.h"
#include "rpc_wire/rpc_message.h"

namespace project {
namespace {

using applman::recordRoutine;
using applman::TApplManRequest;
using applman::TApplManValue;
using bench::keep;
using bench::Nanoseconds;
using bench::timeOf;
using Bytes = std::vector<std::uint8_t>;

template <class Record>
void encode(Record& record, Bytes& bytes) {
    Xdr xdr = Xdr::encoder(bytes);
    bench::expect(recordRoutine<Record>(xdr, &record), "it is encoded");
}
template <class Record>
void decode(const Bytes& bytes, Record& record) {
    Xdr xdr = Xdr::decoder(bytes);
    bench::expect(recordRoutine<Record>(xdr, &record), "it is decoded");
}
template <class Record>
void release(Record& record) {
    Xdr xdr = Xdr::freer();
    recordRoutine<Record>(xdr, &record);
}

template <class Record>
Nanoseconds timeToEncode(bench::Seconds time, Record& record) {
    Bytes bytes;
    return timeOf(time, [&] {
        bytes.clear();
        keep(record);
        encode(record, bytes);
        keep(bytes);
    });
}
template <class Record>
Nanoseconds timeToEncodeAfresh(bench::Seconds time, Record& record) {
    return timeOf(time, [&] {
        Bytes bytes;
        encode(record, bytes);
        keep(bytes);
    });
}
/// Into a record that has been released, and released again.
template <class Record>
Nanoseconds timeToDecode(bench::Seconds time, const Bytes& bytes) {
    Record record;
    return timeOf(time, [&] {
        decode(bytes, record);
        keep(record);
        release(record);
    });
}
/// Into one and the same record.
template <class Record>
Nanoseconds timeToDecodeAgain(bench::Seconds time, const Bytes& bytes) {
    Record record;
    return timeOf(time, [&] {
        decode(bytes, record);
        keep(record);
    });
}

Bytes encoded(TApplManValue& value) {
    Bytes bytes;
    encode(value, bytes);
    TApplManValue decoded;
    decode(bytes, decoded);
    bench::expect(decoded == value, "the value comes back");
    return bytes;
}

} // namespace

void measureThreeWords(const bench::Arguments& arguments) {
    const bench::Seconds time{arguments.real("seconds") / 3};
    TApplManRequest request{1, 16, 7};
    Bytes bytes;
    encode(request, bytes);
    bench::report("encode_ns", timeToEncode(time, request).count());
    bench::report("decode_ns", timeToDecodeAgain<TApplManRequest>(time, bytes).count());
    bench::report("head_ns", timeOf(time, [&] {
                                 auto record = kvrpc::beginCall(applman::kApplManProgram, applman::kApplManVersion,
                                                                applman::kGetCommandState);
                                 encode(request, record);
                                 kvrpc::seal(record);
                                 keep(record);
                             }).count());
}

void measureWords(const bench::Arguments& arguments) {
    const bench::Seconds time{arguments.real("seconds") / 3};
    TApplManValue words{bench::manyWords()};
    const Bytes bytes = encoded(words);
    const auto size = static_cast<double>(bytes.size());
    bench::report("encode_gb_s", size / timeToEncode(time, words).count());
    bench::report("encode_fresh_gb_s", size / timeToEncodeAfresh(time, words).count());
    bench::report("decode_gb_s", size / timeToDecodeAgain<TApplManValue>(time, bytes).count());
}

void measureTexts(const bench::Arguments& arguments) {
    const bench::Seconds time{arguments.real("seconds") / 2};
    const auto texts = bench::manyTexts();
    TApplManValue value{std::vector<applman::Text>(texts.begin(), texts.end())};
    const Bytes bytes = encoded(value);
    const auto count = static_cast<double>(texts.size());
    bench::report("encode_ns", timeToEncode(time, value).count() / count);
    bench::report("decode_ns", timeToDecode<TApplManValue>(time, bytes).count() / count);
}

void measureBytes(const bench::Arguments& arguments) {
    const bench::Seconds time{arguments.real("seconds") / 3};
    TApplManValue value{bench::manyBytes()};
    const Bytes bytes = encoded(value);
    const auto size = static_cast<double>(bytes.size());
    bench::report("encode_gb_s", size / timeToEncode(time, value).count());
    bench::report("encode_fresh_gb_s", size / timeToEncodeAfresh(time, value).count());
    bench::report("decode_gb_s", size / timeToDecodeAgain<TApplManValue>(time, bytes).count());
}

} // namespace project
