#pragma once

#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

// What an extended run on this machine is about to change (the backlight
// level and the power profile as found), kept on disk until the machine is
// back, so that a run that died without putting it back (killed, power
// lost) is undone at the next start. It lives in the user's state folder:
// $XDG_STATE_HOME/battery_host, else ~/.local/state/battery_host.
class RestoreJournal {
public:
    // Puts back what a journal left by a run that died still records, and
    // removes it. One line per setting says what was done; none when there
    // was no journal.
    static std::vector<std::string> replayLeft();
    // Records the settings as they are now; false with one line when it
    // cannot, or when another host's extended run holds the journal.
    static bool record(std::string &error);
    // The run has put the machine back.
    static void close();

    // The journal's file; empty when neither variable names a folder.
    static std::string path();
    // Written whole or not at all: a crash mid-write leaves the old journal.
    static bool write(const nlohmann::json &entries, std::string &error);
    // A journal that cannot be parsed is reported, not trusted.
    static std::optional<nlohmann::json> read(std::string &error);
    static void remove();
};
