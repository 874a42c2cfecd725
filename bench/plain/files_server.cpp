// A plain server that stores files: bench_files_server FOLDER. A file is staged, synchronised and renamed as the store of
// the simulated target does it, or written as it comes; the client says which. Prints its port, and ends when it is killed.
#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "plain/descriptor.h"
#include "plain/file_header.h"
#include "plain/stream.h"

namespace {

using plain::Descriptor;
using plain::FileHeader;
using plain::Stream;

constexpr const char* kStageName = ".staged";

class Connection {
public:
    Connection(Stream stream, const Descriptor& root) : stream_(std::move(stream)), root_(root) {}

    void serve() {
        FileHeader header{};
        while (stream_.receiveAll({reinterpret_cast<std::uint8_t*>(&header), sizeof header})) {
            store(header);
            stream_.send(std::array<std::uint8_t, 1>{0});
        }
    }

private:
    void store(const FileHeader& header) {
        const bool staged = header.staged != 0;
        if (mkdirat(root_.number(), header.directory, 0755) == 0 && staged) { root_.synchronise(); }
        const Descriptor directory{openat(root_.number(), header.directory, O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
        const char* const name = staged ? kStageName : header.name;
        const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | (staged ? O_EXCL : O_TRUNC);
        const Descriptor file{openat(directory.number(), name, flags, 0644)};
        receive(header.size, file);
        if (!staged) { return; }
        file.synchronise();
        if (renameat(directory.number(), name, directory.number(), header.name) != 0) { plain::fail("renameat"); }
        directory.synchronise();
    }

    void receive(std::uint64_t size, const Descriptor& file) {
        while (size > 0) {
            const std::size_t most = std::min<std::uint64_t>(size, buffer_.size());
            const std::size_t received = stream_.receive(std::span{buffer_}.first(most));
            if (received == 0) { plain::fail("the content ends"); }
            file.write(std::span{buffer_}.first(received));
            size -= received;
        }
    }

    const Stream stream_;
    const Descriptor& root_;
    std::vector<std::uint8_t> buffer_ = std::vector<std::uint8_t>(plain::kChunk);
};

} // namespace

int main(int count, char** arguments) try {
    if (count != 2) {
        std::fprintf(stderr, "usage: bench_files_server FOLDER\n");
        return 2;
    }
    const Descriptor root{open(arguments[1], O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    const plain::Listener listener;
    std::printf("listening %d\n", listener.port());
    std::fflush(stdout);
    for (;;) {
        Connection{listener.accept(), root}.serve();
    }
} catch (const std::exception& failure) {
    std::fprintf(stderr, "bench_files_server: %s\n", failure.what());
    return 1;
}
