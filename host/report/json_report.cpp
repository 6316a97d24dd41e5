#include "report/json_report.h"

#include "battery_module/system_component.h"
#include "module_queries.h"
#include "run_plan.h"

namespace json_report {

namespace {
nlohmann::json properties(const std::vector<ComponentProperty> &list) {
    nlohmann::json out = nlohmann::json::array();
    for (const ComponentProperty &property : list) {
        out.push_back({{"key", property.key}, {"value", property.value}});
    }
    return out;
}

} // namespace

nlohmann::json batteries(ModuleInterface &module) {
    nlohmann::json out = nlohmann::json::array();
    SystemComponentManager *manager = module.getComponentManager();
    const bool smart = module_queries::isSmartPath(module);
    const uint64_t count = manager != nullptr ? manager->getComponentCount() : 0;
    for (uint32_t c = 0; c < count; ++c) {
        SystemComponent *component = manager->getComponent(c);
        if (component == nullptr) continue;
        const ComponentInfo info = component->getInfo();
        nlohmann::json groups = nlohmann::json::array();
        for (const ComponentInfoGroup &group : component->getInfoGroups()) {
            groups.push_back({{"name", group.name}, {"properties", properties(group.properties)}});
        }
        out.push_back({{"device", run_plan::deviceIdOf(*component, smart)},
                       {"index", component->getIndex()},
                       {"name", info.name},
                       {"properties", properties(info.properties)},
                       {"groups", groups}});
    }
    return out;
}

nlohmann::json runs(const std::vector<RunRecord> &records) {
    nlohmann::json out = nlohmann::json::array();
    for (const RunRecord &record : records) {
        nlohmann::json log = nlohmann::json::array();
        nlohmann::json charge = nlohmann::json::array();
        for (const auto &entry : record.entries) {
            log.push_back({{"text", entry.text}, {"level", entry.level}});
            if (isChargeLine(entry.text)) charge.push_back(entry.text);
        }
        nlohmann::json progress = nlohmann::json::array();
        for (const auto &update : record.progress) {
            progress.push_back({{"percent", update.percent}, {"text", update.text}});
        }
        nlohmann::json notices = nlohmann::json::array();
        for (const auto &notice : record.notices) {
            notices.push_back(
                {{"key", notice.key}, {"pairs", notice.pairs}, {"times", notice.times}});
        }
        out.push_back({{"id", record.testId},
                       {"name", record.testName},
                       {"device", record.device},
                       {"result", static_cast<int>(record.result)},
                       {"resultName", resultName(record.result)},
                       {"log", log},
                       {"progress", progress},
                       {"charge", charge},
                       {"notices", notices},
                       {"prompts", record.prompts}});
    }
    return out;
}

nlohmann::json document(const RunSummary &summary, int exitCode, int stoppedBy) {
    nlohmann::json out = {{"host", summary.hostVersion},
                          {"moduleVersion", summary.moduleVersion},
                          {"path", summary.path},
                          {"machine", summary.machine},
                          {"batteries", summary.batteries},
                          {"runs", runs(summary.records)},
                          {"exitCode", exitCode}};
    if (stoppedBy != 0) out["stoppedBy"] = stoppedBy;
    return out;
}

} // namespace json_report
