#include "times.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>

namespace tool {
namespace {

using std::chrono::days;
using std::chrono::sys_days;

} // namespace

std::string textOf(kvapplman::Time time) {
    const auto day = std::chrono::floor<days>(time);
    const std::chrono::year_month_day date{day};
    const std::chrono::hh_mm_ss clock{time - day};
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text.data();
}

std::optional<kvapplman::Time> timeFrom(const std::string& text) {
    std::int64_t seconds = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (parsed.ec == std::errc{} && parsed.ptr == text.data() + text.size()) {
        return kvapplman::Time{std::chrono::seconds{seconds}};
    }
    int year = 0;
    unsigned month = 0;
    unsigned day = 0;
    unsigned hour = 0;
    unsigned minute = 0;
    unsigned second = 0;
    int used = 0;
    const int read =
        std::sscanf(text.c_str(), "%4d-%2u-%2uT%2u:%2u:%2uZ%n", &year, &month, &day, &hour, &minute, &second, &used);
    const std::chrono::year_month_day date{std::chrono::year{year}, std::chrono::month{month}, std::chrono::day{day}};
    const bool whole = read == 6 && static_cast<std::size_t>(used) == text.size();
    if (!whole || !date.ok() || hour > 23 || minute > 59 || second > 59) { return {}; }
    const kvapplman::Time midnight = sys_days{date};
    return midnight + std::chrono::hours{hour} + std::chrono::minutes{minute} + std::chrono::seconds{second};
}

} // namespace tool
