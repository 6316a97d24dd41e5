#pragma once

#include <cstdint>
#include <string>

class ExecutionContext;
class SmartBatteryComponent;

// Opened first by every test run; when it goes out of scope it tells the
// host the battery charge, and any message left for it.
class ChargeReport {
public:
    ChargeReport(ExecutionContext *context, SmartBatteryComponent *component);
    ~ChargeReport();
    ChargeReport(const ChargeReport &) = delete;
    ChargeReport &operator=(const ChargeReport &) = delete;

    void captureInitialCharge();
    void addPendingMessage(const std::string &text);

private:
    // 0 and a whole percent, or 1.
    uint32_t readCharge(uint64_t &percent);
    // The charge of the component's own battery, found by its serial number
    // among the generic path's batteries.
    uint32_t readComponentCharge(uint64_t &percent);
    void close();

    ExecutionContext *context;
    SmartBatteryComponent *component;
    uint64_t initialPercent = 0;
    bool hasInitial = false;
    std::string pendingMessage;
};
