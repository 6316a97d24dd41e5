#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "model/history_entry.h"
#include "model/run_record.h"

struct sqlite3;

// What one run of the host leaves in the history.
struct HistoryRun {
    std::string at;
    std::string machine;
    std::string moduleVersion;
    std::vector<BatteryFigures> batteries;
    const std::vector<RunRecord> *records = nullptr;
};

// The capacity history of the batteries this host has seen, in one SQLite
// file. Several hosts may record into it at once.
class HistoryStore {
public:
    static constexpr int kSchemaVersion = 2;

    // Opens the file, creating it and its folder when missing, and brings the
    // schema up to date. A file that is no database or of a newer schema is
    // left as it is: null, with one line in `error`. Every step waits for a
    // database another host is writing, up to the busy timeout.
    static std::unique_ptr<HistoryStore> open(const std::string &path, std::string &error);
    // Opens an existing file for reading only: nothing is created or changed,
    // and a database the user may only read can be shown.
    static std::unique_ptr<HistoryStore> openForReading(const std::string &path,
                                                        std::string &error);
    // Applies the migrations up to `version` only, for a file made by an
    // earlier host.
    static bool migrate(sqlite3 *db, int version, std::string &error);
    ~HistoryStore();
    HistoryStore(const HistoryStore &) = delete;
    HistoryStore &operator=(const HistoryStore &) = delete;

    bool record(const HistoryRun &run, std::string &error);
    // Every battery's entries, one battery after another, each in the order
    // of its runs; given a battery, the entries of the same identity alone.
    std::vector<HistoryEntry> entries(const BatteryFigures *only = nullptr) const;

private:
    explicit HistoryStore(sqlite3 *db) : db_(db) {}
    bool recordOnce(const HistoryRun &run, std::string &error, bool &busy);
    sqlite3 *db_;
};

namespace history {

// $XDG_DATA_HOME/battery_host/history.sqlite3, else under ~/.local/share;
// empty when neither variable names a folder.
std::string defaultPath();
// Empty when `path` is missing or a regular file (through links), else one
// line: a device or a folder is no database to create files beside.
std::string checkFile(const std::string &path);

} // namespace history
