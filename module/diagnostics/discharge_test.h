#pragma once

#include "diagnostics/abstract_charge_test.h"

// Runs on battery power with the high-performance scheme and a display that
// sweeps up and down; passes when the charge has fallen by more than half a
// percentage point.
class DischargeTest : public AbstractChargeTest {
public:
    explicit DischargeTest(const EntityId &id);

    void beforeRun() override;
    TestResultCode checkChargeLevel(ExecutionContext *context,
                                    GenericBatteryComponent *component) override;
    bool isExpectedAcState(bool onAc) override { return !onAc; }
    TestResultCode judgeChargeChange(ExecutionContext *context, double initialPercent,
                                     double finalPercent) override;
    TestResultCode saveBrightness(ExecutionContext *context) override;
    TestResultCode applyLoadStep(int32_t iteration, ExecutionContext *context) override;
    TestResultCode restoreBrightness(ExecutionContext *context) override;
    bool isRunComplete(GenericBatteryComponent *component) override;

    // The display level of a pass: one wave of 20 passes from 100 down to 0
    // and back.
    static uint8_t brightnessOfPass(int32_t iteration);
};
