#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "emulator/notebook.h"

// The port accesses recorded since startPortLog, as "W 1610 00" for a write
// and "R 1611" for a read (what a read gave is the controller's business),
// with " !" behind an access that failed.
inline void startPortLog() {
    emulator::Notebook::instance().portTrace().start();
}

inline std::vector<std::string> portLog() {
    std::vector<std::string> lines;
    for (const emulator::PortAccess &access :
         emulator::Notebook::instance().portTrace().accesses()) {
        char line[32];
        if (access.write) {
            std::snprintf(line, sizeof line, "W %04X %02X", access.port, access.value);
        } else {
            std::snprintf(line, sizeof line, "R %04X", access.port);
        }
        lines.push_back(std::string(line) + (access.status != 0 ? " !" : ""));
    }
    return lines;
}

// The values written to register `reg`, in order.
inline std::vector<int> valuesWrittenTo(uint8_t reg) {
    std::vector<int> values;
    const auto &accesses = emulator::Notebook::instance().portTrace().accesses();
    for (size_t i = 0; i + 1 < accesses.size(); ++i) {
        const auto &index = accesses[i];
        const auto &data = accesses[i + 1];
        if (index.write && index.port == 0x1610 && index.value == reg && data.write &&
            data.port == 0x1611) {
            values.push_back(data.value);
        }
    }
    return values;
}
