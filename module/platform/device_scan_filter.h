#pragma once

#include <windows.h>

#include "hostlib/device_scanner.h"
#include "platform/battery_class.h"
