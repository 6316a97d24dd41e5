#include "generic_battery/generic_battery_scanner.h"

#include "hostlib/hostlib.h"

GenericBatteryScanner::GenericBatteryScanner() {
    scanner_ = get_device_scanner();
}

GenericBatteryScanner::~GenericBatteryScanner() {
    if (scanner_ != nullptr) release_device_scanner(scanner_);
}

DeviceScanner *GenericBatteryScanner::deviceScanner() {
    return scanner_;
}
