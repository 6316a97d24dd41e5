#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "model/run_record.h"

// What a run of the host found, as the outputs need it.
struct RunSummary {
    std::string hostVersion;
    std::string moduleVersion;
    std::string machine;
    std::string path;
    nlohmann::json batteries;
    std::vector<RunRecord> records;
};
