#include "support/time_zone.h"

#include <stdlib.h>
#include <time.h>

#include <cstdlib>

// The runtime reads TZ at _tzset; an empty value removes the variable.
ScopedTimeZone::ScopedTimeZone(const char *zone) : hadZone_(std::getenv("TZ") != nullptr) {
    if (hadZone_) oldZone_ = std::getenv("TZ");
    _putenv_s("TZ", zone);
    _tzset();
}

ScopedTimeZone::~ScopedTimeZone() {
    _putenv_s("TZ", hadZone_ ? oldZone_.c_str() : "");
    _tzset();
}
