#pragma once

#include <cstdint>

#include "battery_module/test.h"

class SmartBatteryComponent;

// Quick test of battery wear on the smart path: the relative capacity
// against what the battery's age, its cycle count on its own scale, explains.
class SmartBatteryHealthTest : public Test {
public:
    explicit SmartBatteryHealthTest(const EntityId &id) : Test(id) {}

    bool prepare(SystemComponent *component) override;
    TestResultCode execute(ExecutionContext *context) override;
    bool isInteractive() override { return false; }
    virtual bool isContextUsable(ExecutionContext *context);
    virtual bool isDisruptiveEvent(uint32_t events);

    TestResultCode runHealthCheck(ExecutionContext *context);
    TestResultCode evaluateCapacity(SmartBatteryComponent *component);

    // The relative capacity a battery of this age may be expected to keep.
    static double expectedRelativeCapacity(uint32_t age);
};
