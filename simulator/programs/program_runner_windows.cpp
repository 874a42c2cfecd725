// On Windows nothing is run.
#include "simulator/programs/program_runner.h"

namespace simulated_target {

std::optional<std::string> whyNotRun(const RunOptions&) { return "programs are run on Linux only"; }

std::shared_ptr<ProgramRunner> makeProgramRunner(const RunOptions&, ProgramSink) { return nullptr; }

} // namespace simulated_target
