#include "simulator/parameters.h"

#include <algorithm>
#include <iterator>

#include "simulator/program_commands.h"
#include "simulator/store_path.h"

namespace simulated_target {
namespace {

using applman::TApplManValue;
using applman::Text;
using Words = std::vector<std::uint32_t>;

constexpr const char* kDescription = "Simulated target";

template <class Arm>
TApplManValue cleared(const ManagerFacts&, const Application*) {
    if constexpr (std::is_same_v<Arm, Text>) {
        return Text{""};
    } else {
        return Arm{};
    }
}

TApplManValue firstCore(const ManagerFacts&, const Application*) { return Words{1}; }
TApplManValue oneProcess(const ManagerFacts&, const Application*) { return std::uint32_t{1}; }
TApplManValue description(const ManagerFacts&, const Application*) { return Text{kDescription}; }

/// Every byte negated, as some texts travel.
TApplManValue negatedDescription(const ManagerFacts&, const Application*) {
    std::string text = kDescription;
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) { return static_cast<char>(-letter); });
    return Text{text};
}

TApplManValue targetFileName(const ManagerFacts&, const Application* process) { return Text{binaryName(*process)}; }
TApplManValue targetDirectory(const ManagerFacts&, const Application* process) {
    return Text{binaryDirectory(*process)};
}
TApplManValue state(const ManagerFacts&, const Application* process) {
    return static_cast<std::uint32_t>(process->state);
}
TApplManValue groupSize(const ManagerFacts&, const Application* process) { return process->groupSize; }
TApplManValue information(const ManagerFacts&, const Application* process) {
    const std::string name = "Simulated application " + binaryName(*process);
    if (process->program) { return Text{name + ": " + describeProgram(*process)}; }
    if (!process->end) { return Text{name}; }
    const auto& how = std::get<Text>(process->end->arguments.back());
    return Text{name + ": ended by itself, " + how.value_or("")};
}
TApplManValue shortInformation(const ManagerFacts&, const Application* process) {
    const bool runs = process != nullptr && process->program;
    return Text{runs ? describeProgram(*process) : kDescription};
}

TApplManValue initialisationCalls(const ManagerFacts& facts, const Application*) { return facts.initialisationCalls; }
TApplManValue serialNumber(const ManagerFacts& facts, const Application*) { return facts.cnSerialNumber; }
TApplManValue commandTimeout(const ManagerFacts& facts, const Application*) { return facts.commandTimeout; }
TApplManValue processCount(const ManagerFacts& facts, const Application*) { return facts.processCount; }
TApplManValue startTime(const ManagerFacts& facts, const Application*) { return facts.startTime; }
TApplManValue presentTime(const ManagerFacts& facts, const Application*) { return facts.time; }

constexpr auto kNoWord = cleared<std::uint32_t>;
constexpr auto kNoDouble = cleared<double>;
constexpr auto kNoText = cleared<Text>;
constexpr auto kNoWords = cleared<Words>;
constexpr auto kNoQuad = cleared<std::int64_t>;
constexpr auto kNoTexts = cleared<std::vector<Text>>;

using applman::kTagDouble;
using applman::kTagQuad;
using applman::kTagText;
using applman::kTagTexts;
using applman::kTagWord;
using applman::kTagWords;
using namespace applman::param;
using enum Access;

// In ascending order of the target's numbers.
constexpr Parameter kParameters[] = {
    // numbers, tag, of a process, of the manager, access, value
    {kItem21, kTagWord, false, true, readOnly, kNoWord},
    {kTargetFileName, kTagText, true, false, readOnly, targetFileName},
    {kTargetDirectory, kTagText, true, false, readOnly, targetDirectory},
    {kFileName, kTagText, true, false, writable, kNoText},
    {kDirectory, kTagText, true, false, writable, kNoText},
    {kFileTime, kTagQuad, true, false, writable, kNoQuad},
    {kParameter1007, kTagText, true, true, writable, kNoText},
    {kDownloadOption, kTagWord, true, false, writable, kNoWord},
    {kState, kTagWord, true, false, readOnly, state},
    {kDownloadTime, kTagQuad, true, false, writable, kNoQuad},
    {kParameter1001, kTagTexts, true, true, writable, kNoTexts},
    {kParameter1003, kTagText, true, true, writable, kNoText},
    {kParameter1002, kTagText, true, true, writable, kNoText},
    {kParameter1004, kTagQuad, true, true, writable, kNoQuad},
    {kParameter1005, kTagWords, true, true, writable, firstCore},
    {kItem8, kTagQuad, true, false, readOnly, kNoQuad},
    {kItem9, kTagWord, true, false, readOnly, oneProcess},
    {kGroupSize, kTagWord, true, false, readOnly, groupSize},
    {kItem11, kTagWords, true, false, readOnly, firstCore},
    {kParameter1008, kTagWord, true, true, writable, kNoWord},
    {kParameter1009, kTagWord, true, true, writable, kNoWord},
    {kItem12, kTagText, false, true, readOnly, description},
    {kItem13, kTagText, false, true, readOnly, description},
    {kItem14, kTagText, false, true, readOnly, description},
    {kParameter1010, kTagWord, true, true, writable, kNoWord},
    {kGroupSerialNumbers, kTagWords, true, false, writable, kNoWords},
    {kGroupAddresses, kTagWords, true, false, writable, kNoWords},
    {kInitCalls, kTagWord, true, false, readOnly, initialisationCalls},
    {kItem17, kTagText, false, true, readOnly, description},
    {kDownloadTimeText, kTagText, true, false, writable, kNoText},
    {kFileTimeText, kTagText, true, false, writable, kNoText},
    {kItem128, kTagText, true, true, readOnly, shortInformation},
    {kItem18, kTagText, false, true, readOnly, description},
    {kSerialNumber, kTagWord, false, true, readOnly, serialNumber},
    {kItem19, kTagText, false, true, readOnly, negatedDescription},
    {kItem20, kTagText, false, true, readOnly, negatedDescription},
    {kCommandTimeout, kTagWord, true, true, readOnly, commandTimeout},
    {kInformationText, kTagText, true, false, readOnly, information},
    {kParameter1011, kTagText, true, true, writable, kNoText},
    {kHostTime, kTagTexts, false, true, writable, kNoTexts},
    {kParameter3074, kTagDouble, true, true, writable, kNoDouble},
    {kParameter3073, kTagDouble, true, true, writable, kNoDouble},
    {kParameter3072, kTagWord, true, true, writable, kNoWord},
    {kItem2049, kTagWord, false, true, readOnly, processCount},
    {kStartTime, kTagQuad, false, true, readOnly, startTime},
    {kPresentTime, kTagQuad, false, true, readOnly, presentTime},
    {kItem2054, kTagText, false, true, readOnly, description},
};

constexpr bool before(const Parameter& parameter, std::uint32_t number) { return parameter.numbers.target < number; }
static_assert(std::is_sorted(std::begin(kParameters), std::end(kParameters),
                             [](const Parameter& a, const Parameter& b) { return before(a, b.numbers.target); }));

/// What the host calls the file, as far as it can be a name in the store on every system.
std::string storeName(std::string_view announced) {
    constexpr std::size_t kLongest = 200;
    constexpr std::string_view kFallback = "application.bin";
    constexpr std::string_view kHarmless = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-+=@()[] ";
    const std::size_t separator = announced.find_last_of("/\\");
    if (separator != std::string_view::npos) { announced.remove_prefix(separator + 1); }
    std::string name{announced.substr(0, kLongest)};
    std::replace_if(
        name.begin(), name.end(), [&](char letter) { return kHarmless.find(letter) == std::string_view::npos; }, '_');
    return isStoreName(name) ? name : std::string{kFallback};
}

} // namespace

const Parameter* findParameter(std::uint32_t number) noexcept {
    const auto* const found = std::lower_bound(std::begin(kParameters), std::end(kParameters), number, before);
    return found != std::end(kParameters) && found->numbers.target == number ? found : nullptr;
}

std::string binaryDirectory(const Application& process) {
    return std::string{kApplicationsDirectory} + "/" + std::to_string(process.id);
}

std::string binaryName(const Application& process) {
    const auto written = process.values.find(kFileName.target);
    if (written == process.values.end()) { return storeName(""); }
    return storeName(std::get<applman::kTagText>(written->second).value_or(""));
}

} // namespace simulated_target
