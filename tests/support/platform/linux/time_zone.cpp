#include "support/time_zone.h"

#include <cstdlib>
#include <ctime>

ScopedTimeZone::ScopedTimeZone(const char *zone) : hadZone_(std::getenv("TZ") != nullptr) {
    if (hadZone_) oldZone_ = std::getenv("TZ");
    setenv("TZ", zone, 1);
    tzset();
}

ScopedTimeZone::~ScopedTimeZone() {
    if (hadZone_) {
        setenv("TZ", oldZone_.c_str(), 1);
    } else {
        unsetenv("TZ");
    }
    tzset();
}
