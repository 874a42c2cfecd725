// A program of the benchmarks: it carries out one scenario, PROGRAM SCENARIO NAME=VALUE..., prints what it has measured,
// a line "name value" each, and ends with 0 only when every result was right.
#pragma once

#include <cstdio>
#include <exception>
#include <map>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace bench {

class Arguments {
public:
    explicit Arguments(std::span<char*> given) {
        for (const std::string_view each : given) {
            const std::size_t equals = each.find('=');
            if (equals == std::string_view::npos) { throw std::runtime_error{"not NAME=VALUE: " + std::string{each}}; }
            values_.emplace(each.substr(0, equals), each.substr(equals + 1));
        }
    }

    const std::string& text(const std::string& name) const {
        const auto found = values_.find(name);
        if (found == values_.end()) { throw std::runtime_error{"without " + name + "="}; }
        return found->second;
    }
    double real(const std::string& name) const { return std::stod(text(name)); }
    std::size_t count(const std::string& name) const { return std::stoul(text(name)); }

private:
    std::map<std::string, std::string, std::less<>> values_{};
};

inline void report(const char* name, double value) { std::printf("%s %.9g\n", name, value); }

struct Scenario {
    std::string_view name;
    void (*run)(const Arguments& arguments);
};

inline int runScenario(std::span<const Scenario> scenarios, int count, char** arguments) try {
    const std::string_view wanted = count > 1 ? arguments[1] : "";
    for (const Scenario& scenario : scenarios) {
        if (scenario.name != wanted) { continue; }
        scenario.run(Arguments{std::span{arguments + 2, arguments + count}});
        return 0;
    }
    std::fprintf(stderr, "%s: no scenario \"%s\"\n", arguments[0], std::string{wanted}.c_str());
    return 2;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "%s %s: %s\n", arguments[0], arguments[1], failure.what());
    return 1;
}

} // namespace bench
