#pragma once

#include "generic_battery/generic_battery_component.h"

// The generic component over the battery class driver, the power status and
// the device registry's driver version.
class GenericBatteryComponentWindows : public GenericBatteryComponent {
public:
    GenericBatteryComponentWindows() = default;
    // Closes every device the component holds and frees the cells.
    ~GenericBatteryComponentWindows() override;
    GenericBatteryComponentWindows(const GenericBatteryComponentWindows &) = delete;
    GenericBatteryComponentWindows &operator=(const GenericBatteryComponentWindows &) = delete;

    uint32_t getChargePercent(double &percent) override;
    uint32_t getBatteryCharges(std::vector<BatteryChargeEntry> &charges) override;
    uint32_t isOnAcPower(bool &onAc) override;
    uint32_t isBatteryPresent(bool &present) override;
    uint32_t refreshCapacities() override;
    void buildProperties() override;

    // The mean of the batteries' own readings.
    virtual uint32_t getAverageChargePercent(double &percent);
    // The operating system's figure.
    virtual uint32_t getSystemChargePercent(double &percent);

    // 0 with `driverVersion` set, or 128.
    uint32_t readDriverVersion();
    // 0, or 1 when the battery could not be read or has no full charge.
    uint32_t readChargeEntry(HANDLE *cell, const GenericBatteryInfo &record,
                             BatteryChargeEntry &entry);

protected:
    void releaseCells(const std::vector<HANDLE *> &cells) override;
};
