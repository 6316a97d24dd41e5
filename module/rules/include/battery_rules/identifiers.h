#pragma once

#include "battery_module/entity_id.h"

// Identifiers of everything the battery module offers. Constant-initialised,
// so they exist before any code of the library runs.
inline constexpr uint16_t kBatteryModuleNumber = 12;

inline constexpr EntityId ID_BATTERY_MODULE{12, 0, 0};
inline constexpr EntityId ID_BATTERY_MANAGER{12, 0, 0};
inline constexpr EntityId ID_QUICK_DIAGNOSTIC{12, 1, 0};
inline constexpr EntityId ID_EXTENDED_DIAGNOSTIC{12, 2, 0};
inline constexpr EntityId ID_HEALTH_TEST{12, 1, 1};
inline constexpr EntityId ID_SMART_HEALTH_TEST{12, 1, 1};
inline constexpr EntityId ID_TEMPERATURE_TEST{12, 1, 4};
inline constexpr EntityId ID_DISCHARGE_TEST{12, 2, 2};
inline constexpr EntityId ID_CHARGE_TEST{12, 2, 3};
