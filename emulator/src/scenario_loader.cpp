#include "emulator/scenario_loader.h"

#include <fstream>
#include <sstream>

#include "builtin_scenarios.h"
#include "json_fields.h"

namespace emulator {

namespace {

ManufactureDate parseDate(const JsonFields &fields) {
    fields.allowOnly({"year", "month", "day"});
    ManufactureDate date;
    date.year = static_cast<uint32_t>(fields.unsignedNumber("year", date.year));
    date.month = static_cast<uint32_t>(fields.unsignedNumber("month", date.month, 15));
    date.day = static_cast<uint32_t>(fields.unsignedNumber("day", date.day, 31));
    return date;
}

// Information levels of the battery class driver, by the names the
// operating system gives them.
const char *const kInformationLevels[] = {"BatteryInformation",     "BatteryGranularityInformation",
                                          "BatteryTemperature",     "BatteryEstimatedTime",
                                          "BatteryDeviceName",      "BatteryManufactureDate",
                                          "BatteryManufactureName", "BatteryUniqueID",
                                          "BatterySerialNumber"};

DriverFaults parseDriverFaults(const JsonFields &fields) {
    fields.allowOnly({"vanishAfterRequests", "failingLevels", "statusFails", "unterminatedTexts",
                      "unknownCapacities", "openFails"});
    DriverFaults faults;
    faults.vanishAfterRequests =
        static_cast<uint32_t>(fields.unsignedNumber("vanishAfterRequests", 0));
    faults.failingLevels = fields.texts("failingLevels");
    for (size_t i = 0; i < faults.failingLevels.size(); ++i) {
        bool known = false;
        for (const char *level : kInformationLevels)
            known = known || faults.failingLevels[i] == level;
        if (!known) {
            std::string list;
            for (const char *level : kInformationLevels)
                list += (list.empty() ? "" : ", ") + std::string(level);
            throw FieldError(fields.pathOf("failingLevels") + "[" + std::to_string(i) + "]",
                             "expected one of " + list);
        }
    }
    faults.statusFails = fields.flag("statusFails", faults.statusFails);
    faults.unterminatedTexts = fields.flag("unterminatedTexts", faults.unterminatedTexts);
    faults.unknownCapacities = fields.flag("unknownCapacities", faults.unknownCapacities);
    faults.openFails = fields.flag("openFails", faults.openFails);
    return faults;
}

InstrumentationSection parseInstrumentation(const JsonFields &fields) {
    fields.allowOnly({"apartment", "securityAlreadySet", "failingStep", "designVoltageType"});
    InstrumentationSection section;
    section.apartment =
        fields.choice("apartment", section.apartment, {"none", "multithreaded", "single-threaded"});
    section.securityAlreadySet = fields.flag("securityAlreadySet", section.securityAlreadySet);
    section.failingStep =
        fields.choice("failingStep", section.failingStep,
                      {"none", "CoInitializeEx", "CoInitializeSecurity", "CoCreateInstance",
                       "ConnectServer", "CoSetProxyBlanket", "ExecQuery", "Get"});
    section.designVoltageType =
        fields.choice("designVoltageType", section.designVoltageType, {"text", "int32", "null"});
    return section;
}

BatteryDescription parseBattery(const JsonFields &fields) {
    fields.allowOnly({"slot", "present", "manufacturer", "deviceName", "chemistry", "serialNumber",
                      "manufactureDate", "capacityUnit", "designCapacity", "fullChargeCapacity",
                      "designVoltage_mV", "temperature_C", "cycleCount", "cycleScale",
                      "overTemperature", "authenticity", "chargePercent", "uniqueId", "driver"});
    BatteryDescription battery;
    battery.slot = static_cast<uint32_t>(fields.unsignedNumber("slot", 0, 1));
    battery.present = fields.flag("present", battery.present);
    battery.manufacturer = fields.text("manufacturer", battery.manufacturer);
    battery.deviceName = fields.text("deviceName", battery.deviceName);
    battery.chemistry = fields.text("chemistry", battery.chemistry);
    battery.serialNumber = static_cast<uint32_t>(fields.unsignedNumber("serialNumber", 0));
    if (fields.has("manufactureDate")) {
        battery.manufactureDate = parseDate(fields.object("manufactureDate"));
    }
    battery.capacityUnit = fields.choice("capacityUnit", battery.capacityUnit, {"mWh", "mAh"});
    battery.designCapacity = static_cast<uint32_t>(fields.unsignedNumber("designCapacity", 0));
    battery.fullChargeCapacity =
        static_cast<uint32_t>(fields.unsignedNumber("fullChargeCapacity", 0));
    battery.designVoltage_mV = static_cast<uint32_t>(fields.unsignedNumber("designVoltage_mV", 0));
    battery.temperature_C = fields.number("temperature_C", battery.temperature_C);
    battery.cycleCount = static_cast<uint32_t>(fields.unsignedNumber("cycleCount", 0));
    battery.cycleScale = static_cast<uint32_t>(fields.unsignedNumber("cycleScale", 0));
    battery.overTemperature = fields.flag("overTemperature", battery.overTemperature);
    battery.authenticity = fields.choice("authenticity", battery.authenticity,
                                         {"genuine", "authorized", "not-authenticated", "unknown"});
    battery.chargePercent = fields.number("chargePercent", battery.chargePercent);
    if (battery.chargePercent < 0 || battery.chargePercent > 100) {
        throw FieldError(fields.pathOf("chargePercent"), "must lie from 0 to 100");
    }
    battery.uniqueId = fields.text("uniqueId", battery.uniqueId);
    if (fields.has("driver")) {
        battery.driver = parseDriverFaults(fields.object("driver"));
    }
    return battery;
}

ControllerSection parseController(const JsonFields &fields) {
    fields.allowOnly({"present", "busyPolls"});
    ControllerSection controller;
    controller.present = fields.flag("present", controller.present);
    controller.busyPolls = static_cast<uint32_t>(fields.unsignedNumber("busyPolls", 0));
    return controller;
}

OperatingSystemSection parseOperatingSystem(const JsonFields &fields) {
    fields.allowOnly({"batteryClassDevices"});
    OperatingSystemSection os;
    os.classDevicesGiven = fields.has("batteryClassDevices");
    for (const JsonFields &device : fields.objects("batteryClassDevices")) {
        device.allowOnly({"description", "driverKey", "driverVersion"});
        ClassDevice entry;
        entry.description = device.text("description", "");
        entry.hasDriverKey = device.has("driverKey");
        entry.driverKey = device.text("driverKey", "");
        entry.driverVersion = device.text("driverVersion", "");
        os.classDevices.push_back(entry);
    }
    return os;
}

PowerSection parsePower(const JsonFields &fields) {
    fields.allowOnly({"ac", "scheme", "faults", "batteryLifePercent"});
    PowerSection power;
    power.ac = fields.flag("ac", power.ac);
    const std::string scheme = fields.choice(
        "scheme", "balanced", {"high-performance", "balanced", "power-saver", "custom"});
    power.scheme = scheme == "high-performance" ? PowerScheme::HighPerformance
                   : scheme == "power-saver"    ? PowerScheme::PowerSaver
                   : scheme == "custom"         ? PowerScheme::Custom
                                                : PowerScheme::Balanced;
    for (const std::string &fault : fields.texts("faults")) {
        if (fault == "status-call-fails")
            power.statusFails = true;
        else if (fault == "scheme-query-fails")
            power.schemeQueryFails = true;
        else if (fault == "scheme-change-fails")
            power.schemeChangeFails = true;
        else
            throw FieldError(fields.pathOf("faults"),
                             "unknown fault '" + fault +
                                 "' (known: status-call-fails, scheme-query-fails, "
                                 "scheme-change-fails)");
    }
    if (fields.has("batteryLifePercent")) {
        power.batteryLifePercent =
            static_cast<int32_t>(fields.unsignedNumber("batteryLifePercent", 0, 255));
    }
    return power;
}

DisplaySection parseDisplay(const JsonFields &fields) {
    fields.allowOnly({"present", "acLevel", "dcLevel", "refusesBrightness"});
    DisplaySection display;
    display.present = fields.flag("present", display.present);
    display.acLevel = static_cast<uint32_t>(fields.unsignedNumber("acLevel", display.acLevel, 100));
    display.dcLevel = static_cast<uint32_t>(fields.unsignedNumber("dcLevel", display.dcLevel, 100));
    display.refusesBrightness = fields.flag("refusesBrightness", display.refusesBrightness);
    return display;
}

Scenario parseTopLevel(const JsonFields &fields) {
    fields.allowOnly({"name", "description", "startTick", "controller", "batteries", "os", "power",
                      "display", "instrumentation"});
    Scenario scenario;
    scenario.name = fields.requiredText("name");
    scenario.description = fields.text("description", "");
    scenario.startTick = static_cast<uint32_t>(fields.unsignedNumber("startTick", 0));
    if (fields.has("controller")) {
        scenario.controller = parseController(fields.object("controller"));
    }
    for (const JsonFields &battery : fields.objects("batteries")) {
        scenario.batteries.push_back(parseBattery(battery));
    }
    if (fields.has("instrumentation")) {
        scenario.instrumentation = parseInstrumentation(fields.object("instrumentation"));
    }
    if (fields.has("os")) scenario.os = parseOperatingSystem(fields.object("os"));
    if (fields.has("power")) scenario.power = parsePower(fields.object("power"));
    if (fields.has("display")) scenario.display = parseDisplay(fields.object("display"));
    if (scenario.batteries.size() > 2) {
        throw FieldError("batteries", "a notebook holds at most two batteries");
    }
    return scenario;
}

bool looksLikePath(const std::string &nameOrPath) {
    return nameOrPath.find('/') != std::string::npos ||
           nameOrPath.find('\\') != std::string::npos ||
           (nameOrPath.size() > 5 && nameOrPath.compare(nameOrPath.size() - 5, 5, ".json") == 0);
}

LoadResult failure(const std::string &message) {
    LoadResult result;
    result.error = message;
    return result;
}

} // namespace

LoadResult parseScenario(const std::string &text, const std::string &source) {
    nlohmann::json document;
    try {
        document = nlohmann::json::parse(text);
    } catch (const nlohmann::json::parse_error &error) {
        return failure("scenario '" + source + "': not valid JSON (" + error.what() + ")");
    }
    try {
        LoadResult result;
        result.scenario = parseTopLevel(JsonFields(document, ""));
        result.scenario.source = source;
        result.ok = true;
        return result;
    } catch (const FieldError &error) {
        return failure("scenario '" + source + "': field '" + error.field + "': " + error.what());
    }
}

LoadResult loadScenario(const std::string &nameOrPath) {
    if (!looksLikePath(nameOrPath)) {
        const auto &texts = builtinScenarioTexts();
        const auto found = texts.find(nameOrPath);
        if (found == texts.end()) {
            std::string known;
            for (const auto &entry : texts) known += (known.empty() ? "" : ", ") + entry.first;
            return failure("unknown built-in scenario '" + nameOrPath + "' (known: " + known + ")");
        }
        return parseScenario(found->second, "built-in " + nameOrPath);
    }
    std::ifstream file(nameOrPath, std::ios::binary);
    if (!file) {
        return failure("scenario '" + nameOrPath + "': cannot be opened");
    }
    std::ostringstream text;
    text << file.rdbuf();
    return parseScenario(text.str(), nameOrPath);
}

std::vector<BuiltinScenario> builtinScenarios() {
    std::vector<BuiltinScenario> list;
    for (const auto &entry : builtinScenarioTexts()) {
        const LoadResult loaded = parseScenario(entry.second, "built-in " + entry.first);
        list.push_back({entry.first, loaded.ok ? loaded.scenario.description : loaded.error});
    }
    return list;
}

} // namespace emulator
