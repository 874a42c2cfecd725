// Calls of a target, one after the other: a byte picks program and procedure, the next says how many words of arguments
// follow. Whatever is asked for, nothing beside the store is touched and nothing half written stays in it.
#include <algorithm>
#include <filesystem>
#include <unistd.h>

#include "file_transfer/file_transfer_protocol.h"
#include "fuzz/fuzz.h"
#include "protocol/procedure_numbers.h"
#include "simulator/target_service.h"

using namespace simulated_target;
namespace fs = std::filesystem;

void target_calls(Input input) {
    static constexpr std::uint32_t kPrograms[][2] = {{applman::kApplManProgram, applman::kApplManVersion},
                                                     {applman::kApplManProgram, applman::kApplManVersion + 1},
                                                     {file_transfer::kProgram, file_transfer::kVersion},
                                                     {file_transfer::kProgram + 1, file_transfer::kVersion}};
    static const fs::path folder = fs::temp_directory_path() / ("kvfuzz-" + std::to_string(::getpid()));
    Options options;
    options.store = folder / "store"; // and nothing else
    options.commandDelay = {};
    options.recordRequests = false;
    TargetService target{options};
    while (!input.empty()) {
        const std::uint8_t pick = takeByte(input);
        const std::size_t length = std::min<std::size_t>(4U * takeByte(input), input.size());
        const auto& [program, version] = kPrograms[pick >> 6];
        target.handle({1, program, version, pick & 63U, input.first(length)});
        input = input.subspan(length);
    }
    target.connectionClosed(1);
    require(std::distance(fs::directory_iterator{folder}, fs::directory_iterator{}) == 1);
    for (const auto& entry : fs::recursive_directory_iterator{options.store}) {
        require(!entry.path().filename().string().starts_with(kStagePrefix));
    }
    fs::remove_all(folder);
}
