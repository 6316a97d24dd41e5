#pragma once

#include "battery_module/resource.h"

// The battery module's names, help text and option tables. The help text and
// the tables follow the path that the assembly took; the four name lookups
// do not.
class BatteryResource : public Resource {
public:
    // generic: true on the path through the operating system's battery
    // driver, false on the embedded-controller path.
    BatteryResource(const EntityId &id, bool generic);

    std::string getDiagnosticName(const EntityId &id) override;
    std::string getTestName(const EntityId &id) override;
    std::string getDiagnosticTooltip(const EntityId &id) override;
    std::string getTestDescription(const EntityId &id) override;
};
