#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

// The restore journal of this machine: the backlight level and the power
// profile as found before an extended run, kept until the run has put them
// back.
namespace settings_journal {

// Puts back what a journal left by a run that died still records, and
// removes it. One line per setting says what was done; none when there was
// no journal.
std::vector<std::string> replayLeft();
// Records the settings as they are now; false with one line when it cannot.
bool record(std::string &error);
// The run has put the machine back.
void close();
// Where the backlight and the profile are read and set, for the report.
nlohmann::json sources();

} // namespace settings_journal
