// The time zone of the test's process, as a POSIX zone text: "STD-1" is one hour ahead of UTC.
#pragma once

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <iomanip>
#include <optional>
#include <sstream>
#include <string>

/// Sets the zone while it lives, and leaves the system's own behind.
class TimeZone {
public:
    explicit TimeZone(const char* zone) { put(zone); }
    ~TimeZone() { put(""); }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

private:
    static void put(const char* zone) {
#if defined(_WIN32)
        ::_putenv_s("TZ", zone);
        ::_tzset();
#else
        *zone != '\0' ? ::setenv("TZ", zone, 1) : ::unsetenv("TZ");
#endif
    }
};

/// Seconds since 1970 of a calendar time that is written in the form `form`, as for std::get_time; none when it is not.
inline std::optional<double> secondsFrom(const std::string& text, const char* form) {
    std::istringstream stream{text};
    std::tm date{};
    stream >> std::get_time(&date, form);
    if (stream.fail() || stream.peek() != std::istringstream::traits_type::eof()) { return {}; }
    using namespace std::chrono;
    const auto day = sys_days{year{date.tm_year + 1900} / (date.tm_mon + 1) / date.tm_mday};
    return duration<double>(day.time_since_epoch() + hours{date.tm_hour} + minutes{date.tm_min} + seconds{date.tm_sec})
        .count();
}
