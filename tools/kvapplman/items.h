// Information items of applications and of flash applications, as commands tell them.
#pragma once

#include <string>
#include <vector>

#include "each_device.h"
#include "values.h"

namespace tool {

struct ReadItem {
    const char* name;
    std::uint32_t number;
    kvapplman::Value value;
};

/// The value alone of one item, a table of several; the field "items".
Told toldOf(const std::vector<ReadItem>& items);

template <class Application>
ReadItem readItem(const Application& application, const kvapplman::ItemRow& row) {
    return {row.name, static_cast<std::uint32_t>(row.id), application.info(row.id)};
}

/// These items; all that the target offers, when none is named.
template <class Application>
std::vector<ReadItem> readItems(const Application& application, const std::vector<std::string>& names) {
    std::vector<ReadItem> items;
    items.reserve(names.size());
    for (const std::string& name : names) {
        items.push_back(readItem(application, itemFrom(name)));
    }
    if (!names.empty()) { return items; }
    for (const kvapplman::ItemRow& row : kvapplman::kItems) {
        try {
            items.push_back(readItem(application, row));
        } catch (const kvapplman::Error& error) {
            if (failureOf(error).exitCode != ExitCode::refused) { throw; }
        }
    }
    return items;
}

} // namespace tool
