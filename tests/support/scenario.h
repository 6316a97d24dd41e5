#pragma once

#include <string>

#include <gtest/gtest.h>

#include "emulator/notebook.h"

// Puts the emulated notebook into a scenario given as JSON text or by name.
inline void useScenarioText(const std::string &json) {
    const emulator::LoadResult result = emulator::parseScenario(json, "test");
    ASSERT_TRUE(result.ok) << result.error;
    emulator::Notebook::instance().install(result.scenario);
}

inline void useScenario(const std::string &nameOrPath) {
    const emulator::LoadResult result = emulator::Notebook::instance().load(nameOrPath);
    ASSERT_TRUE(result.ok) << result.error;
}
