// The scenarios with libtirpc, and with what rpcgen makes of docs/applman.x.
#include "tirpc/client.h"
#include "harness/call_scenarios.h"
#include "tirpc/codec.h"

namespace {

constexpr bench::Scenario kScenarios[] = {
    {"calls", bench::measureCalls<tirpc::Client>},
    {"threads", bench::measureThreads<tirpc::Client>},
    {"outcomes", bench::measureOutcomes<tirpc::Client>},
    {"connecting", bench::measureConnecting<tirpc::Client>},
    {"devices", bench::measureDevices<tirpc::Client>},
    {"three-words", tirpc::measureThreeWords},
    {"words", tirpc::measureWords},
    {"texts", tirpc::measureTexts},
    {"bytes", tirpc::measureBytes},
};

} // namespace

int main(int count, char** arguments) { return bench::runScenario(kScenarios, count, arguments); }
