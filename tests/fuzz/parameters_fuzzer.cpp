// Any parameter list, the DURATION text above all, through every test's
// definitions, validation and setting, as a host passes them before a run.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "battery_module/diagnostic.h"
#include "battery_module/system_component.h"
#include "battery_module/test.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_module.h"

namespace {

std::string keyFrom(FuzzInput &input) {
    static const char *const kKnown[] = {"DURATION", "execution_flow", "duration", ""};
    const uint8_t choice = input.byte();
    return choice < 192 ? kKnown[choice % 4] : input.text(16);
}

std::vector<TestParameter> parametersFrom(FuzzInput &input) {
    std::vector<TestParameter> parameters(input.length(4));
    for (TestParameter &parameter : parameters) {
        parameter.key = keyFrom(input);
        parameter.value = input.text(24);
        parameter.defaultValue = input.text(8);
        parameter.range = input.text(8);
        parameter.type = input.number();
        parameter.firstFlag = input.number();
        parameter.lastNumber = input.number();
    }
    return parameters;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    // A fresh module each time: a test keeps every parameter set on it.
    const FuzzModule module("default");
    FuzzInput input(data, size);
    const std::vector<TestParameter> parameters = parametersFrom(input);
    SystemComponentManager *manager = module->getComponentManager();
    SystemComponent *component =
        manager != nullptr && manager->getComponentCount() > 0 ? manager->getComponent(0) : nullptr;
    for (uint32_t d = 0; d < module->getDiagnosticCount(); ++d) {
        Diagnostic *diagnostic = module->getDiagnostic(d);
        for (uint32_t t = 0; diagnostic != nullptr && t < diagnostic->getTestCount(); ++t) {
            Test *test = diagnostic->getTest(t);
            if (test == nullptr) continue;
            std::vector<TestParameterIssue> issues;
            test->getParameterDefinitions(nullptr, nullptr, 0);
            test->validateParameters(parameters, issues);
            test->validateParametersFor(parameters, component, issues);
            test->validateParametersFor(parameters, nullptr, issues);
            for (const TestParameter &parameter : parameters) test->setParameter(parameter);
            test->getParameters(nullptr, nullptr, 0);
            test->reset();
        }
    }
    return 0;
}
