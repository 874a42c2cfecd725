#include "simulator/fault_plan.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <tuple>
#include <utility>

#include "file_transfer/file_transfer_protocol.h"
#include "simulator/procedure_names.h"

namespace simulated_target {
namespace {

constexpr std::string_view kAny = "any";
constexpr std::string_view kAnyOfFiles = "file.any";

std::string quoted(std::string_view text) { return '"' + std::string{text} + '"'; }

/// Decimal, or hexadecimal behind 0x.
std::uint32_t numberOf(std::string_view text) {
    const bool hexadecimal = text.starts_with("0x");
    const std::string_view digits = hexadecimal ? text.substr(2) : text;
    std::uint32_t number = 0;
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), number, hexadecimal ? 16 : 10);
    if (parsed.ec != std::errc{} || parsed.ptr != digits.data() + digits.size()) {
        throw BadFault{quoted(text) + " is not a number from 0 to 4294967295"};
    }
    return number;
}

/// What stands before a separator and what behind it; none when there is no separator.
std::pair<std::string_view, std::optional<std::string_view>> splitAt(std::string_view text, char separator) {
    const std::size_t place = text.find(separator);
    if (place == std::string_view::npos) { return {text, {}}; }
    return {text.substr(0, place), text.substr(place + 1)};
}

void setCall(FaultRule& rule, std::string_view call) {
    if (call == kAny) { return; }
    if (call == kAnyOfFiles) {
        rule.program = file_transfer::kProgram;
        return;
    }
    const NamedProcedure* const procedure = findProcedure(call);
    if (procedure == nullptr) { throw BadFault{"there is no procedure " + quoted(call)}; }
    rule.program = procedure->program;
    rule.procedure = procedure->number;
}

/// "N", "N-", "N-M" or "%N".
void setWhich(FaultRule& rule, std::string_view which) {
    if (which.starts_with('%')) {
        rule.every = numberOf(which.substr(1));
    } else {
        const auto [first, last] = splitAt(which, '-');
        rule.first = numberOf(first);
        if (!last) {
            rule.last = rule.first;
        } else if (!last->empty()) {
            rule.last = numberOf(*last);
        }
    }
    if (rule.first == 0 || rule.last < rule.first || rule.every == 0) {
        throw BadFault{quoted(which) + " are no calls: they are counted from 1"};
    }
}

Fault faultOf(std::string_view text) {
    const auto [name, value] = splitAt(text, '=');
    const FaultKind* const kind = findFaultKind(name);
    if (kind == nullptr) { throw BadFault{"there is no fault " + quoted(name)}; }
    if (value && kind->takes == FaultKind::Value::none) { throw BadFault{quoted(name) + " takes no value"}; }
    if (!value && kind->takes == FaultKind::Value::required) { throw BadFault{quoted(name) + " wants a value"}; }
    return {kind, value ? numberOf(*value) : kind->defaultValue};
}

bool concerns(const FaultRule& rule, const kvrpc::RpcCall& call) {
    return rule.program.value_or(call.program) == call.program &&
           rule.procedure.value_or(call.procedure) == call.procedure;
}

bool isDue(const FaultRule& rule, std::uint64_t number) {
    return number >= rule.first && number <= rule.last && number % rule.every == 0;
}

} // namespace

FaultRule parseFault(std::string_view text) {
    const auto [calls, faults] = splitAt(text, ':');
    if (!faults) { throw BadFault{quoted(text) + " names no fault"}; }
    FaultRule rule;
    rule.text = text;
    const auto [call, which] = splitAt(calls, '@');
    setCall(rule, call);
    if (which) { setWhich(rule, *which); }
    for (std::optional<std::string_view> rest = faults; rest;) {
        const auto [fault, further] = splitAt(*rest, ',');
        rule.faults.push_back(faultOf(fault));
        rest = further;
    }
    return rule;
}

std::vector<FaultRule> readFaultFile(const std::string& path) {
    std::ifstream file{path};
    if (!file) { throw BadFault{"the file " + quoted(path) + " cannot be read"}; }
    std::vector<FaultRule> rules;
    std::string line;
    while (std::getline(file, line)) {
        if (line.ends_with('\r')) { line.pop_back(); }
        if (!line.empty() && !line.starts_with('#')) { rules.push_back(parseFault(line)); }
    }
    return rules;
}

FaultPlan::FaultPlan(std::vector<FaultRule> rules) {
    for (FaultRule& rule : rules) {
        rules_.push_back({std::move(rule)});
    }
}

void FaultPlan::add(FaultRule rule) {
    const std::lock_guard lock{mutex_};
    rules_.push_back({std::move(rule)});
}

void FaultPlan::clear() {
    const std::lock_guard lock{mutex_};
    rules_.clear();
}

bool FaultPlan::empty() {
    const std::lock_guard lock{mutex_};
    return rules_.empty();
}

std::vector<Fault> FaultPlan::due(const kvrpc::RpcCall& call) {
    std::vector<Fault> faults;
    const std::lock_guard lock{mutex_};
    for (Counted& counted : rules_) {
        if (!concerns(counted.rule, call) || !isDue(counted.rule, ++counted.calls)) { continue; }
        ++counted.fired;
        faults.insert(faults.end(), counted.rule.faults.begin(), counted.rule.faults.end());
    }
    std::ranges::stable_sort(faults, {}, &Fault::kind); // rows of one table
    if (!faults.empty()) { ++faultyCalls_; }
    return faults;
}

std::uint64_t FaultPlan::faultyCalls() {
    const std::lock_guard lock{mutex_};
    return faultyCalls_;
}

std::vector<RuleCount> FaultPlan::counts() {
    const std::lock_guard lock{mutex_};
    std::vector<RuleCount> all;
    for (const Counted& counted : rules_) {
        all.push_back({counted.rule.text, counted.calls, counted.fired});
    }
    return all;
}

void FaultPlan::hold(std::uint64_t connection, kvrpc::Bytes answer) {
    const std::lock_guard lock{mutex_};
    kvrpc::Bytes& held = held_[connection];
    held.insert(held.end(), answer.begin(), answer.end());
}

kvrpc::Bytes FaultPlan::release(std::uint64_t connection) {
    const std::lock_guard lock{mutex_};
    const auto held = held_.extract(connection);
    return held ? std::move(held.mapped()) : kvrpc::Bytes{};
}

} // namespace simulated_target
