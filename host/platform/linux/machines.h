#pragma once

#include "host_machine.h"

// The two machines of the Linux host.
HostMachine &emulatedMachine();
HostMachine &thisComputer();
