#include <gtest/gtest.h>

#include <sqlite3.h>

#include <nlohmann/json.hpp>

#include "history/history_store.h"
#include "host/host_outputs_support.h"

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

TEST(History, TwoHostsRecordingAtOnceBothKeepEveryRun) {
    OutputFolder folder;
    const std::string run =
        std::string(HOST_PATH) + " -Mbattery -Q --history-db " + folder / "shared.sqlite3";
    const std::string loop = "(for i in 1 2 3 4 5 6; do " + run + " >/dev/null || echo lost; done)";
    const auto outcome = folder.shell(loop + " & " + loop + " & wait");
    EXPECT_EQ(outcome.output.find("lost"), std::string::npos) << outcome.output;
    EXPECT_EQ(outcome.output.find("warning"), std::string::npos) << outcome.output;
    EXPECT_EQ(historyOf(folder, folder / "shared.sqlite3")["batteries"][0]["records"].size(), 12u);
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
