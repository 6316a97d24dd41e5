#include "battery_records.h"

#include <array>

namespace platform_layer::battery_records {

namespace {

constexpr int64_t kLargestCapacity_mWh = 0xFFFFFFFE; // one below "unknown"

struct ChemistryName {
    const char *technology;
    std::array<uint8_t, 4> code;
};

// The kernel's words for a technology, and the four bytes a Windows driver
// gives for it.
constexpr ChemistryName kChemistries[] = {
    {"Li-ion", {'L', 'I', 'O', 'N'}},      {"Li-poly", {'L', 'i', 'P', '\0'}},
    {"NiMH", {'N', 'i', 'M', 'H'}},        {"NiCd", {'N', 'i', 'C', 'd'}},
    {"LiFe", {'L', 'i', 'F', 'e'}},        {"LiMn", {'L', 'i', 'M', 'n'}},
    {"Unknown", {'\0', '\0', '\0', '\0'}},
};

// A figure that cannot be negative or beyond 32 bits is malformed.
std::optional<int64_t> checked(SysfsReading &reading, std::optional<int64_t> value,
                               int64_t largest) {
    if (value && (*value < 0 || *value > largest)) {
        reading.markMalformed();
        return std::nullopt;
    }
    return value;
}

// Milliwatt-hours from an energy figure, or from a charge figure at the
// design voltage.
std::optional<int64_t> energy_mWh(SysfsReading &reading, std::optional<int64_t> energy_uWh) {
    if (!energy_uWh) return std::nullopt;
    if (*energy_uWh < 0) return checked(reading, energy_uWh, 0);
    return checked(reading, *energy_uWh / 1000, kLargestCapacity_mWh);
}

std::optional<int64_t> chargeAsEnergy_mWh(SysfsReading &reading, std::optional<int64_t> charge_uAh,
                                          std::optional<int64_t> voltage_uV) {
    if (!charge_uAh || !voltage_uV) return std::nullopt;
    if (*charge_uAh < 0 || *voltage_uV < 0) {
        reading.markMalformed();
        return std::nullopt;
    }
    const __int128 product = static_cast<__int128>(*charge_uAh) * *voltage_uV / 1000000000;
    if (product > kLargestCapacity_mWh) {
        reading.markMalformed();
        return std::nullopt;
    }
    return static_cast<int64_t>(product);
}

std::optional<uint32_t> narrowed(std::optional<int64_t> value) {
    if (!value) return std::nullopt;
    return static_cast<uint32_t>(*value);
}

} // namespace

std::optional<BatteryFigures> information(PowerSupply &battery) {
    SysfsReading &reading = battery.reading();
    BatteryFigures record;
    if (const std::optional<std::string> technology = battery.technology()) {
        const ChemistryName *known = nullptr;
        for (const ChemistryName &chemistry : kChemistries) {
            if (*technology == chemistry.technology) known = &chemistry;
        }
        if (known == nullptr) return std::nullopt;
        record.chemistry = known->code;
    }
    switch (battery.reporting()) {
    case PowerSupply::Reporting::Energy:
        record.designedCapacity_mWh = narrowed(energy_mWh(reading, battery.energyFullDesign_uWh()));
        record.fullChargedCapacity_mWh = narrowed(energy_mWh(reading, battery.energyFull_uWh()));
        break;
    case PowerSupply::Reporting::Charge: {
        const std::optional<int64_t> voltage = battery.voltageMinDesign_uV();
        record.designedCapacity_mWh =
            narrowed(chargeAsEnergy_mWh(reading, battery.chargeFullDesign_uAh(), voltage));
        record.fullChargedCapacity_mWh =
            narrowed(chargeAsEnergy_mWh(reading, battery.chargeFull_uAh(), voltage));
        break;
    }
    case PowerSupply::Reporting::Relative:
        record.relativeOnly = true;
        break;
    }
    record.cycleCount =
        static_cast<uint32_t>(checked(reading, battery.cycleCount(), 0xFFFFFFFF).value_or(0));
    if (reading.sawMalformed()) return std::nullopt;
    return record;
}

std::optional<uint32_t> temperature(PowerSupply &battery) {
    const std::optional<int64_t> celsius = battery.temp_deciCelsius();
    if (!celsius) return std::nullopt;
    int64_t kelvin = 0;
    // Colder than absolute zero, or beyond what a figure can hold: unknown.
    if (__builtin_add_overflow(*celsius, 2732, &kelvin) || kelvin < 0 || kelvin > 0xFFFFFFFF) {
        return std::nullopt;
    }
    return static_cast<uint32_t>(kelvin);
}

std::optional<BatteryDate> manufactureDate(PowerSupply &battery) {
    const std::optional<PowerSupply::Date> date = battery.manufactureDate();
    if (!date) return std::nullopt;
    return BatteryDate{date->year, date->month, date->day};
}

std::optional<std::string> uniqueId(PowerSupply &battery) {
    const std::optional<std::string> parts[] = {battery.serialNumber(), battery.manufacturer(),
                                                battery.modelName()};
    std::optional<std::string> joined;
    for (const std::optional<std::string> &part : parts) {
        if (part) joined = joined.value_or("") + *part;
    }
    return joined;
}

std::optional<BatteryStatus> status(PowerSupply &battery, bool acOnLine) {
    SysfsReading &reading = battery.reading();
    BatteryStatus record;
    const std::optional<std::string> state = battery.status();
    const bool charging = state == std::optional<std::string>("Charging");
    const bool discharging = state == std::optional<std::string>("Discharging");
    if (state && !charging && !discharging && *state != "Full" && *state != "Not charging" &&
        *state != "Unknown") {
        return std::nullopt;
    }
    record.onLine = acOnLine;
    record.charging = charging;
    record.discharging = discharging;

    std::optional<int64_t> capacity;
    if (battery.reporting() == PowerSupply::Reporting::Charge) {
        capacity =
            chargeAsEnergy_mWh(reading, battery.chargeNow_uAh(), battery.voltageMinDesign_uV());
    } else {
        capacity = energy_mWh(reading, battery.energyNow_uWh());
    }
    record.capacity_mWh = narrowed(capacity);

    const std::optional<int64_t> voltage_uV = battery.voltageNow_uV();
    const std::optional<int64_t> voltage_mV =
        voltage_uV ? checked(reading, *voltage_uV / 1000, 0xFFFFFFFE) : std::nullopt;
    record.voltage_mV = narrowed(voltage_mV);

    // Some drivers sign the flow, most do not; the direction comes from the
    // state. A rate of 2^31 mW or more is no battery's.
    std::optional<int64_t> rate_mW;
    if (const std::optional<int64_t> power_uW = battery.powerNow_uW()) {
        rate_mW = (*power_uW < 0 ? -*power_uW : *power_uW) / 1000;
    } else if (const std::optional<int64_t> current_uA = battery.currentNow_uA()) {
        if (voltage_uV) {
            const __int128 microwatts =
                static_cast<__int128>(*current_uA < 0 ? -*current_uA : *current_uA) * *voltage_uV /
                1000000;
            rate_mW = microwatts > 0x7FFFFFFFLL * 1000 ? int64_t{0x80000000LL}
                                                       : static_cast<int64_t>(microwatts / 1000);
        }
    }
    if (rate_mW && *rate_mW >= 0x80000000LL) {
        reading.markMalformed();
        rate_mW.reset();
    }
    if (rate_mW) {
        record.rate_mW = static_cast<int32_t>(discharging ? -*rate_mW : charging ? *rate_mW : 0);
    }
    if (reading.sawMalformed()) return std::nullopt;
    return record;
}

std::optional<int64_t> designVoltage_mV(PowerSupply &battery) {
    const std::optional<int64_t> voltage = battery.voltageMinDesign_uV();
    if (!voltage || *voltage < 0) return std::nullopt;
    return *voltage / 1000;
}

} // namespace platform_layer::battery_records
