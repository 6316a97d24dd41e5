#pragma once

#include <cstdint>

#include "battery_module/test.h"

// Quick test of the smart path: is the battery hotter than its maker allows?
// The battery's own over-temperature flag decides; this test only makes sure
// that a reading exists.
class OstrelleTemperatureTest : public Test {
public:
    explicit OstrelleTemperatureTest(const EntityId &id) : Test(id) {}

    bool prepare(SystemComponent *component) override;
    TestResultCode execute(ExecutionContext *context) override;
    bool isInteractive() override { return false; }
    virtual bool isContextUsable(ExecutionContext *context);
    virtual bool isDisruptiveEvent(uint32_t events);

    TestResultCode runTemperatureCheck(ExecutionContext *context);
};
