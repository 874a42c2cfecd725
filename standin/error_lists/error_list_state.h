// What an error list consists of.
#pragma once

#include <deque>
#include <functional>
#include <set>
#include <string>

#include "error_lists/error_list_access.h"

struct KvCErrorList::State {
    std::deque<KvErrorListEntry> entries{};

    /// Texts handed out to a host, which may use them until the list changes.
    std::set<std::string, std::less<>> lentTexts{};
};
