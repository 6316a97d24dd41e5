#pragma once

#include <string>
#include <vector>

#include "battery_module/diagnostic.h"
#include "battery_module/module_interface.h"
#include "battery_module/resource.h"
#include "battery_module/system_component.h"
#include "battery_module/test.h"

// What the host learns about a loaded module through its virtual
// operations alone.
namespace module_queries {

// Only the smart path's option tables offer the temperature test.
bool isSmartPath(ModuleInterface &module);

// The generic manager starts empty, so it is refreshed before anything is
// listed or run. The smart manager is never asked for a refreshed component:
// that would destroy its components.
void prepareComponents(ModuleInterface &module);

std::string idText(const EntityId &id);
// "12.1.4" to an identifier; false when the text is not three numbers.
bool parseId(const std::string &text, EntityId &id);
// Whether "12.2.3" names a test of the extended diagnostic, which changes the
// machine's settings and draws the charge over time.
bool isExtendedTest(const std::string &testId);

Test *findTest(ModuleInterface &module, const EntityId &id, Diagnostic **owner = nullptr);

} // namespace module_queries
