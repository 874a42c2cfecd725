// The time zone of the test's process, as a POSIX zone text: "STD-1" is one hour ahead of UTC.
#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

/// Sets the zone while it lives.
class TimeZone {
public:
    explicit TimeZone(const char* zone) {
        if (const char* const before = std::getenv("TZ")) { before_ = before; }
        set(zone);
    }
    ~TimeZone() { set(before_ ? before_->c_str() : nullptr); }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

private:
    static void set(const char* zone) {
        zone == nullptr ? ::unsetenv("TZ") : ::setenv("TZ", zone, 1);
        ::tzset();
    }

    std::optional<std::string> before_{};
};
