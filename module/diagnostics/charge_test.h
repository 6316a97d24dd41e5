#pragma once

#include "diagnostics/abstract_charge_test.h"

// The mirror of the discharge test: runs on AC power with the power-saver
// scheme and a dim display; passes when the charge has risen by more than
// half a percentage point.
class ChargeTest : public AbstractChargeTest {
public:
    explicit ChargeTest(const EntityId &id);

    TestResultCode checkChargeLevel(ExecutionContext *context,
                                    GenericBatteryComponent *component) override;
    bool isExpectedAcState(bool onAc) override { return onAc; }
    TestResultCode judgeChargeChange(ExecutionContext *context, double initialPercent,
                                     double finalPercent) override;
    TestResultCode saveBrightness(ExecutionContext *context) override;
    TestResultCode applyLoadStep(int32_t iteration, ExecutionContext *context) override;
    TestResultCode restoreBrightness(ExecutionContext *context) override;

    static constexpr uint8_t kDimLevel = 10;
};
