// Any texts in the power-supply class's attribute files (a battery and an
// adapter, each attribute there or not), read the way this machine's layer
// reads them, into every driver record it makes from them.

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
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

// A class folder of its own, in memory where the system has a place for
// that, removed when the process ends.
struct ClassFolder {
    const std::string root = (std::filesystem::is_directory("/dev/shm")
                                  ? std::string("/dev/shm")
                                  : std::filesystem::temp_directory_path().string()) +
                             "/sysfs_fuzzer_" + std::to_string(getpid());
    std::map<std::string, std::string> written; // what each file holds now
    ClassFolder() {
        std::filesystem::create_directories(root + "/BAT0");
        std::filesystem::create_directories(root + "/AC");
    }
    ~ClassFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }

    // A kernel text usually ends in a newline; a hostile one need not, and
    // may be long. Files are touched only when they change, for speed.
    void writeAttribute(const std::string &file, FuzzInput &input) {
        const std::string path = root + "/" + file;
        const auto held = written.find(file);
        if (!input.flag()) {
            if (held != written.end()) std::remove(path.c_str());
            if (held != written.end()) written.erase(held);
            return;
        }
        std::string text = input.text(input.byte() == 0xFF ? 255 : 24);
        if (input.byte() == 0xFF) text = std::string(5000, '9');
        if (held != written.end() && held->second == text) return;
        std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
        written[file] = text;
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static ClassFolder folder;
    FuzzInput input(data, size);
    for (const char *attribute : kBatteryAttributes)
        folder.writeAttribute(std::string("BAT0/") + attribute, input);
    for (const char *attribute : kAdapterAttributes)
        folder.writeAttribute(std::string("AC/") + attribute, input);

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
