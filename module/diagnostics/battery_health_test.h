#pragma once

#include <cstdint>

#include "battery_module/test.h"

// Quick test of battery wear on the generic path: every battery must hold at
// least half of its design capacity, by the operating system's fresh figures.
class BatteryHealthTest : public Test {
public:
    explicit BatteryHealthTest(const EntityId &id) : Test(id) {}

    bool prepare(SystemComponent *) override { return true; }
    TestResultCode execute(ExecutionContext *context) override;
    bool isInteractive() override { return false; }
    virtual bool isContextUsable(ExecutionContext *context);
    virtual bool isDisruptiveEvent(uint32_t events);

    bool hasUsableCapacity(SystemComponent *component);
    TestResultCode evaluateCapacities(ExecutionContext *context);
};
