#include "simulator/parameters.h"

#include <algorithm>
#include <iterator>

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
    return Text{"Simulated application " + binaryName(*process)};
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
using enum Access;

// In ascending order of the numbers.
constexpr Parameter kParameters[] = {
    // number, tag, of a process, of the manager, access, value
    {1, kTagWord, false, true, readOnly, kNoWord},
    {3, kTagText, true, false, readOnly, targetFileName},
    {4, kTagText, true, false, readOnly, targetDirectory},
    {kFileName, kTagText, true, false, writable, kNoText},
    {6, kTagText, true, false, writable, kNoText},
    {7, kTagQuad, true, false, writable, kNoQuad},
    {8, kTagText, true, true, writable, kNoText},
    {10, kTagWord, true, false, writable, kNoWord},
    {11, kTagWord, true, false, readOnly, state},
    {12, kTagQuad, true, false, writable, kNoQuad},
    {13, kTagTexts, true, true, writable, kNoTexts},
    {14, kTagText, true, true, writable, kNoText},
    {15, kTagText, true, true, writable, kNoText},
    {16, kTagQuad, true, true, writable, kNoQuad},
    {17, kTagWords, true, true, writable, firstCore},
    {18, kTagQuad, true, false, readOnly, kNoQuad},
    {19, kTagWord, true, false, readOnly, oneProcess},
    {20, kTagWord, true, false, readOnly, groupSize},
    {21, kTagWords, true, false, readOnly, firstCore},
    {23, kTagWord, true, true, writable, kNoWord},
    {24, kTagWord, true, true, writable, kNoWord},
    {25, kTagText, false, true, readOnly, description},
    {26, kTagText, false, true, readOnly, description},
    {27, kTagText, false, true, readOnly, description},
    {28, kTagWord, true, true, writable, kNoWord},
    {29, kTagWords, true, false, writable, kNoWords},
    {30, kTagWords, true, false, writable, kNoWords},
    {31, kTagWord, true, false, readOnly, initialisationCalls},
    {32, kTagText, false, true, readOnly, description},
    {33, kTagText, true, false, writable, kNoText},
    {34, kTagText, true, false, writable, kNoText},
    {35, kTagText, true, true, readOnly, description},
    {36, kTagText, false, true, readOnly, description},
    {37, kTagWord, false, true, readOnly, serialNumber},
    {38, kTagText, false, true, readOnly, negatedDescription},
    {39, kTagText, false, true, readOnly, negatedDescription},
    {40, kTagWord, true, true, readOnly, commandTimeout},
    {41, kTagText, true, false, readOnly, information},
    {42, kTagText, true, true, writable, kNoText},
    {43, kTagTexts, false, true, writable, kNoTexts},
    {131, kTagDouble, true, true, writable, kNoDouble},
    {134, kTagDouble, true, true, writable, kNoDouble},
    {1024, kTagWord, true, true, writable, kNoWord},
    {1025, kTagWord, false, true, readOnly, processCount},
    {1026, kTagQuad, false, true, readOnly, startTime},
    {1027, kTagQuad, false, true, readOnly, presentTime},
    {1028, kTagText, false, true, readOnly, description},
};

constexpr bool before(const Parameter& parameter, std::uint32_t number) { return parameter.number < number; }
static_assert(std::is_sorted(std::begin(kParameters), std::end(kParameters),
                             [](const Parameter& a, const Parameter& b) { return before(a, b.number); }));

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
    return found != std::end(kParameters) && found->number == number ? found : nullptr;
}

std::string binaryDirectory(const Application& process) {
    return std::string{kApplicationsDirectory} + "/" + std::to_string(process.id);
}

std::string binaryName(const Application& process) {
    const auto written = process.values.find(kFileName);
    if (written == process.values.end()) { return storeName(""); }
    return storeName(std::get<applman::kTagText>(written->second).value_or(""));
}

} // namespace simulated_target
