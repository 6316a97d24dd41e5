#pragma once

#include <vector>

#include "battery_module/test_result_code.h"

// The host's exit codes: 0 when every test succeeded; otherwise the code of
// the most severe result; 2 for a usage error; 69 when the module could not
// be loaded or gave no interface; 73 when a report, metrics file or other
// output could not be written at the end (a timer must see that its file is
// stale whatever the verdict was).
namespace exit_codes {

inline constexpr int kSuccess = 0;
inline constexpr int kUsage = 2;
inline constexpr int kNoModule = 69;
inline constexpr int kOutputFailed = 73; // sysexits' EX_CANTCREAT

// Most severe first. A result code the module does not define ranks with a
// failure, so that it never passes for success.
inline int forResults(const std::vector<TestResultCode> &results) {
    static constexpr TestResultCode severity[] = {ResultFailed, ResultInvalid, ResultAborted,
                                                  ResultWarning, ResultNotApplicable};
    bool unknown = false;
    for (TestResultCode result : results) {
        bool known = result == ResultSuccess;
        for (TestResultCode code : severity) known = known || result == code;
        unknown = unknown || !known;
    }
    if (unknown) return ResultFailed;
    for (TestResultCode code : severity) {
        for (TestResultCode result : results) {
            if (result == code) return code;
        }
    }
    return kSuccess;
}

} // namespace exit_codes
