#pragma once

#include <CLI/CLI.hpp>

#include "command_line.h"

// The host's own options on its command-line parser; the diagnostic
// switches come from the module and are taken out before it parses.
void buildHostOptions(CLI::App &app, HostOptions &options);
