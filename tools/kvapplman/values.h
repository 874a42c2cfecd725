// Items, parameters, states and their values: by name, as text and as JSON.
#pragma once

#include <string>
#include <vector>

#include "KvApplMan.hpp"
#include "failure.h"

namespace tool {

/// The row that a name (with "_" or "-") or a number means. Throws Failed (usage).
const kvapplman::ItemRow& itemFrom(const std::string& text);
const kvapplman::ParamRow& paramFrom(const std::string& text);
kvapplman::State stateFrom(const std::string& text);

/// The value of a kind that words mean: several words for texts, words and quads, else one. Throws Failed (usage).
kvapplman::Value valueFrom(kvapplman::Kind kind, const std::vector<std::string>& words);

/// "unknown" for a state that the library does not know.
std::string textOf(kvapplman::State state);
/// Elements with a space between.
std::string textOf(const kvapplman::Value& value);
/// States as names, times as texts ("2026-01-31T12:34:56Z"), the others as numbers, texts and lists of these.
Json jsonOf(const kvapplman::Value& value);

} // namespace tool
