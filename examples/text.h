// Texts that the programs print.
#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "KvApplMan.hpp"

inline std::string textOf(const std::string& text) { return text; }
inline std::string textOf(kvapplman::State state) {
    return state == kvapplman::State::unknown ? "unknown" : rowOf(kvapplman::kStates, state).name;
}
inline std::string textOf(kvapplman::Time time) { return std::to_string(time.time_since_epoch().count()) + " s"; }
inline std::string textOf(std::chrono::seconds time) { return std::to_string(time.count()) + " s"; }

template <class Number, class = std::enable_if_t<std::is_arithmetic_v<Number>>>
std::string textOf(Number number) {
    return std::to_string(number);
}

template <class Element>
std::string textOf(const std::vector<Element>& elements) {
    std::string all;
    for (const Element& element : elements)
        all += (all.empty() ? "" : ", ") + textOf(element);
    return all;
}

inline std::string textOf(const kvapplman::Value& value) {
    return std::visit([](const auto& held) { return textOf(held); }, value);
}
