#include <gtest/gtest.h>

#include <sqlite3.h>

#include <nlohmann/json.hpp>

#include "history/history_store.h"
#include "host/host_outputs_support.h"
#include "support/test_name.h"

// The capacity history: its schema, its migrations, and the host's runs
// recording into it.

namespace {

int versionOf(const std::string &path) {
    sqlite3 *db = nullptr;
    sqlite3_open(path.c_str(), &db);
    sqlite3_stmt *query = nullptr;
    sqlite3_prepare_v2(db, "PRAGMA user_version", -1, &query, nullptr);
    const int version = sqlite3_step(query) == SQLITE_ROW ? sqlite3_column_int(query, 0) : -1;
    sqlite3_finalize(query);
    sqlite3_close(db);
    return version;
}

nlohmann::json historyOf(const OutputFolder &folder, const std::string &db) {
    const auto outcome = folder.host("--history --json --history-db " + db);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.output;
    return nlohmann::json::parse(outcome.output, nullptr, false);
}

} // namespace

TEST(History, ANewFileGetsTheCurrentSchemaAndTheDefaultPlace) {
    OutputFolder folder;
    ASSERT_EQ(folder.host("-Q").exitCode, 0);
    const std::string path = folder / "data/battery_host/history.sqlite3";
    EXPECT_EQ(versionOf(path), HistoryStore::kSchemaVersion);
    const auto history = historyOf(folder, path);
    ASSERT_EQ(history["batteries"].size(), 1u);
    EXPECT_EQ(history["batteries"][0]["records"][0]["results"],
              (nlohmann::json{{"12.1.1", 0}, {"12.1.4", 0}}));
    const std::string table = folder.host("--history --history-db " + path).output;
    EXPECT_NE(table.find("battery Ostrelle OS-4C57 4711\n"), std::string::npos) << table;
    EXPECT_NE(table.find("57.24      54.10    94.5%      42    31.6  12.1.1 passed, 12.1.4 passed"),
              std::string::npos)
        << table;
}

TEST(History, AFileOfTheFirstSchemaIsMigratedWithItsRecords) {
    OutputFolder folder;
    const std::string path = folder / "old.sqlite3";
    sqlite3 *db = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
    std::string error;
    ASSERT_TRUE(HistoryStore::migrate(db, 1, error)) << error;
    ASSERT_EQ(sqlite3_exec(db,
                           "INSERT INTO runs VALUES(1, '2025-01-02T03:04:05Z', 'old host');"
                           "INSERT INTO batteries VALUES(1, 1, 'Ostrelle', 'OS-4C57', '4711', "
                           "57.24, 56.0, 3, 30.5);"
                           "INSERT INTO results VALUES(1, '12.1.1', 0);",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(db);

    ASSERT_EQ(folder.host("-Q --history-db " + path).exitCode, 0);
    EXPECT_EQ(versionOf(path), HistoryStore::kSchemaVersion);
    const auto records = historyOf(folder, path)["batteries"][0]["records"];
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0]["at"], "2025-01-02T03:04:05Z");
    EXPECT_EQ(records[0]["fullChargeWh"], 56.0);
    EXPECT_EQ(records[1]["fullChargeWh"], 54.1);
}

// `hosts` hosts each recording six runs into one database at once: none is
// lost, none warns.
void recordAtOnce(int hosts) {
    OutputFolder folder;
    const std::string run =
        std::string(HOST_PATH) + " -Mbattery -Q --history-db " + folder / "shared.sqlite3";
    const std::string loop = "(for i in 1 2 3 4 5 6; do " + run + " >/dev/null || echo lost; done)";
    std::string all;
    for (int host = 0; host < hosts; ++host) all += loop + " & ";
    const auto outcome = folder.shell(all + "wait");
    EXPECT_EQ(outcome.output.find("lost"), std::string::npos) << outcome.output;
    EXPECT_EQ(outcome.output.find("warning"), std::string::npos) << outcome.output;
    EXPECT_EQ(historyOf(folder, folder / "shared.sqlite3")["batteries"][0]["records"].size(),
              6u * hosts);
}

TEST(History, AResultBelongsToTheBatteryThatRanIt) {
    OutputFolder folder;
    ASSERT_EQ(folder.host("--scenario two-batteries -Qh 1 --history-db h.sqlite3").exitCode, 0);
    const auto batteries = historyOf(folder, "h.sqlite3")["batteries"];
    ASSERT_EQ(batteries.size(), 2u) << batteries.dump();
    EXPECT_EQ(batteries[0]["name"], "OS-2C19") << "battery 1, in the order of names";
    EXPECT_EQ(batteries[0]["records"][0]["results"], (nlohmann::json{{"12.1.1", 0}}));
    EXPECT_EQ(batteries[1]["records"][0]["results"], nlohmann::json::object())
        << "battery 0 was not tested";
}

TEST(History, TwoHostsRecordingAtOnceBothKeepEveryRun) {
    recordAtOnce(2);
}

TEST(History, EightHostsRecordingAtOnceKeepEveryRun) {
    recordAtOnce(8);
}

struct ReadRow {
    const char *name;
    const char *setUp;   // shell line in the folder; a recorded database is h.sqlite3
    const char *command; // the host's arguments, or a whole shell line with HOST in it
    int exitCode;
    const char *says;    // in the output
    const char *listing; // `ls -A` of the folder afterwards
};

// --history reads and never creates; a history that is no regular file is
// refused before the run; without a place for it the run goes on without.
const ReadRow kReadRows[] = {
    {"show a missing file", "", "--history --history-db gone/h.sqlite3", 2,
     "no history at gone/h.sqlite3", ""},
    {"show a read only database", "mkdir ro && HOST -Q --history-db ro/h.sqlite3 >/dev/null",
     "unshare -m sh -c 'mount --bind ro ro && mount -o remount,bind,ro ro && "
     "HOST --history --json --history-db ro/h.sqlite3'",
     0, "\"fullChargeWh\": 54.1", "ro\n"},
    // A device of the test's own: a history gone wrong leaves /dev alone.
    {"record into a device", "mknod null c 1 3 || echo cannot-set-up", "HOST -Q --history-db null",
     2, "history null is not a regular file", "null\n"},
    {"show a folder", "mkdir h", "--history --history-db h", 2, "h is not a regular file", "h\n"},
    {"no home and no data home", "", "env -u HOME -u XDG_DATA_HOME HOST -Q --report r.html", 0,
     "warning: no history folder: neither XDG_DATA_HOME nor HOME names one", "r.html\n"},
};

class HistoryPlaces : public ::testing::TestWithParam<ReadRow> {};

TEST_P(HistoryPlaces, ReadWithoutCreatingAndRefuseWhatIsNoFile) {
    const ReadRow &row = GetParam();
    OutputFolder folder;
    const auto withHost = [](std::string line) {
        const std::string host = std::string(HOST_PATH) + " -Mbattery";
        for (size_t at; (at = line.find("HOST")) != std::string::npos;) line.replace(at, 4, host);
        return line;
    };
    const auto made = folder.shell(withHost(row.setUp));
    if (made.output.find("cannot-set-up") != std::string::npos) GTEST_SKIP() << made.output;
    ASSERT_EQ(made.exitCode, 0) << made.output;
    const std::string command = row.command;
    const auto outcome = command.find("HOST") != std::string::npos ? folder.shell(withHost(command))
                                                                   : folder.host(command);
    if (command.rfind("unshare", 0) == 0 && outcome.output.find("unshare") == 0) {
        GTEST_SKIP() << outcome.output;
    }
    EXPECT_EQ(outcome.exitCode, row.exitCode) << outcome.output;
    EXPECT_NE(outcome.output.find(row.says), std::string::npos) << outcome.output;
    EXPECT_EQ(folder.shell("ls -A").output, row.listing);
    EXPECT_FALSE(std::filesystem::exists(folder / "null-journal"));
}

INSTANTIATE_TEST_SUITE_P(Rows, HistoryPlaces, ::testing::ValuesIn(kReadRows),
                         NameBy<&ReadRow::name>());

struct UnusableFile {
    const char *name;
    const char *setUp; // shell line that makes the file
    const char *named; // the one line says this
};

class UnusableHistory : public ::testing::TestWithParam<UnusableFile> {};

TEST_P(UnusableHistory, IsLeftUntouchedWhileTheDiagnosticRuns) {
    OutputFolder folder;
    ASSERT_EQ(folder.shell(GetParam().setUp).exitCode, 0);
    const std::string before = fileText(folder / "h.sqlite3");
    const auto outcome = folder.host("-Q --history-db h.sqlite3 --report r.html");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.output;
    EXPECT_NE(outcome.output.find("passed"), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find(GetParam().named), std::string::npos) << outcome.output;
    EXPECT_EQ(fileText(folder / "h.sqlite3"), before);
    EXPECT_FALSE(std::filesystem::exists(folder / "h.sqlite3-wal"));
    EXPECT_NE(fileText(folder / "r.html").find("data-result=\"passed\""), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Files, UnusableHistory,
    ::testing::Values(
        UnusableFile{"Corrupt", "head -c 8192 /dev/urandom > h.sqlite3",
                     "h.sqlite3 is not a readable database"},
        UnusableFile{"Newer", "sqlite3 h.sqlite3 'PRAGMA user_version = 99; CREATE TABLE t(x);'",
                     "schema version 99, newer than this host's 2"}),
    [](const auto &info) { return std::string(info.param.name); });

TEST(History, NoHistoryWritesNothingAnywhere) {
    OutputFolder folder;
    ASSERT_EQ(folder.host("-Q --no-history --report r.html").exitCode, 0);
    EXPECT_FALSE(std::filesystem::exists(folder / "data"));
    EXPECT_NE(fileText(folder / "r.html").find("No history is kept"), std::string::npos);
}

// Five runs of a battery that loses capacity from one to the next: the
// history and the report's chart follow it.
TEST(History, FollowsAFallingFullChargeCapacityOverFiveRuns) {
    OutputFolder folder;
    const std::string source = fileText(std::string(SCENARIO_DIR) + "/default.json");
    const auto scenario = nlohmann::json::parse(source);
    const int capacities[] = {54100, 52000, 49500, 47000, 44000};
    for (const int capacity : capacities) {
        auto worn = scenario;
        worn["batteries"][0]["fullChargeCapacity"] = capacity;
        std::ofstream(folder / "worn.json") << worn.dump();
        ASSERT_EQ(folder
                      .host("--run 12.1.1 --scenario worn.json --history-db h.sqlite3 "
                            "--report r.html")
                      .exitCode,
                  0);
    }
    const auto records = historyOf(folder, "h.sqlite3")["batteries"][0]["records"];
    ASSERT_EQ(records.size(), 5u);
    for (size_t i = 0; i < 5; ++i) {
        EXPECT_DOUBLE_EQ(records[i]["fullChargeWh"].get<double>(), capacities[i] / 1000.0);
    }
    const std::string report = fileText(folder / "r.html");
    EXPECT_NE(report.find("<figure class=\"capacity\" data-runs=\"5\">"), std::string::npos);
    EXPECT_NE(report.find("class=\"series full\" data-points=\"5\""), std::string::npos);
}
