#pragma once

#include <string>

// What the host sees of the machine at one moment of a run, for the report's
// charts. A display level of -1 is one the machine does not tell.
struct MachineSample {
    double atMs = 0;
    double chargePercent = 0;
    bool ac = false;
    int displayLevel = -1;
    std::string scheme;
};
