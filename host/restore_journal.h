#pragma once

#include <optional>
#include <string>

#include <nlohmann/json.hpp>

// What a run on a real machine is about to change, kept on disk until the
// machine is back, so that a run that died without putting it back (killed,
// power lost) is undone at the next start. It lives in the user's state
// folder: $XDG_STATE_HOME/battery_host, else ~/.local/state/battery_host.
class RestoreJournal {
public:
    // The journal's file; empty when neither variable names a folder.
    static std::string path();

    // Written whole or not at all: a crash mid-write leaves the old journal.
    static bool write(const nlohmann::json &entries, std::string &error);
    // A journal that cannot be parsed is reported, not trusted.
    static std::optional<nlohmann::json> read(std::string &error);
    static void remove();
};
