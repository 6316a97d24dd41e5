#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "battery_module/entity_id.h"
#include "run_outputs.h"

// The host's own options.
struct HostOptions {
    std::string modulePath;
    std::string scenario;
    std::string moduleName; // -M<name>; the battery module answers to "battery"
    bool list = false;
    bool version = false;
    bool json = false;
    bool rawKeys = false;
    bool yes = false;
    bool help = false;
    bool holdAboveCharge = false;
    bool thisMachine = false;
    std::string duration;
    std::vector<std::string> runIds;
    std::vector<std::string> devices;
    double timeScale = 1.0;
    OutputOptions outputs;
};

// A diagnostic option that the command line can carry: the module's rows
// (-Q/--quick) and the host's own -E/--extended.
struct DiagnosticSwitch {
    EntityId diagnostic;
    std::string shortName;
    std::string longName;
};

// A diagnostic option as given: which diagnostic and the test names after
// it ("" for all of its tests).
struct DiagnosticChoice {
    EntityId diagnostic;
    std::string tests;
};

namespace command_line {

// The value of `--name VALUE` or `--name=VALUE` in the arguments, or "".
// The module must be loaded before the rest can be parsed, because its
// option tables add options.
std::string valueOf(const std::vector<std::string> &args, const std::string &name);
bool has(const std::vector<std::string> &args, const std::string &name);

// Takes -M<name> and every diagnostic switch (-Q, -Qh, -Q"h", --quick,
// --quick=h) out of `args`, leaving the host's own options.
// How much faster than the wall clock emulated time may run. Faster, the
// 32-bit tick count would wrap between two looks at it and timeouts could
// never be seen to pass; slower, a short wait would outlast any patience.
constexpr double kMinTimeScale = 0.001;
constexpr double kMaxTimeScale = 100000;

// Reads a --time-scale value; on failure `error` is one short line.
bool parseTimeScale(const std::string &text, double &scale, std::string &error);

void extractDiagnostics(std::vector<std::string> &args,
                        const std::vector<DiagnosticSwitch> &switches,
                        std::vector<DiagnosticChoice> &choices, std::string &moduleName);

} // namespace command_line
