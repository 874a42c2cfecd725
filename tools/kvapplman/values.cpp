#include "values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <optional>
#include <type_traits>

#include "numbers.h"
#include "times.h"

namespace tool {
namespace {

using kvapplman::Kind;
using kvapplman::State;
using kvapplman::Time;
using kvapplman::Value;

[[noreturn]] void failUsage(const std::string& text) { throw Failed(ExitCode::usage, text); }

template <class Rows>
std::string namesOf(const Rows& rows) {
    std::string all;
    for (const auto& row : rows) {
        all += (all.empty() ? "" : ", ") + std::string{row.name};
    }
    return all;
}

template <class Rows>
const auto& rowFrom(const Rows& rows, std::string name, const char* what) {
    const auto number = wordFrom(name);
    std::ranges::replace(name, '-', '_');
    for (const auto& row : rows) {
        if (row.name == name || (number && row.id == static_cast<decltype(row.id)>(*number))) { return row; }
    }
    failUsage("\"" + name + "\" is no " + what + ". There are: " + namesOf(rows) + ".");
}

/// How users write a value.
template <class Type>
struct Word;

template <class Number>
Number checked(const std::optional<Number>& number, const std::string& word, const char* what) {
    if (!number) { failUsage("\"" + word + "\" is no " + what + "."); }
    return *number;
}

template <>
struct Word<std::uint32_t> {
    static std::uint32_t from(const std::string& word) {
        return checked(wordFrom(word), word, "number from 0 to 4294967295");
    }
};

template <>
struct Word<std::int64_t> {
    static std::int64_t from(const std::string& word) {
        return checked(numberFrom<std::int64_t>(word), word, "whole number of 64 bits");
    }
};

template <>
struct Word<double> {
    static double from(const std::string& word) {
        double number = 0.0;
        const auto parsed = std::from_chars(word.data(), word.data() + word.size(), number);
        const bool whole = parsed.ec == std::errc{} && parsed.ptr == word.data() + word.size();
        return checked(whole ? std::optional{number} : std::nullopt, word, "number");
    }
};

template <>
struct Word<Time> {
    static Time from(const std::string& word) { return checked(timeFrom(word), word, "time"); }
};

template <>
struct Word<std::chrono::seconds> {
    static std::chrono::seconds from(const std::string& word) {
        return std::chrono::seconds{Word<std::uint32_t>::from(word)};
    }
};

template <>
struct Word<State> {
    static State from(const std::string& word) { return stateFrom(word); }
};

template <>
struct Word<std::string> {
    static std::string from(const std::string& word) { return word; }
};

template <class Element>
struct Words {
    static Value from(const std::vector<std::string>& words) {
        if (words.size() != 1) { failUsage("This takes one value."); }
        return Word<Element>::from(words.front());
    }
};

template <class Element>
struct Words<std::vector<Element>> {
    static Value from(const std::vector<std::string>& words) {
        std::vector<Element> elements;
        elements.reserve(words.size());
        for (const std::string& word : words) {
            elements.push_back(Word<Element>::from(word));
        }
        return elements;
    }
};

template <std::size_t... kKinds>
Value valueOfKind(Kind kind, const std::vector<std::string>& words, std::index_sequence<kKinds...>) {
    using From = Value (*)(const std::vector<std::string>&);
    constexpr From kForms[] = {&Words<std::variant_alternative_t<kKinds, Value>>::from...};
    return kForms[static_cast<std::size_t>(kind)](words);
}

std::string wordOf(const std::string& text) { return text; }
std::string wordOf(State state) { return textOf(state); }
std::string wordOf(Time time) { return textOf(time); }
std::string wordOf(std::chrono::seconds time) { return std::to_string(time.count()) + " s"; }
std::string wordOf(std::uint32_t number) { return std::to_string(number); }
std::string wordOf(std::int64_t number) { return std::to_string(number); }

std::string wordOf(double number) {
    std::array<char, 32> text{};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), number);
    return {text.data(), written.ptr};
}

template <class Element>
std::string wordOf(const std::vector<Element>& elements) {
    std::string all;
    for (const Element& element : elements) {
        all += (all.empty() ? "" : " ") + wordOf(element);
    }
    return all;
}

template <class Type>
Json jsonOfHeld(const Type& held) {
    if constexpr (std::is_same_v<Type, State> || std::is_same_v<Type, Time>) {
        return textOf(held);
    } else if constexpr (std::is_same_v<Type, std::chrono::seconds>) {
        return held.count();
    } else {
        return held;
    }
}

} // namespace

const kvapplman::ItemRow& itemFrom(const std::string& text) {
    return rowFrom(kvapplman::kItems, text, "information item");
}

const kvapplman::ParamRow& paramFrom(const std::string& text) { return rowFrom(kvapplman::kParams, text, "parameter"); }

State stateFrom(const std::string& text) { return rowFrom(kvapplman::kStates, text, "state").id; }

Value valueFrom(Kind kind, const std::vector<std::string>& words) {
    return valueOfKind(kind, words, std::make_index_sequence<std::variant_size_v<Value>>());
}

std::string textOf(State state) {
    const auto* const row = std::ranges::find(kvapplman::kStates, state, &kvapplman::StateRow::id);
    return row == kvapplman::kStates.end() ? "unknown" : row->name;
}

std::string textOf(const Value& value) {
    return std::visit([](const auto& held) { return wordOf(held); }, value);
}

Json jsonOf(const Value& value) {
    return std::visit([](const auto& held) { return jsonOfHeld(held); }, value);
}

} // namespace tool
