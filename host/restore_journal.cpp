#include "restore_journal.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "atomic_file.h"
#include "text_escape.h"

namespace {
constexpr const char *kFolder = "battery_host";
constexpr const char *kFile = "restore.json";

std::string variable(const char *name) {
    const char *value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}
} // namespace

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
    std::error_code code;
    std::filesystem::create_directories(std::filesystem::path(file).parent_path(), code);
    error = writeFileAtomically(file, text_escape::json(entries, 2) + "\n");
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
