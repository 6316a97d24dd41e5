// The instrumentation service's one class, Win32_Battery in ROOT\CIMV2, and
// its queries, for either machine.

#include "instrumentation_query.h"

#include <wbemidl.h>

#include "ignoring_case.h"
#include "wql_statement.h"

namespace platform_layer {

namespace {

constexpr uint16_t kTextVariant = 8; // VT_BSTR

// A row as the service hands it out: DeviceID, Name and DesignVoltage (a
// uint64 property, which travels as text), then what a machine gives raw.
InstrumentationInstance rowOf(const BatteryRow &battery, bool voltageAsInt32,
                              const std::map<std::string, RawVariant> &raw) {
    InstrumentationInstance row;
    row["DeviceID"] = {InstrumentationValue::Text, battery.deviceId, 0, 0, 0};
    row["Name"] = battery.name
                      ? InstrumentationValue{InstrumentationValue::Text, *battery.name, 0, 0, 0}
                      : InstrumentationValue{};
    InstrumentationValue voltage;
    if (battery.designVoltage_mV && voltageAsInt32) {
        voltage = {InstrumentationValue::Int32, "", static_cast<int32_t>(*battery.designVoltage_mV),
                   0, 0};
    } else if (battery.designVoltage_mV) {
        voltage = {InstrumentationValue::Text, std::to_string(*battery.designVoltage_mV), 0, 0, 0};
    }
    row["DesignVoltage"] = voltage;
    for (const auto &property : raw) {
        row[property.first] = {InstrumentationValue::Raw, property.second.text, 0,
                               property.second.type, property.second.bits};
    }
    return row;
}

const InstrumentationValue *findProperty(const InstrumentationInstance &instance,
                                         const std::string &name) {
    for (const auto &property : instance) {
        if (sameIgnoringCase(property.first, name)) return &property.second;
    }
    return nullptr;
}

bool matches(const InstrumentationValue &value, const std::string &text) {
    const bool isText =
        value.kind == InstrumentationValue::Text ||
        (value.kind == InstrumentationValue::Raw && value.variantType == kTextVariant);
    return isText && sameIgnoringCase(value.text, text);
}

} // namespace

bool knownNamespace(const std::string &name) {
    return sameIgnoringCase(name, "ROOT\\CIMV2");
}

InstrumentationAnswer queryInstrumentation(Machine &machine, const std::string &language,
                                           const std::string &wql) {
    InstrumentationAnswer answer;
    if (!sameIgnoringCase(language, "WQL")) {
        answer.status = WBEM_E_INVALID_QUERY_TYPE;
        return answer;
    }
    const std::optional<WqlStatement> statement = parseWql(wql);
    if (!statement) {
        answer.status = WBEM_E_INVALID_QUERY;
        return answer;
    }
    if (!sameIgnoringCase(statement->className, "Win32_Battery")) {
        answer.status = WBEM_E_INVALID_CLASS;
        return answer;
    }
    ProtocolFaults &faults = machine.faults();
    const bool voltageAsInt32 = faults.designVoltageAsInt32();
    const std::map<std::string, RawVariant> raw = faults.rawProperties();
    std::vector<InstrumentationInstance> instances;
    for (const BatteryRow &battery : machine.batteryRows()) {
        instances.push_back(rowOf(battery, voltageAsInt32, raw));
    }
    // Every name must belong to the class, whether or not a row comes.
    const InstrumentationInstance shape = rowOf(BatteryRow(), false, {});
    for (const std::string &name : statement->selected) {
        if (findProperty(shape, name) == nullptr) answer.status = WBEM_E_INVALID_QUERY;
    }
    if (statement->filter && findProperty(shape, statement->filter->first) == nullptr) {
        answer.status = WBEM_E_INVALID_QUERY;
    }
    if (answer.status != 0) return answer;
    for (const InstrumentationInstance &instance : instances) {
        if (statement->filter && !matches(*findProperty(instance, statement->filter->first),
                                          statement->filter->second)) {
            continue;
        }
        InstrumentationInstance row;
        for (const std::string &name : statement->selected) {
            for (const auto &property : instance) {
                if (sameIgnoringCase(property.first, name)) row[property.first] = property.second;
            }
        }
        answer.rows.push_back(row);
    }
    return answer;
}

} // namespace platform_layer
