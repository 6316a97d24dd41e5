#include <cstdlib>

#include "history/history_store.h"

// A build without SQLite keeps no history; every run says so once.
std::unique_ptr<HistoryStore> HistoryStore::open(const std::string &, std::string &error) {
    error = "this host was built without SQLite and keeps no history";
    return nullptr;
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
    return std::string(data != nullptr ? data : ".") + "/battery_host/history.sqlite3";
}
} // namespace history
