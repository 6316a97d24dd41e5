#include <new>

#include "diagnostics/charge_test.h"
#include "diagnostics/discharge_test.h"
#include "frame/path_builders.h"
#include "frame/test_with_device_hint.h"

Test *newDischargeTest(const std::string &hint, const EntityId &id) {
    return new (std::nothrow) TestWithDeviceHint<DischargeTest>(hint, id);
}

Test *newChargeTest(const std::string &hint, const EntityId &id) {
    return new (std::nothrow) TestWithDeviceHint<ChargeTest>(hint, id);
}
