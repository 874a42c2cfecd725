#include "simulator/programs/program_runner.h"

#include <cstdio>

namespace simulated_target {

std::string newsText(std::uint32_t applId, ProgramNews news, std::string_view line) {
    const char* const separator = news == ProgramNews::output ? "| " : ": ";
    return "process " + std::to_string(applId) + separator + std::string{line};
}

void printProgramNews(std::uint32_t applId, ProgramNews news, std::string_view line) {
    std::fputs((newsText(applId, news, line) + '\n').c_str(), stderr);
}

} // namespace simulated_target
