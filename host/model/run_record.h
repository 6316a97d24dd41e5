#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "battery_module/test_result_code.h"
#include "model/machine_sample.h"

// Everything one test run told the host, in order, for the report.
struct RunRecord {
    struct Entry {
        std::string text;
        uint32_t level;
    };
    struct Progress {
        uint32_t percent;
        std::string text;
    };
    struct Notice {
        std::string key;
        std::vector<std::pair<std::string, std::string>> pairs;
        uint32_t times; // a notice repeated on every pass is kept once, with its count
    };

    std::string testId;
    std::string testName; // the module's key
    std::string device;
    std::vector<Entry> entries;
    std::vector<Progress> progress;
    std::vector<Notice> notices;
    std::vector<std::string> prompts;
    std::vector<MachineSample> samples; // one at each progress event
    TestResultCode result = ResultSuccess;
};

const char *resultName(TestResultCode result);
// The charge report's lines: the last texts a charge test logs before its
// result.
bool isChargeLine(const std::string &text);
