#include "emulator/scenario_loader.h"

#include <cstdint>

#include "builtin_scenarios.h"
#include "json_fields.h"
#include "scenario_document.h"

namespace emulator {

namespace {

ManufactureDate parseDate(const JsonFields &fields) {
    fields.allowOnly({"year", "month", "day"});
    ManufactureDate date;
    date.year = static_cast<uint32_t>(fields.unsignedNumber("year", date.year));
    // A battery keeps its date as years since 1980 in seven bits.
    if (fields.has("year") && (date.year < 1980 || date.year > 2107)) {
        throw FieldError(fields.pathOf("year"), "must lie from 1980 to 2107");
    }
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
                      "unknownCapacities", "openFails", "serialNumberText", "tagFails",
                      "sharesDeviceOfSlot"});
    DriverFaults faults;
    faults.vanishAfterRequests =
        static_cast<uint32_t>(fields.unsignedNumber("vanishAfterRequests", 0));
    faults.failingLevels = fields.texts("failingLevels");
    faults.serialNumberText = fields.text("serialNumberText", "");
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
    faults.tagFails = fields.flag("tagFails", faults.tagFails);
    if (fields.has("sharesDeviceOfSlot")) {
        faults.sharesDeviceOfSlot =
            static_cast<int32_t>(fields.unsignedNumber("sharesDeviceOfSlot", 0, 1));
    }
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

// Through an embedded controller a battery reports its numbers as 16-bit
// words; a machine without one sees it through the driver's 32-bit fields.
BatteryDescription parseBattery(const JsonFields &fields, bool throughController) {
    fields.allowOnly({"slot",
                      "present",
                      "manufacturer",
                      "deviceName",
                      "chemistry",
                      "serialNumber",
                      "manufactureDate",
                      "capacityUnit",
                      "designCapacity",
                      "fullChargeCapacity",
                      "designVoltage_mV",
                      "temperature_C",
                      "cycleCount",
                      "cycleScale",
                      "cycleScaleTop",
                      "overTemperature",
                      "authenticity",
                      "chargePercent",
                      "uniqueId",
                      "driver"});
    BatteryDescription battery;
    battery.slot = static_cast<uint32_t>(fields.unsignedNumber("slot", 0, 1));
    battery.present = fields.flag("present", battery.present);
    battery.manufacturer = fields.text("manufacturer", battery.manufacturer);
    battery.deviceName = fields.text("deviceName", battery.deviceName);
    battery.chemistry = fields.text("chemistry", battery.chemistry);
    const uint64_t kWord = throughController ? 0xFFFF : 0xFFFFFFFF;
    battery.serialNumber = static_cast<uint32_t>(fields.unsignedNumber("serialNumber", 0, kWord));
    if (fields.has("manufactureDate")) {
        battery.manufactureDate = parseDate(fields.object("manufactureDate"));
    }
    battery.capacityUnit = fields.choice("capacityUnit", battery.capacityUnit, {"mWh", "mAh"});
    // Capacities in mWh travel in units of 10 mWh.
    const uint64_t capacityLimit =
        throughController && battery.capacityUnit == "mWh" ? kWord * 10 : kWord;
    battery.designCapacity =
        static_cast<uint32_t>(fields.unsignedNumber("designCapacity", 0, capacityLimit));
    battery.fullChargeCapacity =
        static_cast<uint32_t>(fields.unsignedNumber("fullChargeCapacity", 0, capacityLimit));
    battery.designVoltage_mV =
        static_cast<uint32_t>(fields.unsignedNumber("designVoltage_mV", 0, kWord));
    battery.temperature_C = fields.number("temperature_C", battery.temperature_C);
    // Tenths of a kelvin in one word.
    if (battery.temperature_C < -273.15 || battery.temperature_C > 6280.35) {
        throw FieldError(fields.pathOf("temperature_C"), "must lie from -273.15 to 6280.35");
    }
    battery.cycleCount = static_cast<uint32_t>(fields.unsignedNumber("cycleCount", 0, kWord));
    battery.cycleScale = static_cast<uint32_t>(
        fields.unsignedNumber("cycleScale", 0, throughController ? 0x0FFF : kWord));
    battery.cycleScaleTop = static_cast<uint32_t>(fields.unsignedNumber("cycleScaleTop", 0, 0xF));
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

PortFault parsePortFault(const JsonFields &fields) {
    fields.allowOnly({"port", "nth"});
    PortFault fault;
    if (!fields.has("port")) throw FieldError(fields.pathOf("port"), "missing");
    fault.port = fields.choice("port", "", {"index", "data"}) == "index" ? ControllerPort::Index
                                                                         : ControllerPort::Data;
    fault.nth = static_cast<uint32_t>(fields.unsignedNumber("nth", 0));
    if (fields.has("nth") && fault.nth == 0) {
        throw FieldError(fields.pathOf("nth"), "counts from 1; leave it out to fail every access");
    }
    return fault;
}

ControllerFaults parseFaults(const JsonFields &fields) {
    fields.allowOnly({"busyForever", "busyFromCommand", "portFaults", "ignoresSelection",
                      "reportedSlots", "batteriesGoneAfterStatusReads"});
    ControllerFaults faults;
    faults.batteriesGoneAfterStatusReads =
        static_cast<uint32_t>(fields.unsignedNumber("batteriesGoneAfterStatusReads", 0));
    faults.busyForever = fields.flag("busyForever", false);
    faults.busyFromCommand = static_cast<uint32_t>(fields.unsignedNumber("busyFromCommand", 0));
    if (fields.has("busyFromCommand") && faults.busyFromCommand == 0) {
        throw FieldError(fields.pathOf("busyFromCommand"), "counts from 1");
    }
    for (const JsonFields &fault : fields.objects("portFaults")) {
        faults.portFaults.push_back(parsePortFault(fault));
    }
    faults.ignoresSelection = fields.flag("ignoresSelection", false);
    faults.overridesReportedSlots = fields.has("reportedSlots");
    for (uint64_t slot : fields.unsignedNumbers("reportedSlots", 1)) {
        faults.reportedSlots.push_back(static_cast<uint32_t>(slot));
    }
    return faults;
}

ControllerSection parseController(const JsonFields &fields) {
    fields.allowOnly({"present", "busyPolls", "faults"});
    ControllerSection controller;
    controller.present = fields.flag("present", controller.present);
    controller.busyPolls = static_cast<uint32_t>(fields.unsignedNumber("busyPolls", 0));
    if (fields.has("faults")) {
        controller.faults = parseFaults(fields.object("faults"));
    }
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
        else if (fault == "ac-line-unknown")
            power.acLineUnknown = true;
        else
            throw FieldError(fields.pathOf("faults"),
                             "unknown fault '" + fault +
                                 "' (known: status-call-fails, scheme-query-fails, "
                                 "scheme-change-fails, ac-line-unknown)");
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

PhysicsSection parsePhysics(const JsonFields &fields) {
    fields.allowOnly({"drainPerMinute", "brightnessDrainPerMinute", "highPerformanceFactor",
                      "powerSaverFactor", "chargePerMinute", "dischargeStuck", "chargeStuck"});
    PhysicsSection physics;
    const auto rate = [&fields](const char *key, double fallback) {
        const double value = fields.number(key, fallback);
        if (value < 0) throw FieldError(fields.pathOf(key), "must not be negative");
        return value;
    };
    physics.drainPerMinute = rate("drainPerMinute", physics.drainPerMinute);
    physics.brightnessDrainPerMinute =
        rate("brightnessDrainPerMinute", physics.brightnessDrainPerMinute);
    physics.highPerformanceFactor = rate("highPerformanceFactor", physics.highPerformanceFactor);
    physics.powerSaverFactor = rate("powerSaverFactor", physics.powerSaverFactor);
    physics.chargePerMinute = rate("chargePerMinute", physics.chargePerMinute);
    physics.dischargeStuck = fields.flag("dischargeStuck", physics.dischargeStuck);
    physics.chargeStuck = fields.flag("chargeStuck", physics.chargeStuck);
    return physics;
}

TimelineEvent parseEvent(const JsonFields &fields) {
    fields.allowOnly({"at_ms", "event", "slot", "bits"});
    TimelineEvent event;
    event.atMs = fields.unsignedNumber("at_ms", 0, UINT64_MAX);
    const std::string kind = fields.choice("event", "",
                                           {"ac-plug", "ac-unplug", "battery-remove",
                                            "battery-insert", "system-event", "stop-request"});
    using Kind = TimelineEvent::Kind;
    event.kind = kind == "ac-plug"          ? Kind::AcPlug
                 : kind == "ac-unplug"      ? Kind::AcUnplug
                 : kind == "battery-remove" ? Kind::BatteryRemove
                 : kind == "battery-insert" ? Kind::BatteryInsert
                 : kind == "system-event"   ? Kind::SystemEvent
                                            : Kind::StopRequest;
    event.slot = static_cast<uint32_t>(fields.unsignedNumber("slot", 0, 1));
    event.bits = static_cast<uint32_t>(fields.unsignedNumber("bits", 0));
    if (event.kind == Kind::SystemEvent && event.bits == 0) {
        throw FieldError(fields.pathOf("bits"), "a system event needs bits");
    }
    return event;
}

Scenario parseTopLevel(const JsonFields &fields) {
    fields.allowOnly({"name", "description", "startTick", "controller", "batteries", "os", "power",
                      "display", "physics", "timeline", "user", "instrumentation"});
    Scenario scenario;
    scenario.name = fields.requiredText("name");
    scenario.description = fields.text("description", "");
    scenario.startTick = static_cast<uint32_t>(fields.unsignedNumber("startTick", 0));
    if (fields.has("controller")) {
        scenario.controller = parseController(fields.object("controller"));
    }
    for (const JsonFields &battery : fields.objects("batteries")) {
        scenario.batteries.push_back(parseBattery(battery, scenario.controller.present));
    }
    if (fields.has("instrumentation")) {
        scenario.instrumentation = parseInstrumentation(fields.object("instrumentation"));
    }
    if (fields.has("os")) scenario.os = parseOperatingSystem(fields.object("os"));
    if (fields.has("power")) scenario.power = parsePower(fields.object("power"));
    if (fields.has("display")) scenario.display = parseDisplay(fields.object("display"));
    if (fields.has("physics")) scenario.physics = parsePhysics(fields.object("physics"));
    for (const JsonFields &event : fields.objects("timeline")) {
        scenario.timeline.push_back(parseEvent(event));
        if (scenario.timeline.size() > 1 &&
            scenario.timeline.back().atMs < scenario.timeline[scenario.timeline.size() - 2].atMs) {
            throw FieldError(event.path(), "events must be in time order");
        }
    }
    if (fields.has("user")) {
        const JsonFields user = fields.object("user");
        user.allowOnly({"ignoresPrompts"});
        scenario.user.ignoresPrompts = user.flag("ignoresPrompts", false);
    }
    if (scenario.batteries.size() > 2) {
        throw FieldError("batteries", "a notebook holds at most two batteries");
    }
    if (scenario.batteries.size() == 2 &&
        scenario.batteries[0].slot == scenario.batteries[1].slot) {
        throw FieldError("batteries[1].slot", "slot already holds batteries[0]");
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

LoadResult fieldFailure(const std::string &source, const std::string &field,
                        const std::string &problem) {
    return failure("scenario '" + source + "': field '" + oneLine(field) + "': " + problem);
}

} // namespace

LoadResult parseScenario(const std::string &text, const std::string &source) {
    nlohmann::json document;
    DocumentError documentError;
    if (!readScenarioDocument(text, document, documentError)) {
        if (documentError.field.empty()) {
            return failure("scenario '" + source + "': " + documentError.problem);
        }
        return fieldFailure(source, documentError.field, documentError.problem);
    }
    try {
        LoadResult result;
        result.scenario = parseTopLevel(JsonFields(document, ""));
        result.scenario.source = source;
        result.ok = true;
        return result;
    } catch (const FieldError &error) {
        return fieldFailure(source, error.field, error.what());
    } catch (const nlohmann::json::exception &error) {
        return failure("scenario '" + source + "': " + error.what());
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
    std::string text;
    const std::string problem = readScenarioFile(nameOrPath, text);
    if (!problem.empty()) return failure("scenario '" + nameOrPath + "': " + problem);
    return parseScenario(text, nameOrPath);
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
