// The caller's buffers: what is needed, and not a byte outside of what was given. Behind each there is no memory.
#include <algorithm>
#include <cstring>
#include <limits>
#include <sys/mman.h>
#include <unistd.h>

#include "api/api_test.h"
#include "faults/calls.h"

using namespace applman;

namespace {

constexpr std::uint8_t kFill = 0x55;

std::uint8_t* mapped(void* at, std::size_t bytes, int protection, int file, int flags) {
    void* const memory = ::mmap(at, bytes, protection, flags | (at == nullptr ? 0 : MAP_FIXED), file, 0);
    if (memory == MAP_FAILED) { throw std::bad_alloc{}; }
    return static_cast<std::uint8_t*>(memory);
}

/// Bytes behind which there is no memory. Of many, those in front share what the machine has; the last ones are real.
class Buffer {
public:
    explicit Buffer(std::size_t size) : size_(size), shared_(size / kPiece * kPiece) {
        const int file = ::memfd_create("buffer", 0);
        if (file == -1 || ::ftruncate(file, kPiece) != 0) { throw std::bad_alloc{}; }
        for (std::size_t at = 0; at < shared_; at += kPiece) {
            mapped(base_ + at, kPiece, PROT_READ | PROT_WRITE, file, MAP_SHARED | MAP_POPULATE);
        }
        ::close(file);
        mapped(base_ + shared_, kPiece, PROT_READ | PROT_WRITE, -1, MAP_PRIVATE | MAP_ANONYMOUS);
        std::memset(base_ + shared_, kFill, kPiece);
    }
    ~Buffer() { ::munmap(base_, shared_ + 2 * kPiece); }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    std::uint8_t* data() const { return base_ + shared_ + kPiece - size_; }
    bool frontIsUntouched() const {
        return shared_ != 0 || std::all_of(base_, data(), [](auto b) { return b == kFill; });
    }
    /// From an offset on, as far as it is real.
    bool isCleared(std::size_t from) const {
        return std::all_of(std::max(data() + from, base_ + shared_), data() + size_, [](auto b) { return b == 0; });
    }

private:
    static constexpr std::size_t kPiece = 1 << 20;
    const std::size_t size_;
    const std::size_t shared_;
    std::uint8_t* const base_ =
        mapped(nullptr, shared_ + 2 * kPiece, PROT_NONE, -1, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE);
};

struct Given : Call {
    std::uint8_t* buffer;
    std::uint32_t size;
};

enum class Tells { nothing, need, always }; // in the size

struct Row {
    const char* name;
    std::uint32_t exact; // size that holds the answer
    Tells tells;
    std::int32_t status; // when it does not fit
    std::string message; // without its arguments
    std::int32_t (*call)(Given& given);
    std::uint32_t procedure;
    simulated_target::ScriptedReply reply;
    std::uint32_t huge = 0; // a size whose bytes need more than 32 bits
    std::size_t unit = 1;   // bytes
    bool anyLarger = true;  // is taken as well
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.name; }

std::int32_t* signedSize(Given& g) { return reinterpret_cast<std::int32_t*>(&g.size); }
std::uint32_t* words(Given& g) { return reinterpret_cast<std::uint32_t*>(g.buffer); }

template <std::uint32_t kItem, auto kFunction = KvApplMan_getApplInfo>
std::int32_t info(Given& g) {
    return g(kFunction, 1, kItem, g.buffer, signedSize(g));
}

const std::string kDecode = "decodeParameterReturnValue 0x12500014";
const std::string kMap = "mapParamAndCheckParamSize 0x12500014";
constexpr std::uint32_t kInt = std::numeric_limits<std::int32_t>::max();

// clang-format off
const Row kRows[] = {
    {"word", 4, Tells::nothing, -200, kMap, info<9>, kGetParam, wire::value(7U), 0, 1, false},
    {"quad", 8, Tells::nothing, -200, kMap, info<4>, kGetParam, wire::value(std::int64_t{7}), 0, 1, false},
    {"number", 8, Tells::nothing, -200, kMap, info<3073>, kGetParam, wire::value(-1.1), 0, 1, false},
    {"text", 10, Tells::need, -200, kDecode, info<2>, kGetParam, wire::value(Text{"model.x86"}), kInt},
    {"negatedText", 3, Tells::need, -200, kDecode, info<19>, kGetParam, wire::value(Text{"\xbf\x80"})},
    {"words", 12, Tells::always, -200, kDecode, info<11>, kGetParam, wire::value(Words{1, 2, 3}), kInt},
    {"quads", 16, Tells::always, -200, kDecode, info<1200>, kGetParam, wire::value(std::vector<std::int64_t>{1, 2})},
    {"addresses", 29, Tells::always, -200, "KvApplMan_decodeIpAddresses 0x12500014", info<16>, 
     kGetParam, wire::value(Words{0x0100a8c0, 0, 0xffffffff})},
    {"defaultedWords", 4, Tells::always, -200, kDecode, info<11>, kGetParam, wire::noValue({0x14a00804})},
    {"flashText", 4, Tells::need, -200, kDecode, info<2, KvApplMan_getFlashApplInfo>,
     kGetFlashParam, wire::value(Text{"abc"}), kInt},
    {"applications", 3, Tells::always, -200, "KvApplMan_getApplications 0x12500012",
     [](Given& g) { return g(KvApplMan_getApplications, 0, words(g), signedSize(g)); },
     kGetApplications, wire::value(Words{1, 2, 3}), 0x40000001, 4},
    {"cores", 2, Tells::always, -200, "",
     [](Given& g) { return g(KvApplMan_getAvailableCoreIDs, 0, &g.size, words(g)); },
     kGetCoreIds, wire::reply(TApplManCoreIdResult{77, 0, {}, {1, 2}}), 0xffffffff, 4},
    {"flashApplications", 2, Tells::always, -200, "KvApplMan_getFlashApplications 0x1250003c",
     [](Given& g) { return g(KvApplMan_getFlashApplications, 0, &g.size, words(g)); },
     kGetFlashApplications, wire::reply(TApplManFlashListResult{77, 0, {}, {1, 2}, {}, {8}}), 0x40000001, 4},
    {"files", 2, Tells::always, -833, "KvApplMan_getFileInfo 0x12500027",
     [](Given& g) { return g(KvApplMan_getFileInfo, 1, &g.size, reinterpret_cast<TApplManAddFileInfo*>(g.buffer)); },
     kGetFileList, wire::reply(TApplManFileListResult{0, 0, {{"a", "b", "c", 9}, {"x", "", "z", 8}}, {}}),
     1'289'021, sizeof(TApplManAddFileInfo)},
};
// clang-format on

class Buffers : public ApiTest, public testing::WithParamInterface<Row> {
protected:
    Buffers() { t.target.scriptAlways(row.procedure, row.reply); }

    void fill(std::uint32_t size) {
        const Buffer buffer{size * row.unit};
        Given given{{*pool, t.device, t.access}, buffer.data(), size};
        const std::int32_t status = row.call(given);
        const bool fits = row.anyLarger ? size >= row.exact : size == row.exact;
        Messages reported = messages(pool);
        pool->reset();
        EXPECT_EQ(status, fits ? 0 : row.status);
        EXPECT_EQ(reported.empty() ? "" : reported[0].substr(0, reported[0].find('(')), fits ? "" : row.message);
        const bool told = row.tells == Tells::always || (row.tells == Tells::need && !fits);
        EXPECT_EQ(given.size, told ? row.exact : size);
        EXPECT_TRUE(buffer.frontIsUntouched());
        EXPECT_TRUE(buffer.isCleared(fits ? row.exact * row.unit : 0));
        EXPECT_TRUE(!fits || *buffer.data() != 0) << "there is an answer";
    }

    const Row& row = GetParam();
};

} // namespace

TEST_P(Buffers, AreFilledAsFarAsTheyReach) {
    for (const std::uint32_t size : {0U, 1U, row.exact - 1, row.exact, row.exact + 1, row.huge}) {
        SCOPED_TRACE(size);
        fill(size);
    }
}

INSTANTIATE_TEST_SUITE_P(Functions, Buffers, testing::ValuesIn(kRows), [](const auto& row) { return row.param.name; });
