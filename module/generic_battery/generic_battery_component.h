#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

#include "battery_module/system_component.h"
#include "generic_battery/battery_charge_entry.h"
#include "generic_battery/generic_battery_info.h"

// The one component of the generic path: it stands for every battery the
// scan found, with one record and one open device per battery.
class GenericBatteryComponent : public SystemComponent {
public:
    GenericBatteryComponent();
    ~GenericBatteryComponent() override;

    int32_t zeroQuery() override { return 0; }
    bool firstTrueQuery() override { return true; }
    bool secondTrueQuery() override { return true; }
    void firstNoOp() override {}
    bool thirdTrueQuery() override { return true; }
    void secondNoOp() override {}

    virtual uint32_t getChargePercent(double &percent) = 0;
    virtual uint32_t getBatteryCharges(std::vector<BatteryChargeEntry> &charges) = 0;
    virtual uint32_t isOnAcPower(bool &onAc) = 0;
    virtual uint32_t isBatteryPresent(bool &present) = 0;
    virtual uint32_t refreshCapacities() = 0;
    // Fills the component's info and one "BATTERY" group per battery.
    virtual void buildProperties();

    void setBatteries(const std::vector<GenericBatteryInfo> &records);
    // The component takes ownership of the cells.
    void setHandles(const std::vector<HANDLE *> &cells);
    std::vector<GenericBatteryInfo> getBatteries() const;

    // Milliampere-hours of a capacity at a voltage; 0 without a voltage.
    static int32_t milliampHours(int32_t capacity, int32_t voltage);

protected:
    // Properties one to eight of battery `index`.
    ComponentInfoGroup batteryGroup(size_t index) const;
    // Closes and frees cells the component no longer holds.
    virtual void releaseCells(const std::vector<HANDLE *> &cells) { (void)cells; }

    std::vector<GenericBatteryInfo> batteries;
    std::vector<HANDLE *> handles;
    std::string driverVersion;
};
