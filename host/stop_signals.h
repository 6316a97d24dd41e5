#pragma once

#include <csignal>
#include <string>

// Every way a person or the system asks the host to end: Ctrl-C, SIGTERM, a
// closed terminal (SIGHUP) and a reader that went away (SIGPIPE). None of
// them ends the process at once; each asks the running test to stop, so that
// the module puts the machine back before the host leaves.
namespace stop_signals {

// Installed without SA_RESTART, so a prompt waiting on standard input wakes.
void install();
// The first signal that asked for a stop, 0 while none did.
int received();
bool requested();
// After the machine is back: a stop by SIGTERM, SIGHUP or SIGPIPE ends the
// process by that signal, as its sender expects; Ctrl-C returns and the host
// reports the aborted run with its exit code.
void endLikeTheSignal();

// Reads one line from a descriptor, giving up once a stop is requested.
// Returns false at the end of input, on an error, or on a stop.
bool readLine(int descriptor, std::string &line);

} // namespace stop_signals
