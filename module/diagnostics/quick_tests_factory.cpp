// The quick tests join the assembly here, each in its device-hint wrapper.

#include <new>

#include "diagnostics/battery_health_test.h"
#include "diagnostics/smart_battery_health_test.h"
#include "diagnostics/temperature_test.h"
#include "frame/path_builders.h"
#include "frame/test_with_device_hint.h"

Test *newSmartHealthTest(const std::string &hint, const EntityId &id) {
    return new (std::nothrow) TestWithDeviceHint<SmartBatteryHealthTest>(hint, id);
}

Test *newTemperatureTest(const std::string &hint, const EntityId &id) {
    return new (std::nothrow) TestWithDeviceHint<OstrelleTemperatureTest>(hint, id);
}

Test *newHealthTest(const std::string &hint, const EntityId &id) {
    return new (std::nothrow) TestWithDeviceHint<BatteryHealthTest>(hint, id);
}
