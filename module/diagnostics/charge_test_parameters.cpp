// The "DURATION" parameter of the charge tests: its definition, how the
// host's choice reaches the test, and its validation.

#include <algorithm>
#include <sstream>

#include "diagnostics/abstract_charge_test.h"
#include "frame/keys.h"

namespace {

constexpr int32_t kShortestMinutes = 5;
constexpr int32_t kLongestMinutes = 20;
constexpr int32_t kDefaultMinutes = 10;
constexpr uint32_t kNumberType = 2;
constexpr uint32_t kBadValue = 1;
constexpr uint32_t kUnknownKey = 2;

bool isGoodDuration(const std::string &text, int32_t &minutes) {
    // Anything but plain digits is refused, so a sign, a blank or a decimal
    // point never reaches the number.
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) return false;
    std::istringstream stream(text);
    minutes = kDefaultMinutes;
    // Too many digits for 32 bits leave the largest number, which the range
    // refuses.
    stream >> minutes;
    return minutes >= kShortestMinutes && minutes <= kLongestMinutes;
}

} // namespace

TestParameter durationParameterDefinition() {
    TestParameter duration;
    duration.key = keys::DURATION;
    duration.displayName = keys::DURATION_MINUTES;
    duration.description = keys::DURATION_DESCRIPTION;
    duration.defaultValue = keys::DURATION_DEFAULT;
    duration.value = keys::DURATION_DEFAULT;
    duration.type = kNumberType;
    duration.range = keys::DURATION_RANGE;
    duration.firstFlag = 0;
    duration.lastNumber = 0;
    return duration;
}

std::string joinParameterIssues(const std::vector<TestParameterIssue> &issues) {
    std::string text;
    bool first = true;
    for (const TestParameterIssue &issue : issues) {
        if (issue.kind == 0) continue;
        if (!first) text += "; |";
        text += issue.parameter.key + ": " + issue.message;
        first = false;
    }
    return text;
}

std::vector<TestParameter> AbstractChargeTest::getParameters(void *, void *, uint32_t) {
    return parameters;
}

std::vector<TestParameter> AbstractChargeTest::getParameterDefinitions(void *, void *, uint32_t) {
    return parameters;
}

void AbstractChargeTest::setParameter(TestParameter parameter) {
    const auto flow =
        std::find_if(parameters.begin(), parameters.end(),
                     [](const TestParameter &held) { return held.key == keys::EXECUTION_FLOW; });
    if (flow != parameters.end()) parameters.erase(flow);
    parameters.push_back(std::move(parameter));
}

bool AbstractChargeTest::validateParameters(const std::vector<TestParameter> &chosen,
                                            std::vector<TestParameterIssue> &issues) {
    issues.clear();
    bool verdict = true;
    for (const TestParameter &parameter : chosen) {
        const bool known = std::any_of(
            parameters.begin(), parameters.end(),
            [&parameter](const TestParameter &held) { return held.key == parameter.key; });
        if (!known) {
            issues.push_back({kUnknownKey, keys::INVALID_DURATION_PARAMETER, parameter});
            verdict = false;
        }
    }

    const auto duration =
        std::find_if(chosen.begin(), chosen.end(), [](const TestParameter &parameter) {
            return parameter.key == keys::DURATION;
        });
    if (duration == chosen.end()) return verdict;

    int32_t minutes = kDefaultMinutes;
    if (isGoodDuration(duration->value, minutes)) {
        durationSeconds = static_cast<double>(minutes) * 60.0;
    } else {
        issues.push_back({kBadValue, keys::USE_VALUE_BETWEEN_5_AND_20, *duration});
        verdict = false;
    }
    return verdict;
}

bool AbstractChargeTest::validateParametersFor(const std::vector<TestParameter> &chosen, void *,
                                               std::vector<TestParameterIssue> &issues) {
    return validateParameters(chosen, issues);
}
