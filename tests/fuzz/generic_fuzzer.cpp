// Any answers of the battery class driver, level by level (records and
// texts of any length, with or without terminator, failure statuses), and
// any Win32_Battery values of any by-value variant type, through the
// generic path's scanner, component and quick tests.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "emulator/scenario_loader.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_run.h"

namespace {

// The variant types a property can come as: by value, or a text.
constexpr uint16_t kVariantTypes[] = {0, 1, 2, 3, 4, 5, 8, 11, 17, 19, 20, 21};
const char *const kProperties[] = {"DeviceID", "Name", "DesignVoltage"};

emulator::RawDriverAnswer answerFrom(FuzzInput &input) {
    emulator::RawDriverAnswer answer;
    const uint8_t kind = input.byte();
    if (kind < 16) answer.status = kind == 0 ? input.number() : kind; // a failure
    answer.bytes = input.bytes(input.length(80));
    return answer;
}

// A battery of a built-in scenario, with some of its driver's answers
// replaced.
void spoil(emulator::BatteryDescription &battery, FuzzInput &input) {
    if (input.flag()) battery.uniqueId.clear();
    // Levels 0 to 8, the tag and the status: each answered raw or not.
    const uint16_t chosen = input.word();
    for (uint32_t level = 0; level < 11; ++level) {
        if ((chosen & (1u << level)) == 0) continue;
        const uint32_t key = level < 9    ? level
                             : level == 9 ? emulator::DriverFaults::kRawTag
                                          : emulator::DriverFaults::kRawStatus;
        battery.driver.rawAnswers[key] = answerFrom(input);
    }
}

emulator::Scenario builtIn(const char *name) {
    const emulator::LoadResult loaded = emulator::loadScenario(name);
    if (!loaded.ok) std::abort();
    return loaded.scenario;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const emulator::Scenario kOne = builtIn("generic");
    static const emulator::Scenario kTwo = builtIn("generic-two-batteries");
    FuzzInput input(data, size);
    emulator::Scenario scenario = (input.byte() & 1) != 0 ? kTwo : kOne;
    for (emulator::BatteryDescription &battery : scenario.batteries) spoil(battery, input);
    for (const char *name : kProperties) {
        if (!input.flag()) continue;
        emulator::InstrumentationSection::RawVariant value;
        value.type = kVariantTypes[input.byte() % (sizeof kVariantTypes / sizeof kVariantTypes[0])];
        value.bits = input.wide();
        value.text = input.text(40);
        scenario.instrumentation.rawProperties[name] = value;
    }
    runQuickDiagnostic(scenario);
    return 0;
}
