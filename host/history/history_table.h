#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "model/history_entry.h"

// --history: entries as the store gives them, one battery after another.
std::string historyTable(const std::vector<HistoryEntry> &entries);
nlohmann::json historyJson(const std::vector<HistoryEntry> &entries);
