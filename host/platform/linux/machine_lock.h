#pragma once

#include <string>

// One extended run per machine, whoever runs it: an advisory lock on a file
// every host on the machine sees, /run/lock/battery_host.lock (/tmp when the
// system has no /run/lock; BATTERY_HOST_LOCK names another file, for tests).
// The file is opened without following a link, never truncated or written, so
// a link or file another user planted cannot turn a root run against a system
// file; the lock goes with the process, so a killed host holds nothing.
namespace machine_lock {

// The lock's file.
std::string path();
// Takes the lock for this process without waiting, or finds it already taken
// by it. Empty on success, else one line naming the program that holds it.
std::string take();
void release();

} // namespace machine_lock
