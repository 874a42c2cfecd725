#include "plain/sending.h"

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "harness/measurement.h"
#include "plain/descriptor.h"
#include "plain/file_header.h"
#include "plain/stream.h"

namespace plain {
namespace {

/// Sends files one after the other, each when the one before is stored.
class Sender {
public:
    explicit Sender(const bench::Arguments& arguments)
        : stream_(arguments.text("address")), staged_(arguments.count("staged") != 0 ? 1 : 0) {}

    void send(const std::string& path, const char* directory, const char* name) {
        const Descriptor file{open(path.c_str(), O_RDONLY | O_CLOEXEC)};
        FileHeader header{sizeOf(file), staged_, {}, {}};
        std::strncpy(header.directory, directory, sizeof header.directory - 1);
        std::strncpy(header.name, name, sizeof header.name - 1);
        std::memcpy(buffer_.data(), &header, sizeof header);
        std::size_t filled = sizeof header;
        for (std::uint64_t left = header.size; filled > 0 || left > 0; filled = 0) {
            const std::size_t read = file.read(std::span{buffer_}.subspan(filled));
            bench::expect(read > 0 || left == 0, "the file has its size");
            left -= read;
            stream_.send(std::span{buffer_}.first(filled + read));
        }
        std::uint8_t answer = 1;
        bench::expect(stream_.receiveAll({&answer, 1}) && answer == 0, "the file is stored");
    }

private:
    Stream stream_;
    std::uint32_t staged_;
    std::vector<std::uint8_t> buffer_ = std::vector<std::uint8_t>(kChunk);
};

} // namespace

/// One file: address, source, staged. It arrives as "file".
void measureFile(const bench::Arguments& arguments) {
    Sender sender{arguments};
    const std::string& source = arguments.text("source");
    const auto begin = bench::Clock::now();
    sender.send(source, "files", "file");
    const bench::Seconds taken = bench::Clock::now() - begin;
    bench::report("mb_s", static_cast<double>(std::filesystem::file_size(source)) / 1e6 / taken.count());
    bench::report("peak_mib", bench::peakMemoryInMib());
}

/// All files of a folder: address, source, staged. They arrive in "tree".
void measureTree(const bench::Arguments& arguments) {
    Sender sender{arguments};
    std::size_t count = 0;
    const auto begin = bench::Clock::now();
    for (const auto& entry : std::filesystem::directory_iterator{arguments.text("source")}) {
        sender.send(entry.path().string(), "tree", entry.path().filename().c_str());
        ++count;
    }
    const bench::Seconds taken = bench::Clock::now() - begin;
    bench::report("files_per_s", static_cast<double>(count) / taken.count());
}

} // namespace plain
