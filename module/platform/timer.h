#pragma once

#include "hostlib/timer.h"

// The module's own clock, shared by every charge test of the process. It
// reads the same tick counter as hostlib's timer.
Timer *moduleTimer();
