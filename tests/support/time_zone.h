#pragma once

#include <string>

// Puts the C runtime's local time zone to `zone` (a TZ value both systems
// read, such as "UTC0") for as long as it lives, then back as it was.
class ScopedTimeZone {
public:
    explicit ScopedTimeZone(const char *zone);
    ~ScopedTimeZone();
    ScopedTimeZone(const ScopedTimeZone &) = delete;
    ScopedTimeZone &operator=(const ScopedTimeZone &) = delete;

private:
    bool hadZone_;
    std::string oldZone_;
};
