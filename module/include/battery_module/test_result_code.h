#pragma once

#include <cstdint>

// Result of Test::execute. The value 2 is never returned by this module.
enum TestResultCode : int32_t {
    ResultSuccess = 0,
    ResultFailed = 1,
    ResultNotApplicable = 3,
    ResultAborted = 4,
    ResultWarning = 5,
    ResultInvalid = 6,
};
