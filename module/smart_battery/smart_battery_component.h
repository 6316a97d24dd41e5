#pragma once

#include <string>

#include "battery_module/system_component.h"
#include "smart_battery/smart_battery_info.h"

class BatteryIOAccess;

// One battery behind the embedded controller. It reads the battery once, when
// it is made, and turns that record into the properties the host shows.
class SmartBatteryComponent : public SystemComponent {
public:
    explicit SmartBatteryComponent(bool isMain);
    ~SmartBatteryComponent() override;
    SmartBatteryComponent(const SmartBatteryComponent &) = delete;
    SmartBatteryComponent &operator=(const SmartBatteryComponent &) = delete;

    int32_t zeroQuery() override;
    bool firstTrueQuery() override;
    bool secondTrueQuery() override;
    void firstNoOp() override;
    bool thirdTrueQuery() override;
    void secondNoOp() override;
    virtual SmartBatteryInfo getBatteryInfo();

    bool isMainBattery() const;
    void buildProperties();
    void refreshThermalState();
    void addProperty(const std::string &key, const std::string &value);

private:
    void readBatteryData();
    uint32_t batteryNumber() const;

    SmartBatteryInfo batteryInfo;
    bool isMain;
    BatteryIOAccess *io; // owned
};
