#include "emulator/instrumentation_service.h"

#include <cctype>

namespace emulator {

namespace {

bool sameText(const std::string &a, const std::string &b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(a[i])) !=
            std::tolower(static_cast<unsigned char>(b[i]))) {
            return false;
        }
    }
    return true;
}

// A small reader of one WQL statement.
class Reader {
public:
    explicit Reader(const std::string &text) : text_(text) {}

    void skipBlanks() {
        while (at_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[at_]))) ++at_;
    }
    bool atEnd() {
        skipBlanks();
        return at_ == text_.size();
    }
    std::string word() {
        skipBlanks();
        const size_t start = at_;
        while (at_ < text_.size() &&
               (std::isalnum(static_cast<unsigned char>(text_[at_])) || text_[at_] == '_')) {
            ++at_;
        }
        return text_.substr(start, at_ - start);
    }
    bool keyword(const char *expected) { return sameText(word(), expected); }
    bool symbol(char expected) {
        skipBlanks();
        if (at_ < text_.size() && text_[at_] == expected) {
            ++at_;
            return true;
        }
        return false;
    }
    bool quoted(std::string &value) {
        skipBlanks();
        if (at_ >= text_.size() || text_[at_] != '\'') return false;
        const size_t close = text_.find('\'', at_ + 1);
        if (close == std::string::npos) return false;
        value = text_.substr(at_ + 1, close - at_ - 1);
        at_ = close + 1;
        return true;
    }

private:
    const std::string &text_;
    size_t at_ = 0;
};

WmiInstance batteryInstance(const BatteryDescription &battery, const std::string &voltageType,
                            const InstrumentationSection *raw = nullptr) {
    WmiInstance instance;
    instance["DeviceID"] = {WmiValue::Text, battery.uniqueId, 0, {}};
    instance["Name"] = {WmiValue::Text, battery.deviceName, 0, {}};
    WmiValue voltage;
    if (voltageType == "text") {
        // A uint64 property travels as text.
        voltage = {WmiValue::Text, std::to_string(battery.designVoltage_mV), 0, {}};
    } else if (voltageType == "int32") {
        voltage = {WmiValue::Int32, "", static_cast<int32_t>(battery.designVoltage_mV), {}};
    }
    instance["DesignVoltage"] = voltage;
    if (raw != nullptr) {
        for (const auto &property : raw->rawProperties) {
            WmiValue given;
            given.kind = WmiValue::Raw;
            given.raw = property.second;
            instance[property.first] = given;
        }
    }
    return instance;
}

const WmiValue *findProperty(const WmiInstance &instance, const std::string &name) {
    for (const auto &property : instance) {
        if (sameText(property.first, name)) return &property.second;
    }
    return nullptr;
}

} // namespace

bool InstrumentationService::knowsNamespace(const std::string &name) {
    return sameText(name, "ROOT\\CIMV2");
}

WmiAnswer InstrumentationService::query(const Scenario &scenario, const std::string &language,
                                        const std::string &wql) {
    WmiAnswer answer;
    if (!sameText(language, "WQL")) {
        answer.status = kInvalidQueryType;
        return answer;
    }
    Reader reader(wql);
    if (!reader.keyword("SELECT")) {
        answer.status = kInvalidQuery;
        return answer;
    }
    std::vector<std::string> selected;
    do {
        const std::string name = reader.word();
        if (name.empty()) {
            answer.status = kInvalidQuery;
            return answer;
        }
        selected.push_back(name);
    } while (reader.symbol(','));
    if (!reader.keyword("FROM")) {
        answer.status = kInvalidQuery;
        return answer;
    }
    const std::string className = reader.word();
    bool filtered = false;
    std::string filterProperty, filterValue;
    if (!reader.atEnd()) {
        filtered = true;
        if (!reader.keyword("WHERE") || (filterProperty = reader.word()).empty() ||
            !reader.symbol('=') || !reader.quoted(filterValue) || !reader.atEnd()) {
            answer.status = kInvalidQuery;
            return answer;
        }
    }
    if (!sameText(className, "Win32_Battery")) {
        answer.status = kInvalidClass;
        return answer;
    }

    std::vector<WmiInstance> instances;
    for (const BatteryDescription &battery : scenario.batteries) {
        if (battery.present && !battery.uniqueId.empty()) {
            instances.push_back(batteryInstance(battery, scenario.instrumentation.designVoltageType,
                                                &scenario.instrumentation));
        }
    }
    // Every name must belong to the class, whether or not a row comes.
    const WmiInstance shape = batteryInstance(BatteryDescription(), "text");
    for (const std::string &name : selected) {
        if (findProperty(shape, name) == nullptr) {
            answer.status = kInvalidQuery;
            return answer;
        }
    }
    if (filtered && findProperty(shape, filterProperty) == nullptr) {
        answer.status = kInvalidQuery;
        return answer;
    }

    for (const WmiInstance &instance : instances) {
        if (filtered) {
            const WmiValue *value = findProperty(instance, filterProperty);
            const bool text = value->kind == WmiValue::Text ||
                              (value->kind == WmiValue::Raw && value->raw.type == 8 /* VT_BSTR */);
            const std::string &given = value->kind == WmiValue::Raw ? value->raw.text : value->text;
            if (!text || !sameText(given, filterValue)) continue;
        }
        WmiInstance row;
        for (const std::string &name : selected) {
            for (const auto &property : instance) {
                if (sameText(property.first, name)) row[property.first] = property.second;
            }
        }
        answer.rows.push_back(row);
    }
    return answer;
}

} // namespace emulator
