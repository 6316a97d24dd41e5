#pragma once

#include <chrono>
#include <ctime>
#include <string>

// The current time in UTC, ISO 8601 to the second, as the report and the
// history write it.
inline std::string utcNow() {
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    char text[32] = "";
    // The host has one thread, so gmtime's shared result is safe here.
    if (const std::tm *parts = std::gmtime(&now)) {
        std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", parts);
    }
    return text;
}
