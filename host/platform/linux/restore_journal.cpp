#include "restore_journal.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "atomic_file.h"
#include "machine_lock.h"
#include "text_escape.h"
#include "machine_settings/settings_snapshot.h"

namespace {
constexpr const char *kFolder = "battery_host";
constexpr const char *kFile = "restore.json";

std::string variable(const char *name) {
    const char *value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

nlohmann::json toJson(const machine_settings::SettingsSnapshot &snapshot) {
    nlohmann::json entries = nlohmann::json::object();
    if (!snapshot.backlight.empty()) {
        entries["backlight"] = {{"device", snapshot.backlight}, {"raw", snapshot.brightness}};
    }
    if (!snapshot.profileSource.empty()) {
        entries["profile"] = {{"source", snapshot.profileSource}, {"name", snapshot.profile}};
    }
    return entries;
}

// Fields of the wrong kind are skipped: a journal edited by hand puts back
// what it still says clearly.
machine_settings::SettingsSnapshot fromJson(const nlohmann::json &entries) {
    machine_settings::SettingsSnapshot snapshot;
    const nlohmann::json backlight = entries.value("backlight", nlohmann::json::object());
    if (backlight.is_object() && backlight.value("device", nlohmann::json()).is_string() &&
        backlight.value("raw", nlohmann::json()).is_number_unsigned()) {
        snapshot.backlight = backlight["device"].get<std::string>();
        snapshot.brightness = backlight["raw"].get<uint32_t>();
    }
    const nlohmann::json profile = entries.value("profile", nlohmann::json::object());
    if (profile.is_object() && profile.value("source", nlohmann::json()).is_string() &&
        profile.value("name", nlohmann::json()).is_string()) {
        snapshot.profileSource = profile["source"].get<std::string>();
        snapshot.profile = profile["name"].get<std::string>();
    }
    return snapshot;
}

// The host that wrote the journal, while it still runs: its journal is its
// own to close. After a reboot the number may belong to another program, so
// the program's name is compared as well.
std::optional<long> livingWriter(const nlohmann::json &entries) {
    const nlohmann::json pid = entries.value("pid", nlohmann::json());
    if (!pid.is_number_integer() || pid.get<long>() <= 0 || pid.get<long>() == getpid()) {
        return std::nullopt;
    }
    std::ifstream comm("/proc/" + std::to_string(pid.get<long>()) + "/comm");
    std::string name;
    if (!std::getline(comm, name) || name != "battery_host") return std::nullopt;
    return pid.get<long>();
}

// A journal is moved out of its place before it is replayed, so that it is
// replayed at most once: one that cannot be moved (a read-only state folder)
// would reset at every start what the person has set since. Empty when moved.
std::string claim(const std::string &journal, const std::string &claimed) {
    if (std::rename(journal.c_str(), claimed.c_str()) == 0) return "";
    return journal + " cannot be removed (" + std::strerror(errno) +
           "); it is not replayed, so that it cannot undo at every start what was set since; "
           "remove it once the machine is as it should be";
}

} // namespace

std::vector<std::string> RestoreJournal::replayLeft() {
    // While another host runs an extended test, the machine is its to put back.
    if (!machine_lock::take().empty()) return {};
    struct Release {
        ~Release() { machine_lock::release(); }
    } release;
    std::string error;
    const std::optional<nlohmann::json> entries = read(error);
    if (!entries) return error.empty() ? std::vector<std::string>() : std::vector{error};
    if (livingWriter(*entries)) return {};
    const std::string claimed = path() + ".replaying";
    if (const std::string refused = claim(path(), claimed); !refused.empty()) {
        return {refused};
    }
    std::vector<std::string> lines = {"a run ended before it could put this machine back"};
    const std::vector<std::string> done = machine_settings::putBack(fromJson(*entries));
    lines.insert(lines.end(), done.begin(), done.end());
    if (done.empty()) lines.push_back("the machine was already as the journal recorded it");
    std::remove(claimed.c_str());
    return lines;
}

bool RestoreJournal::record(std::string &error) {
    // Held from before the journal is looked at until the machine is back.
    error = machine_lock::take();
    if (!error.empty()) return false;
    std::string readError;
    if (const std::optional<nlohmann::json> left = read(readError)) {
        if (const std::optional<long> writer = livingWriter(*left)) {
            error = "another battery_host (process " + std::to_string(*writer) +
                    ") is running an extended test on this machine";
            machine_lock::release();
            return false;
        }
    }
    nlohmann::json entries = toJson(machine_settings::takeSnapshot());
    entries["pid"] = static_cast<long>(getpid());
    if (write(entries, error)) return true;
    machine_lock::release();
    return false;
}

void RestoreJournal::close() {
    remove();
    machine_lock::release();
}

std::string RestoreJournal::path() {
    std::string state = variable("XDG_STATE_HOME");
    // The base directory rules ignore a relative path.
    if (state.empty() || state[0] != '/') {
        const std::string home = variable("HOME");
        if (home.empty()) return {};
        state = home + "/.local/state";
    }
    return state + "/" + kFolder + "/" + kFile;
}

bool RestoreJournal::write(const nlohmann::json &entries, std::string &error) {
    const std::string file = path();
    if (file.empty()) {
        error = "no state folder: neither XDG_STATE_HOME nor HOME is set";
        return false;
    }
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(file).parent_path(), ignored);
    error = writeFileAtomically(file, text_escape::json(entries, 2) + '\n');
    return error.empty();
}

std::optional<nlohmann::json> RestoreJournal::read(std::string &error) {
    const std::string file = path();
    if (file.empty()) return std::nullopt;
    std::ifstream in(file);
    if (!in) return std::nullopt;
    std::stringstream text;
    text << in.rdbuf();
    nlohmann::json entries = nlohmann::json::parse(text.str(), nullptr, false);
    if (entries.is_discarded() || !entries.is_object()) {
        error = file + " is not a journal this host wrote; it is left as it is";
        return std::nullopt;
    }
    return entries;
}

void RestoreJournal::remove() {
    const std::string file = path();
    if (!file.empty()) std::remove(file.c_str());
}
