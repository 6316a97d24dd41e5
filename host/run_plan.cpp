#include "run_plan.h"

#include <algorithm>

#include "battery_module/diagnostic.h"
#include "battery_module/resource.h"
#include "battery_rules/identifiers.h"
#include "module_queries.h"

namespace run_plan {

namespace {

struct TestName {
    EntityId id;
    std::string shortName;
    std::string longName;
};

// The host's own names for the extended tests, as the module's help text
// gives them.
const std::vector<TestName> &extendedTestNames() {
    static const std::vector<TestName> names = {
        {ID_DISCHARGE_TEST, "d", "discharge-test"},
        {ID_CHARGE_TEST, "c", "charge-test"},
    };
    return names;
}

std::vector<TestName> testNamesOf(ModuleInterface &module, const EntityId &diagnostic) {
    if (diagnostic == ID_EXTENDED_DIAGNOSTIC) return extendedTestNames();
    std::vector<TestName> names;
    if (Resource *resource = module.getResource()) {
        for (const auto &row : resource->getTestOptions()) {
            if (row.first.diagnostic() == diagnostic.diagnostic()) {
                names.push_back({row.first, row.second.shortName, row.second.longName});
            }
        }
    }
    return names;
}

std::string listOf(const std::vector<TestName> &names) {
    std::string text;
    for (const TestName &name : names) text += (text.empty() ? "" : ", ") + name.shortName;
    return text.empty() ? "none" : text;
}

std::vector<std::string> splitOn(const std::string &text, char separator) {
    std::vector<std::string> pieces;
    size_t start = 0;
    for (size_t at; (at = text.find(separator, start)) != std::string::npos; start = at + 1) {
        pieces.push_back(text.substr(start, at - start));
    }
    pieces.push_back(text.substr(start));
    return pieces;
}

// "ht", "h,t" or "battery-health-test" to test names.
bool namesIn(const std::string &text, const std::vector<TestName> &known,
             std::vector<std::string> &names) {
    if (text.find(',') != std::string::npos) {
        names = splitOn(text, ',');
        return true;
    }
    const bool allLetters = std::all_of(text.begin(), text.end(), [&known](char c) {
        return std::any_of(known.begin(), known.end(),
                           [c](const TestName &n) { return n.shortName == std::string(1, c); });
    });
    if (allLetters) {
        for (char c : text) names.emplace_back(1, c);
    } else {
        names.push_back(text);
    }
    return true;
}

void addOnce(std::vector<Test *> &tests, Test *test) {
    if (std::find(tests.begin(), tests.end(), test) == tests.end()) tests.push_back(test);
}

} // namespace

std::vector<DiagnosticSwitch> switchesOf(ModuleInterface &module) {
    std::vector<DiagnosticSwitch> switches;
    if (Resource *resource = module.getResource()) {
        for (const auto &row : resource->getDiagnosticOptions()) {
            switches.push_back({row.first, row.second.shortName, row.second.longName});
        }
    }
    switches.push_back({ID_EXTENDED_DIAGNOSTIC, "E", "extended"});
    return switches;
}

std::string deviceIdOf(SystemComponent &component, bool smartPath) {
    if (smartPath) return component.getIndex();
    for (const ComponentProperty &property : component.getInfo().properties) {
        if (property.key == "UDI") return property.value;
    }
    return component.getIndex();
}

bool chooseTests(ModuleInterface &module, const std::vector<DiagnosticChoice> &choices,
                 const std::vector<std::string> &runIds, RunPlan &plan, std::string &error) {
    for (const DiagnosticChoice &choice : choices) {
        Diagnostic *diagnostic = nullptr;
        for (uint32_t d = 0; d < module.getDiagnosticCount(); ++d) {
            Diagnostic *candidate = module.getDiagnostic(d);
            if (candidate != nullptr && candidate->getEntityId() == choice.diagnostic) {
                diagnostic = candidate;
            }
        }
        if (diagnostic == nullptr) {
            error = "the diagnostic " + module_queries::idText(choice.diagnostic) +
                    " is not offered on this machine";
            return false;
        }
        if (choice.tests.empty()) {
            for (uint32_t t = 0; t < diagnostic->getTestCount(); ++t) {
                if (Test *test = diagnostic->getTest(t)) addOnce(plan.tests, test);
            }
            continue;
        }
        const std::vector<TestName> known = testNamesOf(module, choice.diagnostic);
        std::vector<std::string> names;
        namesIn(choice.tests, known, names);
        for (const std::string &name : names) {
            const auto found = std::find_if(known.begin(), known.end(), [&name](const TestName &n) {
                return n.shortName == name || n.longName == name;
            });
            Test *test = found == known.end() ? nullptr : diagnostic->findTest(found->id);
            if (test == nullptr) {
                error = "no test '" + name + "' in diagnostic " +
                        module_queries::idText(choice.diagnostic) + " (tests: " + listOf(known) +
                        ")";
                return false;
            }
            addOnce(plan.tests, test);
        }
    }
    for (const std::string &text : runIds) {
        EntityId id(0, 0, 0);
        Test *test =
            module_queries::parseId(text, id) ? module_queries::findTest(module, id) : nullptr;
        if (test == nullptr) {
            error = "no test with identifier '" + text + "' in this module";
            return false;
        }
        addOnce(plan.tests, test);
    }
    return true;
}

bool includesExtended(const RunPlan &plan) {
    return std::any_of(plan.tests.begin(), plan.tests.end(), [](Test *test) {
        return test->getEntityId().diagnostic() == ID_EXTENDED_DIAGNOSTIC.diagnostic();
    });
}

bool chooseDevices(ModuleInterface &module, const std::vector<std::string> &ids, RunPlan &plan,
                   std::string &error) {
    const bool smart = module_queries::isSmartPath(module);
    SystemComponentManager *manager = module.getComponentManager();
    const uint64_t count = manager != nullptr ? manager->getComponentCount() : 0;
    std::vector<std::string> known;
    for (uint32_t c = 0; c < count; ++c) {
        SystemComponent *component = manager->getComponent(c);
        known.push_back(component != nullptr ? deviceIdOf(*component, smart) : "");
    }
    if (ids.empty()) {
        for (uint32_t c = 0; c < count; ++c) {
            plan.devices.push_back(manager->getComponent(c));
            plan.deviceIds.push_back(known[c]);
        }
        return true;
    }
    for (const std::string &id : ids) {
        const auto found = std::find(known.begin(), known.end(), id);
        if (found == known.end()) {
            std::string list;
            for (const std::string &k : known) list += (list.empty() ? "" : ", ") + k;
            error = "no battery '" + id +
                    "' on this machine (batteries: " + (list.empty() ? "none" : list) + ")";
            return false;
        }
        // A battery named twice is still one battery to test.
        if (std::find(plan.deviceIds.begin(), plan.deviceIds.end(), id) != plan.deviceIds.end()) {
            continue;
        }
        plan.devices.push_back(manager->getComponent(static_cast<uint32_t>(found - known.begin())));
        plan.deviceIds.push_back(id);
    }
    return true;
}

} // namespace run_plan
