#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "restore_journal.h"

// Where the journal lives and how it survives a bad file. Every case points
// the state folder at a temporary one, never the user's own.

namespace {

struct PathRow {
    const char *name;
    const char *state; // nullptr: unset
    const char *home;
    const char *path;
};

class JournalPath : public ::testing::TestWithParam<PathRow> {};

// The variables as they were, put back after each case.
class SavedEnvironment {
public:
    SavedEnvironment() : state_(get("XDG_STATE_HOME")), home_(get("HOME")) {}
    ~SavedEnvironment() {
        put("XDG_STATE_HOME", state_ ? state_->c_str() : nullptr);
        put("HOME", home_ ? home_->c_str() : nullptr);
    }
    static void put(const char *name, const char *value) {
        if (value == nullptr) {
            unsetenv(name);
        } else {
            setenv(name, value, 1);
        }
    }

private:
    static std::optional<std::string> get(const char *name) {
        const char *value = std::getenv(name);
        return value == nullptr ? std::nullopt : std::optional<std::string>(value);
    }
    std::optional<std::string> state_;
    std::optional<std::string> home_;
};

} // namespace

TEST_P(JournalPath, StateHomeElseHome) {
    SavedEnvironment saved;
    SavedEnvironment::put("XDG_STATE_HOME", GetParam().state);
    SavedEnvironment::put("HOME", GetParam().home);
    EXPECT_EQ(RestoreJournal::path(), GetParam().path);
}

INSTANTIATE_TEST_SUITE_P(
    Table, JournalPath,
    ::testing::Values(
        PathRow{"StateHome", "/tmp/state", "/home/ada", "/tmp/state/battery_host/restore.json"},
        PathRow{"Home", nullptr, "/home/ada", "/home/ada/.local/state/battery_host/restore.json"},
        PathRow{"EmptyStateHome", "", "/home/ada",
                "/home/ada/.local/state/battery_host/restore.json"},
        PathRow{"RelativeStateHome", "state", "/home/ada",
                "/home/ada/.local/state/battery_host/restore.json"},
        PathRow{"Neither", nullptr, nullptr, ""}),
    [](const ::testing::TestParamInfo<PathRow> &info) { return std::string(info.param.name); });

TEST(RestoreJournal, IsWrittenReadAndRemoved) {
    SavedEnvironment saved;
    const std::string folder = ::testing::TempDir() + "journal-state";
    SavedEnvironment::put("XDG_STATE_HOME", folder.c_str());
    RestoreJournal::remove();
    std::string error;
    EXPECT_FALSE(RestoreJournal::read(error)) << "none yet";
    const nlohmann::json entries = {{"backlight", {{"device", "intel_backlight"}, {"raw", 500}}}};
    ASSERT_TRUE(RestoreJournal::write(entries, error)) << error;
    EXPECT_EQ(RestoreJournal::read(error), entries);
    RestoreJournal::remove();
    EXPECT_FALSE(RestoreJournal::read(error));
    EXPECT_EQ(error, "");
}

TEST(RestoreJournal, AFileItDidNotWriteIsNamedAndLeft) {
    SavedEnvironment saved;
    const std::string folder = ::testing::TempDir() + "journal-bad";
    SavedEnvironment::put("XDG_STATE_HOME", folder.c_str());
    std::string error;
    ASSERT_TRUE(RestoreJournal::write(nlohmann::json::object(), error));
    for (const char *text : {"{\"backlight\": ", "[1, 2]", ""}) {
        std::ofstream(RestoreJournal::path()) << text;
        error.clear();
        EXPECT_FALSE(RestoreJournal::read(error)) << text;
        EXPECT_NE(error.find(RestoreJournal::path()), std::string::npos) << text;
    }
    RestoreJournal::remove();
}

TEST(RestoreJournal, AnUnwritableFolderIsOneLine) {
    SavedEnvironment saved;
    SavedEnvironment::put("XDG_STATE_HOME", "/proc/no-state-here");
    std::string error;
    EXPECT_FALSE(RestoreJournal::write(nlohmann::json::object(), error));
    EXPECT_NE(error.find("/proc/no-state-here/battery_host"), std::string::npos) << error;
}

TEST(RestoreJournal, AFailedRenameLeavesNoPartialFile) {
    SavedEnvironment saved;
    const std::string folder = ::testing::TempDir() + "journal-in-the-way";
    SavedEnvironment::put("XDG_STATE_HOME", folder.c_str());
    std::filesystem::create_directories(RestoreJournal::path() + "/kept");
    std::string error;
    EXPECT_FALSE(RestoreJournal::write(nlohmann::json::object(), error));
    EXPECT_NE(error.find(RestoreJournal::path()), std::string::npos) << error;
    // Nothing but the folder in the way is left beside it.
    const std::filesystem::path journalFolder =
        std::filesystem::path(RestoreJournal::path()).parent_path();
    for (const auto &entry : std::filesystem::directory_iterator(journalFolder)) {
        EXPECT_EQ(entry.path(), RestoreJournal::path()) << "a temporary file is left";
    }
    std::filesystem::remove_all(folder);
}
