#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "machine_settings/bus_mock.h"
#include "support/test_name.h"

// The extended diagnostic on this machine: a umockdev testbed of a notebook
// off AC with a backlight, a mock power-profiles-daemon on a private bus, time
// running faster (60 times while a signal is to come a second in, so that it
// comes amid the measurement). Whatever ends the run, the backlight and the
// profile are as the module's restore rules say (the level found, the hold
// let go), and a run killed outright is undone at the next start.

namespace {

constexpr const char *kTestbed = TESTBED_DIR "/notebook-with-backlight.umockdev";
constexpr const char *kFoundLevel = "500"; // of 937: 53 percent, put back exactly
constexpr const char *kHold =
    "HoldProfile \"performance\" \"battery diagnostic running\" \"battery_host\"";

struct Outcome {
    int exitCode = -1;
    std::string brightness; // the testbed's level once the host has ended
    std::string errors;     // the host's standard error
    std::string restarted;  // standard error of a second start, when there was one
    std::string brightnessAfterRestart;
};

class ThisMachineRun : public ::testing::Test {
protected:
    static void SetUpTestSuite() { ASSERT_TRUE(bus_mock::startPrivateSystemBus()); }

    void SetUp() override {
        folder_ = ::testing::TempDir() + "this-machine-" +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name() + "/";
        std::system(("rm -rf " + folder_ + " && mkdir -p " + folder_).c_str());
        // Never the person's own state folder, nor the machine's own lock: the
        // tests of this file may run side by side.
        setenv("XDG_STATE_HOME", (folder_ + "state").c_str(), 1);
        setenv("BATTERY_HOST_LOCK", (folder_ + "machine.lock").c_str(), 1);
    }

    std::string journal() const { return folder_ + "state/battery_host/restore.json"; }
    bool journalLeft() const {
        struct stat info;
        return stat(journal().c_str(), &info) == 0;
    }

    // Runs the host under the testbed; `signal` is sent a second into the
    // run (none: the run ends by itself), and after SIGKILL the host starts
    // once more, as a person would.
    Outcome run(const std::string &arguments, const std::string &signal) {
        const std::string brightness = "/sys/class/backlight/intel_backlight/brightness";
        std::string script =
            "exec 3<>" + folder_ + "in; " + HOST_PATH + " --this-machine -Mbattery " + arguments +
            " --duration 5 --time-scale " + (signal.empty() ? "600" : "60") + " --json <" +
            folder_ + "in >" + folder_ + "report.json 2>" + folder_ + "errors & pid=$!; ";
        if (!signal.empty()) script += "sleep 1; kill -" + signal + " $pid; ";
        script += "wait $pid; echo $? >" + folder_ + "code; cat " + brightness + " >" + folder_ +
                  "level; ";
        if (signal == "KILL") {
            script += std::string(HOST_PATH) + " --this-machine -Mbattery --list >/dev/null 2>" +
                      folder_ + "restarted; cat " + brightness + " >" + folder_ + "relevel; ";
        }
        // umockdev's preload comes before a sanitized host's runtime.
        const std::string command = "mkfifo " + folder_ +
                                    "in && ASAN_OPTIONS=\"$ASAN_OPTIONS:verify_asan_link_order=0\" "
                                    "umockdev-run -d " +
                                    kTestbed + " -- sh -c '" + script + "'";
        std::system(command.c_str());
        Outcome outcome;
        outcome.exitCode = std::atoi(read("code").c_str());
        outcome.brightness = read("level");
        outcome.errors = read("errors");
        outcome.restarted = read("restarted");
        outcome.brightnessAfterRestart = read("relevel");
        return outcome;
    }

    std::string read(const std::string &name) const {
        std::ifstream in(folder_ + name);
        std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        while (!text.empty() && text.back() == '\n') text.pop_back();
        return text;
    }

    std::string folder_;
};

struct StopRow {
    const char *name;
    const char *arguments;
    const char *signal; // empty: the run ends by itself
    int exitCode;
    std::vector<std::string> profileCalls;
};

class ThisMachineStop : public ThisMachineRun, public ::testing::WithParamInterface<StopRow> {};

} // namespace

TEST_P(ThisMachineStop, TheMachineIsPutBack) {
    bus_mock::Service daemon("net.hadess.PowerProfiles", {"-t", "power_profiles_daemon"},
                             ::testing::TempDir());
    const Outcome outcome = run(GetParam().arguments, GetParam().signal);
    EXPECT_EQ(outcome.exitCode, GetParam().exitCode) << outcome.errors;
    EXPECT_EQ(outcome.brightness, kFoundLevel) << outcome.errors;
    EXPECT_EQ(daemon.calls(std::vector<std::string>{"HoldProfile", "ReleaseProfile", "Set"}),
              GetParam().profileCalls);
    EXPECT_FALSE(journalLeft()) << "the journal is closed once the machine is back";
}

INSTANTIATE_TEST_SUITE_P(
    Table, ThisMachineStop,
    ::testing::Values(
        StopRow{"BothTestsToTheirEnd", "-E --yes", "", 1, {kHold, "ReleaseProfile 1"}},
        StopRow{"TermWhileMeasuring", "-Ed --yes", "TERM", 143, {kHold, "ReleaseProfile 1"}},
        StopRow{"HangUpWhileMeasuring", "-Ed --yes", "HUP", 129, {kHold, "ReleaseProfile 1"}},
        StopRow{"CtrlCWhileMeasuring", "-Ed --yes", "INT", 4, {kHold, "ReleaseProfile 1"}},
        StopRow{"CtrlCAtThePrompt", "-Ec", "INT", 4, {}}),
    [](const ::testing::TestParamInfo<StopRow> &info) { return std::string(info.param.name); });

TEST_F(ThisMachineRun, AKilledRunIsUndoneAtTheNextStart) {
    bus_mock::Service daemon("net.hadess.PowerProfiles", {"-t", "power_profiles_daemon"},
                             ::testing::TempDir());
    const Outcome outcome = run("-Ed --yes", "KILL");
    EXPECT_EQ(outcome.exitCode, 137);
    EXPECT_NE(outcome.brightness, kFoundLevel) << "killed amid its sweep of the display";
    EXPECT_NE(outcome.restarted.find("restore journal: backlight intel_backlight put back to "
                                     "500 of 937"),
              std::string::npos)
        << outcome.restarted;
    EXPECT_EQ(outcome.brightnessAfterRestart, kFoundLevel);
    EXPECT_FALSE(journalLeft());
}

namespace {

// A journal left with the number of a process that still runs: only a
// battery_host under that number is its writer. The other program is `sleep`
// under the row's name.
struct WriterRow {
    const char *name;
    const char *writer;
    const char *arguments;
    int exitCode;
    const char *said; // on standard error
    bool journalLeft;
    const char *level; // the backlight's level afterwards; the journal says 300
};

class JournalWriter : public ThisMachineRun, public ::testing::WithParamInterface<WriterRow> {};

} // namespace

TEST_P(JournalWriter, OnlyALivingHostKeepsItsJournal) {
    const WriterRow &row = GetParam();
    const std::string writer = folder_ + row.writer;
    const std::string script =
        std::string(HOST_PATH) + " --this-machine -Mbattery " + row.arguments +
        " --duration 5 --time-scale 600 >/dev/null 2>" + folder_ + "errors; echo $? >" + folder_ +
        "code; cat /sys/class/backlight/intel_backlight/brightness >" + folder_ + "level";
    const std::string command =
        "cp \"$(command -v sleep)\" " + writer + " && { " + writer + " 60 & w=$!; }; mkdir -p " +
        folder_ +
        "state/battery_host && printf '{\"backlight\": {\"device\": "
        "\"intel_backlight\", \"raw\": 300}, \"pid\": %s}' $w >" +
        journal() + " && ASAN_OPTIONS=\"$ASAN_OPTIONS:verify_asan_link_order=0\" umockdev-run -d " +
        kTestbed + " -- sh -c '" + script + "'; kill $w";
    std::system(command.c_str());
    EXPECT_EQ(std::atoi(read("code").c_str()), row.exitCode) << read("errors");
    EXPECT_NE(read("errors").find(row.said), std::string::npos) << read("errors");
    EXPECT_EQ(journalLeft(), row.journalLeft);
    EXPECT_EQ(read("level"), row.level);
}

INSTANTIATE_TEST_SUITE_P(
    Table, JournalWriter,
    ::testing::Values(WriterRow{"WriterStillRuns", "battery_host", "-Ed --yes", 2,
                                "another battery_host (process ", true, kFoundLevel},
                      WriterRow{"NumberTakenByAnotherProgram", "sleep", "--list", 0,
                                "restore journal: backlight intel_backlight put back to 300 of 937",
                                false, "300"}),
    [](const ::testing::TestParamInfo<WriterRow> &info) { return std::string(info.param.name); });

TEST_F(ThisMachineRun, TheReportNamesWhereSettingsAreReadAndSet) {
    bus_mock::Service daemon("net.hadess.PowerProfiles", {"-t", "power_profiles_daemon"},
                             ::testing::TempDir());
    run("-Ed --yes", "");
    const nlohmann::json report = nlohmann::json::parse(read("report.json"), nullptr, false);
    ASSERT_FALSE(report.is_discarded()) << read("errors");
    const auto &state = report["machineState"];
    EXPECT_EQ(state["backlight"]["device"], "intel_backlight") << state.dump();
    EXPECT_EQ(state["backlight"]["writtenThrough"], "sysfs");
    EXPECT_EQ(state["powerProfile"], "power-profiles-daemon");
}

// Two hosts started together, as one person twice or two users (each with a
// state folder of their own) would: exactly one changes the machine, the other
// is refused with one line naming it, and the backlight ends where it began.
class TwoHostsAtOnce : public ThisMachineRun, public ::testing::WithParamInterface<const char *> {};

TEST_P(TwoHostsAtOnce, ExactlyOneRunsAndTheMachineIsPutBack) {
    bus_mock::Service daemon("net.hadess.PowerProfiles", {"-t", "power_profiles_daemon"},
                             ::testing::TempDir());
    const std::string second = folder_ + GetParam();
    std::string script;
    for (const std::string &host : {std::string("a"), std::string("b")}) {
        const std::string state = host == "a" ? folder_ + "state" : second;
        script += "(XDG_STATE_HOME=" + state + " " + HOST_PATH +
                  " --this-machine -Mbattery -Ed --yes --duration 5 --time-scale 600 </dev/null "
                  ">/dev/null 2>" +
                  folder_ + host + ".errors; echo $? >" + folder_ + host + ".code) & ";
    }
    script += "wait; cat /sys/class/backlight/intel_backlight/brightness >" + folder_ + "level";
    std::system(("ASAN_OPTIONS=\"$ASAN_OPTIONS:verify_asan_link_order=0\" umockdev-run -d " +
                 std::string(kTestbed) + " -- sh -c '" + script + "'")
                    .c_str());
    const std::string codes = read("a.code") + " " + read("b.code");
    const std::string errors = read("a.errors") + read("b.errors");
    EXPECT_TRUE(codes == "1 2" || codes == "2 1") << codes << "\n" << errors;
    EXPECT_NE(errors.find("another battery_host (process "), std::string::npos) << errors;
    EXPECT_NE(errors.find(") is running an extended test on this machine"), std::string::npos);
    EXPECT_EQ(read("level"), kFoundLevel) << errors;
}

INSTANTIATE_TEST_SUITE_P(StateFolders, TwoHostsAtOnce, ::testing::Values("state", "other-state"),
                         [](const auto &info) { return testName(info.param); });

struct JournalRow {
    const char *name;
    const char *journal;
    bool readOnlyState; // the state folder mounted read-only
    const char *level;  // the backlight after the start
    const char *says;
};

// What a start does with a journal a dead run left: replayed once, and only
// values the device can take; one that cannot be removed is not replayed.
const JournalRow kJournalRows[] = {
    {"replayed and removed", R"({"backlight":{"device":"intel_backlight","raw":300},"pid":999999})",
     false, "300", "backlight intel_backlight put back to 300 of 937 (was 500)"},
    {"read only state folder",
     R"({"backlight":{"device":"intel_backlight","raw":300},"pid":999999})", true, kFoundLevel,
     "cannot be removed (Read-only file system); it is not replayed"},
    {"level beyond the maximum",
     R"({"backlight":{"device":"intel_backlight","raw":5000},"pid":999999})", false, kFoundLevel,
     "the journal's level 5000 is beyond intel_backlight's 937; its level is left as it is"},
    {"profile the daemon does not offer",
     R"({"profile":{"source":"power-profiles-daemon","name":"turbo"},"pid":999999})", false,
     kFoundLevel, "could not put back power profile turbo"},
};

class JournalLeft : public ThisMachineRun, public ::testing::WithParamInterface<JournalRow> {};

TEST_P(JournalLeft, IsReplayedAtMostOnceAndOnlyWithValuesTheDeviceTakes) {
    const JournalRow &row = GetParam();
    // A read-only mount of its own needs a mount namespace (root, or a CI that allows one).
    if (row.readOnlyState && std::system("unshare -m true 2>/dev/null") != 0) {
        GTEST_SKIP() << "no mount namespace here";
    }
    bus_mock::Service daemon("net.hadess.PowerProfiles", {"-t", "power_profiles_daemon"},
                             ::testing::TempDir());
    const std::string folder = folder_ + "state/battery_host";
    std::system(("mkdir -p " + folder).c_str());
    std::ofstream(journal()) << row.journal;
    std::string script;
    for (const std::string start : {"1", "2"}) {
        std::string line = std::string(HOST_PATH) +
                           " --this-machine -Mbattery --list >/dev/null 2>" + folder_ + start;
        if (row.readOnlyState) {
            line = "unshare -m sh -c \"mount --bind " + folder + " " + folder +
                   " && mount -o remount,bind,ro " + folder + " && " + line + "\"";
        }
        script += line + "; ";
    }
    script += "cat /sys/class/backlight/intel_backlight/brightness >" + folder_ + "level";
    std::system(("ASAN_OPTIONS=\"$ASAN_OPTIONS:verify_asan_link_order=0\" umockdev-run -d " +
                 std::string(kTestbed) + " -- sh -c '" + script + "'")
                    .c_str());
    EXPECT_EQ(read("level"), row.level) << read("1");
    EXPECT_NE(read("1").find(row.says), std::string::npos) << read("1");
    // The second start finds nothing left to replay, or says again why not.
    EXPECT_EQ(read("2").find(row.readOnlyState ? "put back to" : "restore journal"),
              std::string::npos)
        << read("2");
    EXPECT_EQ(journalLeft(), row.readOnlyState);
}

INSTANTIATE_TEST_SUITE_P(Journals, JournalLeft, ::testing::ValuesIn(kJournalRows),
                         NameBy<&JournalRow::name>());

// A power-profiles daemon that stops answering mid-run (SIGSTOP): each call
// gives up after a few seconds, the run ends, and the backlight is put back.
TEST_F(ThisMachineRun, AFrozenProfileDaemonCostsSecondsNotMinutes) {
    bus_mock::Service daemon("net.hadess.PowerProfiles", {"-t", "power_profiles_daemon"},
                             ::testing::TempDir());
    const std::string script =
        "(sleep 0.3; kill -STOP " + std::to_string(daemon.pid()) + ") & timeout 90 " + HOST_PATH +
        " --this-machine -Mbattery -Ed --yes --duration 5 --time-scale 600 </dev/null >/dev/null "
        "2>" +
        folder_ + "errors; echo $? >" + folder_ + "code; cat " +
        "/sys/class/backlight/intel_backlight/brightness >" + folder_ + "level";
    std::system(("ASAN_OPTIONS=\"$ASAN_OPTIONS:verify_asan_link_order=0\" umockdev-run -d " +
                 std::string(kTestbed) + " -- sh -c '" + script + "'")
                    .c_str());
    EXPECT_NE(read("code"), "124") << "still waiting on the daemon after 90 s: " << read("errors");
    EXPECT_EQ(read("level"), kFoundLevel) << read("errors");
    EXPECT_FALSE(journalLeft());
}

// The backlight goes away a second into the sweep and comes back two seconds
// later, while a second one the run never took stays: the run changes only
// the one it took, and puts it back to its exact level when it is back.
TEST_F(ThisMachineRun, ABacklightThatGoesAndComesBackIsPutBackAndNoOtherIsTouched) {
    bus_mock::Service daemon("net.hadess.PowerProfiles", {"-t", "power_profiles_daemon"},
                             ::testing::TempDir());
    const std::string script =
        "other=$UMOCKDEV_DIR/sys/devices/zz_backlight; mkdir -p $other && echo 440 "
        ">$other/brightness && echo 1000 >$other/max_brightness && echo raw >$other/type && "
        "ln -s ../../devices/zz_backlight $UMOCKDEV_DIR/sys/class/backlight/zz_backlight; " +
        std::string(HOST_PATH) +
        " --this-machine -Mbattery -Ed --yes --duration 5 --time-scale 60 </dev/null >/dev/null "
        "2>" +
        folder_ +
        "errors & pid=$!; sleep 1; "
        "mv $UMOCKDEV_DIR/sys/class/backlight/intel_backlight $UMOCKDEV_DIR/away; sleep 2; "
        "mv $UMOCKDEV_DIR/away $UMOCKDEV_DIR/sys/class/backlight/intel_backlight; wait $pid; "
        "cat /sys/class/backlight/intel_backlight/brightness >" +
        folder_ +
        "level; "
        "cat $other/brightness >" +
        folder_ + "other";
    std::system(("ASAN_OPTIONS=\"$ASAN_OPTIONS:verify_asan_link_order=0\" umockdev-run -d " +
                 std::string(kTestbed) + " -- sh -c '" + script + "'")
                    .c_str());
    EXPECT_EQ(read("level"), kFoundLevel) << read("errors");
    EXPECT_EQ(read("other"), "440") << "a backlight the run never took is left alone";
}

// A firmware profile whose name is not UTF-8 (no daemon runs): the journal
// holds it as well as JSON can, the run ends by itself, and nothing of the
// journal is left behind.
TEST_F(ThisMachineRun, AProfileNameThatIsNotTextEndsNoRun) {
    const std::string script =
        "acpi=$UMOCKDEV_DIR/sys/firmware/acpi; mkdir -p $acpi && printf \"\\377quiet\\n\" "
        ">$acpi/platform_profile && echo \"balanced performance\" "
        ">$acpi/platform_profile_choices; " +
        std::string(HOST_PATH) +
        " --this-machine -Mbattery -Ed --yes --duration 5 --time-scale 600 </dev/null >/dev/null "
        "2>" +
        folder_ + "errors; echo $? >" + folder_ + "code; ls -A " + folder_ +
        "state/battery_host >" + folder_ + "left";
    std::system(("ASAN_OPTIONS=\"$ASAN_OPTIONS:verify_asan_link_order=0\" umockdev-run -d " +
                 std::string(kTestbed) + " -- sh -c '" + script + "'")
                    .c_str());
    EXPECT_NE(read("code"), "134") << read("errors");
    EXPECT_EQ(read("errors").find("terminate"), std::string::npos) << read("errors");
    EXPECT_EQ(read("left"), "");
}
