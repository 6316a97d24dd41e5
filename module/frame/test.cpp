#include "battery_module/test.h"

// Base answers of Test: a test without parameters or configuration.

Test::~Test() = default;

bool Test::falseQuery() { return false; }

std::vector<TestParameter> Test::getParameters(void *, void *, uint32_t) { return {}; }

void Test::setParameter(TestParameter) {}

std::vector<TestParameter> Test::getParameterDefinitions(void *, void *, uint32_t) { return {}; }

bool Test::validateParameters(const std::vector<TestParameter> &, std::vector<TestParameterIssue> &) {
    return true;
}

bool Test::validateParametersFor(const std::vector<TestParameter> &, void *,
                                 std::vector<TestParameterIssue> &) {
    return true;
}

bool Test::applyConfiguration(Configuration, void *) { return true; }

void Test::reset() {}
