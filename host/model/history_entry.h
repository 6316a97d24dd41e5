#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "model/battery_figures.h"

// One battery as one run of the host found it.
struct HistoryEntry {
    int64_t run = 0;
    std::string at; // UTC, ISO 8601
    std::string machine;
    BatteryFigures battery;
    std::vector<std::pair<std::string, int>> results; // test identifier, result code
};
