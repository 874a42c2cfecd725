// The scenarios with the project: through its exported functions where there is one.
#include "harness/call_scenarios.h"
#include "project/codec.h"
#include "project/files.h"
#include "project/host.h"

namespace {

constexpr bench::Scenario kScenarios[] = {
    {"calls", bench::measureCalls<project::Client>},
    {"threads", bench::measureThreads<project::Client>},
    {"outcomes", bench::measureOutcomes<project::Client>},
    {"connecting", bench::measureConnecting<project::Client>},
    {"devices", bench::measureDevices<project::Client>},
    {"three-words", project::measureThreeWords},
    {"words", project::measureWords},
    {"texts", project::measureTexts},
    {"bytes", project::measureBytes},
    {"file", project::measureFile},
    {"tree", project::measureTree},
    {"group", project::measureGroup},
};

} // namespace

int main(int count, char** arguments) { return bench::runScenario(kScenarios, count, arguments); }
