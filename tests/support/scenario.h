#pragma once

#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

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

// `object` (JSON object text) with `fields` ("a": 1, "b": 2, a leading comma
// allowed) put in, replacing fields of the same name: a scenario refuses a
// key given twice.
inline std::string withFields(const std::string &object, std::string fields) {
    nlohmann::json merged = nlohmann::json::parse(object);
    const size_t start = fields.find_first_not_of(" \n,");
    fields = start == std::string::npos ? "" : fields.substr(start);
    merged.update(nlohmann::json::parse("{" + fields + "}"));
    return merged.dump();
}
