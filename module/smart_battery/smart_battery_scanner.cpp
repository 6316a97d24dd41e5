#include "smart_battery/smart_battery_scanner.h"

#include "hostlib/hostlib.h"

SmartBatteryScanner::SmartBatteryScanner() : scanner_(get_device_scanner()) {}

SmartBatteryScanner::~SmartBatteryScanner() {
    release_device_scanner(scanner_);
}

DeviceScanner *SmartBatteryScanner::deviceScanner() {
    return scanner_;
}
