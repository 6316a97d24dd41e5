// Any bytes as a scenario: parsed as text, and read as a file the way
// --scenario reads one. Either a machine or one line naming the problem.

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "emulator/scenario_loader.h"
#include "machines.h"

namespace {

// The file --scenario reads, removed when the process ends.
struct ScenarioFile {
    const std::string path = "/tmp/scenario_fuzzer_" + std::to_string(getpid()) + ".json";
    ~ScenarioFile() { std::remove(path.c_str()); }
};

void expectOneLine(const std::string &error) {
    if (error.find('\n') != std::string::npos || error.size() > 1000) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string text(reinterpret_cast<const char *>(data), size);
    const emulator::LoadResult parsed = emulator::parseScenario(text, "fuzz.json");
    if (!parsed.ok) expectOneLine(parsed.error);

    static const ScenarioFile file;
    std::ofstream(file.path, std::ios::binary | std::ios::trunc) << text;
    const std::string error = emulatedMachine().selectScenario(file.path);
    if (!error.empty()) expectOneLine(error);
    if (error.empty() != parsed.ok) std::abort();
    return 0;
}
