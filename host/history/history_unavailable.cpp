#include <cstdlib>

#include "history/history_store.h"

// A build without SQLite keeps no history; every run says so once.
std::unique_ptr<HistoryStore> HistoryStore::open(const std::string &, std::string &error) {
    error = "this host was built without SQLite and keeps no history";
    return nullptr;
}

std::unique_ptr<HistoryStore> HistoryStore::openForReading(const std::string &path,
                                                           std::string &error) {
    return open(path, error);
}

bool HistoryStore::migrate(sqlite3 *, int, std::string &) {
    return false;
}

HistoryStore::~HistoryStore() = default;

bool HistoryStore::record(const HistoryRun &, std::string &) {
    return false;
}

std::vector<HistoryEntry> HistoryStore::entries(const BatteryFigures *) const {
    return {};
}

namespace history {
std::string defaultPath() {
    const char *data = std::getenv("LOCALAPPDATA");
    return data == nullptr || *data == '\0' ? ""
                                            : std::string(data) + "/battery_host/history.sqlite3";
}
std::string checkFile(const std::string &) {
    return "";
}
} // namespace history
