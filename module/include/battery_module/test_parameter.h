#pragma once

#include <cstdint>
#include <string>

// One parameter of a test as it travels between host and test.
struct TestParameter {
    std::string key;
    std::string displayName;
    std::string description;
    std::string defaultValue;
    std::string value;
    uint32_t type = 0;
    std::string range;
    uint32_t firstFlag = 0;
    uint32_t lastNumber = 0;
};

// One rejected parameter. Kinds: 0 ignored when printed, 1 bad value, 2 unknown key.
struct TestParameterIssue {
    uint32_t kind = 0;
    std::string message;
    TestParameter parameter;
};
