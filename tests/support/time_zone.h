// The time zone of the test's process, as a POSIX zone text: "STD-1" is one hour ahead of UTC.
#pragma once

#include <cstdlib>
#include <ctime>

/// Sets the zone while it lives, and leaves the system's own behind.
class TimeZone {
public:
    explicit TimeZone(const char* zone) {
        ::setenv("TZ", zone, 1);
        ::tzset();
    }
    ~TimeZone() {
        ::unsetenv("TZ");
        ::tzset();
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;
};
