#pragma once

#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

// One battery's figures as numbers, read back from the properties the module
// shows. The history, the fleet export and the health chart work on these.
struct BatteryFigures {
    std::string device; // the command line's identifier of the component it belongs to
    std::string manufacturer;
    std::string name;
    std::string serial;
    std::optional<double> designWh;
    std::optional<double> fullChargeWh;
    std::optional<double> cycleCount;
    std::optional<double> temperatureC;

    // Full-charge capacity over design capacity, when both are known.
    std::optional<double> healthRatio() const;
    // "manufacturer name serial", the key a battery is followed by across runs.
    std::string identity() const;
};

namespace battery_figures {

// Each battery of the host's battery list (see json_report::batteries): a smart
// component is one battery; a generic component holds one per group.
std::vector<BatteryFigures> of(const nlohmann::json &batteries);

// The leading number of a property value ("57.24 Wh (5021 mAh)", "31.65 °C")
// when the unit after it is `unit`.
std::optional<double> numberIn(const std::string &value, const std::string &unit);

} // namespace battery_figures
