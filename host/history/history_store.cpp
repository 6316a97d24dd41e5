#include "history/history_store.h"

#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <thread>

#include "history/sqlite_statement.h"
#include "module_queries.h"

namespace {

// Migration n takes a file from schema version n to n + 1. A released
// migration never changes; a new schema adds one.
const char *const kMigrations[] = {
    R"(CREATE TABLE runs(id INTEGER PRIMARY KEY, at TEXT NOT NULL, machine TEXT NOT NULL);
       CREATE TABLE batteries(id INTEGER PRIMARY KEY, run_id INTEGER NOT NULL REFERENCES runs(id),
         manufacturer TEXT NOT NULL, name TEXT NOT NULL, serial TEXT NOT NULL,
         design_wh REAL, full_charge_wh REAL, cycle_count REAL, temperature_c REAL);
       CREATE TABLE results(battery_id INTEGER NOT NULL REFERENCES batteries(id),
         test_id TEXT NOT NULL, result INTEGER NOT NULL);)",
    // Version 2: the module's version, the extended tests' samples, and
    // indexes for the query of one battery.
    R"(ALTER TABLE runs ADD COLUMN module_version TEXT NOT NULL DEFAULT '';
       CREATE TABLE samples(battery_id INTEGER NOT NULL REFERENCES batteries(id),
         test_id TEXT NOT NULL, at_ms REAL NOT NULL, charge_percent REAL NOT NULL,
         ac INTEGER NOT NULL, display_level INTEGER NOT NULL, scheme TEXT NOT NULL);
       CREATE INDEX batteries_by_identity ON batteries(manufacturer, name, serial, run_id);
       CREATE INDEX results_by_battery ON results(battery_id);
       CREATE INDEX samples_by_battery ON samples(battery_id);)",
};
static_assert(sizeof kMigrations / sizeof kMigrations[0] == HistoryStore::kSchemaVersion,
              "one migration per schema version");

constexpr int kBusyTimeoutMs = 10000;

bool exec(sqlite3 *db, const std::string &sql, std::string &error) {
    char *message = nullptr;
    if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &message) == SQLITE_OK) return true;
    error = message != nullptr ? message : sqlite3_errmsg(db);
    sqlite3_free(message);
    return false;
}

// -1 when the file cannot be read as a database.
int userVersion(sqlite3 *db, std::string &error) {
    SqliteStatement query(db, "PRAGMA user_version");
    if (!query.ok() || query.step() != SQLITE_ROW) {
        error = sqlite3_errmsg(db);
        return -1;
    }
    return static_cast<int>(query.integer(0));
}

} // namespace

bool HistoryStore::migrate(sqlite3 *db, int version, std::string &error) {
    // Taken for writing at once, so two hosts that start together migrate one
    // after the other and the second finds the work done.
    if (!exec(db, "BEGIN IMMEDIATE", error)) return false;
    int current = userVersion(db, error);
    bool ok = current >= 0;
    for (; ok && current < version; ++current) {
        ok = exec(db, kMigrations[current], error) &&
             exec(db, "PRAGMA user_version = " + std::to_string(current + 1), error);
    }
    std::string ignored;
    exec(db, ok ? "COMMIT" : "ROLLBACK", ok ? error : ignored);
    return ok;
}

namespace {

using Clock = std::chrono::steady_clock;

// Another host holds the database: worth trying again.
bool isBusy(sqlite3 *db) {
    const int code = sqlite3_extended_errcode(db) & 0xff;
    return code == SQLITE_BUSY || code == SQLITE_LOCKED;
}

// SQLite's busy handler does not cover every step (a journal mode change, a
// WAL file being recovered or removed by the last host to close it): a step
// that still finds the database busy is tried again, whole, until the busy
// timeout has passed.
template <typename Attempt> auto untilNotBusy(Attempt attempt) {
    const auto deadline = Clock::now() + std::chrono::milliseconds(kBusyTimeoutMs);
    for (;;) {
        bool busy = false;
        auto outcome = attempt(busy);
        if (outcome || !busy || Clock::now() >= deadline) return outcome;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

std::string unusable(const std::string &path, int version, int code, const std::string &why) {
    const bool damaged = code == SQLITE_NOTADB || code == SQLITE_CORRUPT;
    return version < 0
               ? "history " + path +
                     (damaged ? " is not a readable database (" : " cannot be read (") + why +
                     "); left untouched, this run is not recorded"
               : "history " + path + " has schema version " + std::to_string(version) +
                     ", newer than this host's " + std::to_string(HistoryStore::kSchemaVersion) +
                     "; left untouched, this run is not recorded";
}

enum class Access { Write, Read, ReadUnchanging };

// The file as an SQLite URI that promises it does not change: a WAL database
// in a folder nobody may write has no shared memory file and can only be read so.
std::string unchangingUri(const std::string &path) {
    std::string uri = "file:";
    for (const char c : path) {
        if (c == '?' || c == '#' || c == '%') {
            char hex[4];
            std::snprintf(hex, sizeof hex, "%%%02X", static_cast<unsigned>(c));
            uri += hex;
        } else {
            uri += c;
        }
    }
    return uri + "?immutable=1";
}

// `cantOpen`: the file is there but SQLite could not open it as asked.
sqlite3 *openOnce(const std::string &path, Access access, std::string &error, bool &busy,
                  bool *cantOpen = nullptr) {
    sqlite3 *db = nullptr;
    const bool readOnly = access != Access::Write;
    const int flags = !readOnly ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE
                      : access == Access::ReadUnchanging ? SQLITE_OPEN_READONLY | SQLITE_OPEN_URI
                                                         : SQLITE_OPEN_READONLY;
    const std::string name = access == Access::ReadUnchanging ? unchangingUri(path) : path;
    const bool opened = sqlite3_open_v2(name.c_str(), &db, flags, nullptr) == SQLITE_OK;
    // Before anything reads: every later step waits for a host that writes.
    if (opened) sqlite3_busy_timeout(db, kBusyTimeoutMs);
    // The version is read before anything is written: a file that is no
    // database, or one of a newer host, must stay exactly as it is.
    std::string why = opened ? "" : (db != nullptr ? sqlite3_errmsg(db) : "cannot open");
    const int version = opened ? userVersion(db, why) : -1;
    bool ok = opened && version >= 0 && version <= HistoryStore::kSchemaVersion;
    if (!ok && opened) error = unusable(path, version, sqlite3_errcode(db), why);
    if (cantOpen != nullptr)
        *cantOpen = opened && version < 0 && sqlite3_errcode(db) == SQLITE_CANTOPEN;
    if (ok && !readOnly) {
        ok = exec(db, "PRAGMA journal_mode=WAL", why) && exec(db, "PRAGMA foreign_keys=ON", why) &&
             HistoryStore::migrate(db, HistoryStore::kSchemaVersion, why);
        if (!ok) error = "history " + path + ": " + why;
    }
    if (!opened) error = "history " + path + ": " + why;
    if (ok) return db;
    busy = db != nullptr && isBusy(db);
    sqlite3_close(db);
    return nullptr;
}

} // namespace

std::unique_ptr<HistoryStore> HistoryStore::open(const std::string &path, std::string &error) {
    const std::filesystem::path parent = std::filesystem::path(path).parent_path();
    std::error_code ignored;
    if (!parent.empty()) std::filesystem::create_directories(parent, ignored);
    sqlite3 *db =
        untilNotBusy([&](bool &busy) { return openOnce(path, Access::Write, error, busy); });
    return db == nullptr ? nullptr : std::unique_ptr<HistoryStore>(new HistoryStore(db));
}

std::unique_ptr<HistoryStore> HistoryStore::openForReading(const std::string &path,
                                                           std::string &error) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) {
        error = "no history at " + path + ": " + std::strerror(errno);
        return nullptr;
    }
    bool cantOpen = false;
    sqlite3 *db = untilNotBusy(
        [&](bool &busy) { return openOnce(path, Access::Read, error, busy, &cantOpen); });
    bool busy = false;
    if (db == nullptr && cantOpen) db = openOnce(path, Access::ReadUnchanging, error, busy);
    return db == nullptr ? nullptr : std::unique_ptr<HistoryStore>(new HistoryStore(db));
}

HistoryStore::~HistoryStore() {
    sqlite3_close(db_);
}

bool HistoryStore::record(const HistoryRun &run, std::string &error) {
    return untilNotBusy([&](bool &busy) { return recordOnce(run, error, busy); });
}

bool HistoryStore::recordOnce(const HistoryRun &run, std::string &error, bool &busy) {
    // The write lock before any read: a read that became a write could not wait.
    if (!exec(db_, "BEGIN IMMEDIATE", error)) {
        busy = isBusy(db_);
        return false;
    }
    SqliteStatement addRun(db_, "INSERT INTO runs(at, machine, module_version) VALUES(?, ?, ?)");
    SqliteStatement addBattery(
        db_, "INSERT INTO batteries(run_id, manufacturer, name, serial, design_wh, "
             "full_charge_wh, cycle_count, temperature_c) VALUES(?, ?, ?, ?, ?, ?, ?, ?)");
    SqliteStatement addResult(db_,
                              "INSERT INTO results(battery_id, test_id, result) VALUES(?, ?, ?)");
    SqliteStatement addSample(db_, "INSERT INTO samples(battery_id, test_id, at_ms, "
                                   "charge_percent, ac, display_level, scheme) "
                                   "VALUES(?, ?, ?, ?, ?, ?, ?)");
    bool ok = addRun.ok() && addBattery.ok() && addResult.ok() && addSample.ok();
    if (ok) {
        addRun.bind(1, run.at);
        addRun.bind(2, run.machine);
        addRun.bind(3, run.moduleVersion);
        ok = addRun.step() == SQLITE_DONE;
    }
    const int64_t runId = sqlite3_last_insert_rowid(db_);
    for (size_t b = 0; ok && b < run.batteries.size(); ++b) {
        const BatteryFigures &battery = run.batteries[b];
        addBattery.reset();
        addBattery.bind(1, runId);
        addBattery.bind(2, battery.manufacturer);
        addBattery.bind(3, battery.name);
        addBattery.bind(4, battery.serial);
        addBattery.bind(5, battery.designWh);
        addBattery.bind(6, battery.fullChargeWh);
        addBattery.bind(7, battery.cycleCount);
        addBattery.bind(8, battery.temperatureC);
        ok = addBattery.step() == SQLITE_DONE;
        const int64_t batteryId = sqlite3_last_insert_rowid(db_);
        if (run.records == nullptr) continue;
        for (const RunRecord &record : *run.records) {
            if (!ok || record.device != battery.device) continue;
            addResult.reset();
            addResult.bind(1, batteryId);
            addResult.bind(2, record.testId);
            addResult.bind(3, static_cast<int64_t>(record.result));
            ok = addResult.step() == SQLITE_DONE;
            if (!module_queries::isExtendedTest(record.testId)) continue;
            for (const MachineSample &sample : record.samples) {
                addSample.reset();
                addSample.bind(1, batteryId);
                addSample.bind(2, record.testId);
                addSample.bind(3, sample.atMs);
                addSample.bind(4, sample.chargePercent);
                addSample.bind(5, static_cast<int64_t>(sample.ac ? 1 : 0));
                addSample.bind(6, static_cast<int64_t>(sample.displayLevel));
                addSample.bind(7, sample.scheme);
                ok = ok && addSample.step() == SQLITE_DONE;
            }
        }
    }
    if (!ok) error = sqlite3_errmsg(db_);
    busy = !ok && isBusy(db_);
    std::string ignored;
    if (ok && !exec(db_, "COMMIT", error)) {
        ok = false;
        busy = isBusy(db_);
    }
    if (!ok) exec(db_, "ROLLBACK", ignored);
    return ok;
}

std::vector<HistoryEntry> HistoryStore::entries(const BatteryFigures *only) const {
    std::string sql =
        "SELECT b.id, r.id, r.at, r.machine, b.manufacturer, b.name, b.serial, b.design_wh, "
        "b.full_charge_wh, b.cycle_count, b.temperature_c, t.test_id, t.result "
        "FROM batteries b JOIN runs r ON r.id = b.run_id "
        "LEFT JOIN results t ON t.battery_id = b.id ";
    if (only != nullptr) sql += "WHERE b.manufacturer = ? AND b.name = ? AND b.serial = ? ";
    sql += "ORDER BY b.manufacturer, b.name, b.serial, b.run_id, b.id, t.rowid";
    SqliteStatement query(db_, sql.c_str());
    if (only != nullptr) {
        query.bind(1, only->manufacturer);
        query.bind(2, only->name);
        query.bind(3, only->serial);
    }
    std::vector<HistoryEntry> out;
    int64_t lastBattery = -1;
    while (query.step() == SQLITE_ROW) {
        if (query.integer(0) != lastBattery) {
            lastBattery = query.integer(0);
            HistoryEntry entry;
            entry.run = query.integer(1);
            entry.at = query.text(2);
            entry.machine = query.text(3);
            entry.battery.manufacturer = query.text(4);
            entry.battery.name = query.text(5);
            entry.battery.serial = query.text(6);
            entry.battery.designWh = query.number(7);
            entry.battery.fullChargeWh = query.number(8);
            entry.battery.cycleCount = query.number(9);
            entry.battery.temperatureC = query.number(10);
            out.push_back(std::move(entry));
        }
        if (!query.isNull(11)) {
            out.back().results.emplace_back(query.text(11), static_cast<int>(query.integer(12)));
        }
    }
    return out;
}

namespace history {

std::string defaultPath() {
    const char *data = std::getenv("XDG_DATA_HOME");
    std::filesystem::path base;
    if (data != nullptr && data[0] == '/') {
        base = data;
    } else {
        // Never the current folder: a service started in / would write there.
        const char *home = std::getenv("HOME");
        if (home == nullptr || home[0] != '/') return "";
        base = std::filesystem::path(home) / ".local" / "share";
    }
    return (base / "battery_host" / "history.sqlite3").string();
}

std::string checkFile(const std::string &path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0 || S_ISREG(info.st_mode)) return "";
    return "history " + path + " is not a regular file; a database and its journal need one";
}

} // namespace history
