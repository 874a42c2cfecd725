// The scenarios over plain sockets and with plain loops.
#include <vector>

#include "harness/call_scenarios.h"
#include "plain/clients.h"
#include "plain/codec.h"
#include "plain/multiplexer.h"
#include "plain/sending.h"

namespace {

/// One thread keeps so many calls under way on one connection: address, threads (calls under way), seconds.
void measureWindow(const bench::Arguments& arguments) {
    const std::size_t window = arguments.count("threads");
    plain::Stream stream{arguments.text("address")};
    plain::Request request;
    std::uint32_t xid = 0;
    const auto send = [&] {
        request.setXid(++xid);
        request.setApplication(bench::answeredApplication(xid));
        stream.send(request.bytes());
    };
    for (std::size_t i = 0; i < window; ++i) {
        send();
    }
    std::array<std::uint8_t, 1 << 14> buffer{};
    std::size_t filled = 0;
    std::uint32_t awaited = 0;
    const bench::Throughput measured =
        bench::runThreads(1, bench::Seconds{arguments.real("seconds")}, [&](std::size_t) {
            return [&] {
                while (filled < plain::Reply::kSize) {
                    filled += stream.receive(std::span{buffer}.subspan(filled));
                }
                std::uint32_t value = 0;
                const bench::Outcome outcome = plain::readReply(buffer.data(), ++awaited, value);
                filled -= plain::Reply::kSize;
                std::memmove(buffer.data(), buffer.data() + plain::Reply::kSize, filled);
                send();
                return outcome == bench::Outcome::value && value == bench::valueOf(bench::answeredApplication(awaited));
            };
        });
    bench::report("calls_per_s", measured.perSecond);
    bench::report("cpu_us", measured.processorTimeOfOne.count());
}

constexpr bench::Scenario kScenarios[] = {
    {"calls", bench::measureCalls<plain::Client>},
    {"window", measureWindow},
    {"threads", bench::measureThreads<plain::Multiplexer>},
    {"connecting", bench::measureConnecting<plain::Client>},
    {"devices", bench::measureDevices<plain::Client>},
    {"three-words", plain::measureThreeWords},
    {"words", plain::measureWords},
    {"texts", plain::measureTexts},
    {"bytes", plain::measureBytes},
    {"file", plain::measureFile},
    {"tree", plain::measureTree},
};

} // namespace

int main(int count, char** arguments) { return bench::runScenario(kScenarios, count, arguments); }
