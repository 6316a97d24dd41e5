#pragma once

#include "machine.h"

// The two machines of the Linux host.
Machine &emulatedMachine();
Machine &thisComputer();
