// Any texts in the power-supply class's attribute files (a battery and an
// adapter, each attribute there or not), read the way this machine's layer
// reads them, into every driver record it makes from them.

#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "battery_records.h"
#include "fuzz/fuzz_input.h"
#include "power_supply.h"
#include "sysfs_reading.h"

namespace {

const char *const kBatteryAttributes[] = {"type",
                                          "scope",
                                          "present",
                                          "status",
                                          "technology",
                                          "energy_full_design",
                                          "energy_full",
                                          "energy_now",
                                          "charge_full_design",
                                          "charge_full",
                                          "charge_now",
                                          "voltage_min_design",
                                          "voltage_now",
                                          "power_now",
                                          "current_now",
                                          "temp",
                                          "capacity",
                                          "cycle_count",
                                          "manufacture_year",
                                          "manufacture_month",
                                          "manufacture_day",
                                          "model_name",
                                          "manufacturer",
                                          "serial_number"};
const char *const kAdapterAttributes[] = {"type", "online"};

// A class folder of its own, removed when the process ends.
struct ClassFolder {
    const std::string root = std::filesystem::temp_directory_path().string() + "/sysfs_fuzzer_" +
                             std::to_string(getpid());
    ClassFolder() {
        std::filesystem::create_directories(root + "/BAT0");
        std::filesystem::create_directories(root + "/AC");
    }
    ~ClassFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }
};

// A kernel text usually ends in a newline; a hostile one need not, and may
// be long.
void writeAttribute(const std::string &path, FuzzInput &input) {
    if (!input.flag()) {
        std::remove(path.c_str());
        return;
    }
    const std::string text = input.text(input.byte() == 0xFF ? 255 : 24);
    std::ofstream(path, std::ios::binary | std::ios::trunc)
        << (input.byte() == 0xFF ? std::string(5000, '9') : text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const ClassFolder folder;
    FuzzInput input(data, size);
    for (const char *attribute : kBatteryAttributes)
        writeAttribute(folder.root + "/BAT0/" + attribute, input);
    for (const char *attribute : kAdapterAttributes)
        writeAttribute(folder.root + "/AC/" + attribute, input);

    using namespace platform_layer;
    beginSysfsRequest();
    SysfsReading reading(folder.root);
    const bool acOnLine = onAcLine(reading);
    for (const std::string &name : systemBatteries(reading)) {
        PowerSupply battery(reading, name);
        battery.present();
        battery.reporting();
        battery_records::information(battery);
        battery_records::temperature(battery);
        battery_records::manufactureDate(battery);
        battery_records::uniqueId(battery);
        battery_records::status(battery, acOnLine);
        battery_records::designVoltage_mV(battery);
    }
    return 0;
}
