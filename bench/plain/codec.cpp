// Loops that turn values into bytes and back with nothing but what the work takes.
#include "plain/codec.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "harness/codec_values.h"
#include "harness/measurement.h"
#include "plain/messages.h"

namespace plain {
namespace {

using bench::keep;
using bench::timeOf;
using Bytes = std::vector<std::uint8_t>;

struct ThreeWords {
    std::uint32_t first, second, third;
};

// As functions of their own, since a routine of a record is called, too.
[[gnu::noinline]] void encode(const ThreeWords& words, std::uint8_t* bytes) {
    store(bytes, words.first);
    store(bytes + 4, words.second);
    store(bytes + 8, words.third);
}
[[gnu::noinline]] void decode(const std::uint8_t* bytes, ThreeWords& words) {
    words = {load(bytes), load(bytes + 4), load(bytes + 8)};
}
[[gnu::noinline]] void encode(const std::vector<std::uint32_t>& words, std::uint8_t* bytes) {
    for (const std::uint32_t word : words) {
        store(bytes, word);
        bytes += 4;
    }
}
[[gnu::noinline]] void decode(const std::uint8_t* bytes, std::vector<std::uint32_t>& words) {
    for (std::uint32_t& word : words) {
        word = load(bytes);
        bytes += 4;
    }
}

std::size_t paddedSize(std::size_t length) { return (length + 3) / 4 * 4; }

void encode(const std::vector<std::string>& texts, Bytes& bytes) {
    bytes.resize(4 + texts.size() * (4 + paddedSize(bench::kTextLength)));
    std::uint8_t* at = bytes.data();
    store(at, static_cast<std::uint32_t>(texts.size()));
    at += 4;
    for (const std::string& text : texts) {
        store(at, static_cast<std::uint32_t>(text.size()));
        std::copy(text.begin(), text.end(), at + 4);
        at += 4 + paddedSize(text.size());
    }
}
std::vector<std::string> decodeTexts(const Bytes& bytes) {
    const std::uint8_t* at = bytes.data();
    std::vector<std::string> texts(load(at));
    at += 4;
    for (std::string& text : texts) {
        const std::uint32_t length = load(at);
        text.assign(reinterpret_cast<const char*>(at + 4), length);
        at += 4 + paddedSize(length);
    }
    return texts;
}

} // namespace

void measureThreeWords(const bench::Arguments& arguments) {
    const bench::Seconds time{arguments.real("seconds") / 2};
    ThreeWords words{1, 16, 7};
    ThreeWords decoded{};
    std::array<std::uint8_t, 12> bytes{};
    bench::report("encode_ns", timeOf(time, [&] {
                                   keep(words);
                                   encode(words, bytes.data());
                                   keep(bytes);
                               }).count());
    bench::report("decode_ns", timeOf(time, [&] {
                                   keep(bytes);
                                   decode(bytes.data(), decoded);
                                   keep(decoded);
                               }).count());
    bench::expect(decoded.first == words.first && decoded.third == words.third, "the words come back");
}

void measureWords(const bench::Arguments& arguments) {
    const bench::Seconds time{arguments.real("seconds") / 3};
    const auto words = bench::manyWords();
    const double size = 4.0 * static_cast<double>(words.size());
    std::vector<std::uint32_t> decoded(words.size());
    Bytes bytes(4 * words.size());
    bench::report("encode_gb_s", size / timeOf(time, [&] {
                                            encode(words, bytes.data());
                                            keep(bytes);
                                        }).count());
    bench::report("encode_fresh_gb_s",
                  size / timeOf(time, [&] {
                             const std::unique_ptr<std::uint8_t[]> fresh{new std::uint8_t[4 * words.size()]};
                             encode(words, fresh.get());
                             keep(fresh);
                         }).count());
    bench::report("decode_gb_s", size / timeOf(time, [&] {
                                            decode(bytes.data(), decoded);
                                            keep(decoded);
                                        }).count());
    bench::expect(decoded == words, "the words come back");
}

void measureTexts(const bench::Arguments& arguments) {
    const bench::Seconds time{arguments.real("seconds") / 2};
    const auto texts = bench::manyTexts();
    const auto count = static_cast<double>(texts.size());
    Bytes bytes;
    bench::report("encode_ns", timeOf(
                                   time,
                                   [&] {
                                       encode(texts, bytes);
                                       keep(bytes);
                                   }).count() /
                                   count);
    bench::report("decode_ns", timeOf(
                                   time,
                                   [&] {
                                       auto decoded = decodeTexts(bytes);
                                       keep(decoded);
                                   }).count() /
                                   count);
    bench::expect(decodeTexts(bytes) == texts, "the texts come back");
}

void measureBytes(const bench::Arguments& arguments) {
    const bench::Seconds time{arguments.real("seconds") / 3};
    const auto content = bench::manyBytes();
    const auto size = static_cast<double>(content.size());
    Bytes bytes(content.size());
    const double copied = size / timeOf(time, [&] {
                                     std::memcpy(bytes.data(), content.data(), content.size());
                                     keep(bytes);
                                 }).count();
    bench::report("encode_gb_s", copied);
    bench::report("encode_fresh_gb_s",
                  size / timeOf(time, [&] {
                             const std::unique_ptr<std::uint8_t[]> fresh{new std::uint8_t[content.size()]};
                             std::memcpy(fresh.get(), content.data(), content.size());
                             keep(fresh);
                         }).count());
    bench::report("decode_gb_s", copied);
    bench::expect(bytes == content, "the bytes are copied");
}

} // namespace plain
