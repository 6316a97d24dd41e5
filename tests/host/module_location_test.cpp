#include <gtest/gtest.h>

#include <stdlib.h>

#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "support/command_run.h"
#include "support/test_name.h"

// The host finds its module from where its own file is, however it was
// started, in the build tree and in an installed tree alike.

namespace {

std::string freshFolder(const std::string &name) {
    std::string pattern = ::testing::TempDir() + "module-location-" + name + "-XXXXXX";
    return mkdtemp(&pattern[0]) != nullptr ? pattern : "";
}

std::string hostFolder() {
    const std::string host = HOST_PATH;
    return host.substr(0, host.find_last_of('/'));
}

std::string textOf(const std::string &path) {
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

// One `cmake --install` of this build into a prefix of the suite's own.
class InstalledHost : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        prefix_ = freshFolder("prefix");
        install_ = runCommand(std::string(CMAKE_COMMAND) + " --install " + BUILD_DIR +
                              " --prefix " + prefix_ + " 2>&1");
    }
    void SetUp() override { ASSERT_EQ(install_.exitCode, 0) << install_.output; }
    static std::string prefix_;
    static CommandOutcome install_;
};
std::string InstalledHost::prefix_;
CommandOutcome InstalledHost::install_;

// Each way of starting the host: a shell line run in a fresh folder ($DIR),
// with $HOST the host of the build tree and $PREFIX an installed tree.
struct StartRow {
    const char *how;
    const char *command;
};

class HostStarted : public InstalledHost, public ::testing::WithParamInterface<StartRow> {};

} // namespace

TEST_P(HostStarted, FindsItsModuleAndRunsTheScenario) {
    const std::string folder = freshFolder("start");
    const std::string command = "cd " + folder + " && DIR=" + folder + " HOST=" + HOST_PATH +
                                " HOSTDIR=" + hostFolder() + " PREFIX=" + prefix_ +
                                " timeout 60 sh -c '" + GetParam().command +
                                " --scenario worn -Mbattery -Q' 2>&1 </dev/null";
    const CommandOutcome outcome = runCommand(command);
    EXPECT_EQ(outcome.exitCode, 1) << command << "\n" << outcome.output;
    EXPECT_NE(outcome.output.find("holds less charge than expected"), std::string::npos)
        << outcome.output;
}

INSTANTIATE_TEST_SUITE_P(
    Table, HostStarted,
    ::testing::Values(
        StartRow{"through a symlink in another folder", "ln -s $HOST bh && cd / && $DIR/bh"},
        StartRow{"through a chain of symlinks", "ln -s $HOST one && ln -s $DIR/one two && ./two"},
        StartRow{"from PATH in another folder", "export PATH=$HOSTDIR:$PATH; battery_host"},
        StartRow{"installed, by its path", "cd / && $PREFIX/bin/battery_host"},
        StartRow{"installed, through a symlink",
                 "ln -s $PREFIX/bin/battery_host bh && cd / && $DIR/bh"},
        StartRow{"installed, from PATH", "export PATH=$PREFIX/bin:$PATH; battery_host"}),
    NameBy<&StartRow::how>());

TEST_F(InstalledHost, TheLayoutHoldsTheProgramItsLibrariesAndDocsOnly) {
    for (const char *file :
         {"bin/battery_host", "lib/battery_host/battery_module.so", "lib/battery_host/hostlib.so",
          "lib/battery_host/portlib.so", "lib/battery_host/libplatform_layer.so",
          "lib/battery_host/libemulated_notebook.so", "share/man/man1/battery_host.1.gz",
          "share/bash-completion/completions/battery_host", "share/doc/battery-host/README.md",
          "share/doc/battery-host/copyright"}) {
        EXPECT_EQ(access((prefix_ + "/" + file).c_str(), R_OK), 0) << file;
    }
    // Nothing else: no test program, no static library, no header.
    const CommandOutcome files = runCommand("cd " + prefix_ + " && find . -type f | sort");
    EXPECT_EQ(files.output, "./bin/battery_host\n"
                            "./lib/battery_host/battery_module.so\n"
                            "./lib/battery_host/hostlib.so\n"
                            "./lib/battery_host/libemulated_notebook.so\n"
                            "./lib/battery_host/libplatform_layer.so\n"
                            "./lib/battery_host/portlib.so\n"
                            "./share/bash-completion/completions/battery_host\n"
                            "./share/doc/battery-host/README.md\n"
                            "./share/doc/battery-host/changelog.gz\n"
                            "./share/doc/battery-host/copyright\n"
                            "./share/man/man1/battery_host.1.gz\n");
    // Every search path is relative to the file that carries it.
    const CommandOutcome paths = runCommand(
        "cd " + prefix_ + " && for f in bin/* lib/battery_host/*; do readelf -d $f; done");
    EXPECT_NE(paths.output.find("[$ORIGIN/../lib/battery_host]"), std::string::npos)
        << paths.output;
    EXPECT_EQ(std::regex_search(paths.output, std::regex(R"((RPATH|RUNPATH).*\[/)")), false)
        << paths.output;
}

TEST_F(InstalledHost, WithoutTheModuleTheErrorNamesEveryPlaceLookedAt) {
    const std::string copy = freshFolder("no-module");
    runCommand("cp -a " + prefix_ + "/. " + copy + " && rm " + copy +
               "/lib/battery_host/battery_module.so");
    const CommandOutcome outcome =
        runCommand("cd / && " + copy + "/bin/battery_host -Mbattery -Q 2>&1");
    EXPECT_EQ(outcome.exitCode, 69) << outcome.output;
    EXPECT_NE(outcome.output.find(copy + "/bin/battery_module.so, " + copy +
                                  "/lib/battery_host/battery_module.so"),
              std::string::npos)
        << outcome.output;
    EXPECT_NE(outcome.output.find("--module"), std::string::npos) << outcome.output;
}

// The manual page and the completion know every option the host offers.
TEST(HostDocumentation, ManualPageAndCompletionNameEveryOption) {
    std::string help = runCommand(std::string(HOST_PATH) + " --help 2>&1").output;
    help = help.substr(0, help.find("The module's help:"));
    const std::string manual = textOf(SOURCE_DIR "/docs/battery_host.1.scd");
    const std::string completion = textOf(SOURCE_DIR "/packaging/battery_host.bash");
    ASSERT_FALSE(manual.empty());
    ASSERT_FALSE(completion.empty());
    const std::regex option(R"(--[a-z][a-z-]*)");
    std::set<std::string> options;
    for (std::sregex_iterator it(help.begin(), help.end(), option), end; it != end; ++it)
        options.insert(it->str());
    EXPECT_GT(options.size(), 15u) << help;
    for (const std::string &name : options) {
        EXPECT_NE(manual.find("*" + name + "*"), std::string::npos) << name << " in the manual";
        EXPECT_NE(completion.find(name), std::string::npos) << name << " in the completion";
    }
}

namespace {
struct CompletionRow {
    const char *line; // the words typed so far; the last one is being completed
    const char *offered;
    const char *notOffered;
};
class HostCompletion : public ::testing::TestWithParam<CompletionRow> {};
} // namespace

TEST_P(HostCompletion, OffersWhatTheWordCanBe) {
    const std::string script =
        std::string("source ") + SOURCE_DIR + "/packaging/battery_host.bash; COMP_WORDS=(" +
        GetParam().line + "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); " +
        "_battery_host battery_host \"${COMP_WORDS[COMP_CWORD]}\" " +
        "\"${COMP_WORDS[COMP_CWORD - 1]}\"; printf \"%s\\n\" \"${COMPREPLY[@]}\"";
    const std::string folder = freshFolder("completion");
    const CommandOutcome outcome = runCommand("cd " + folder + " && PATH=" + hostFolder() +
                                              ":$PATH bash -c '" + script + "' 2>&1");
    const std::string offered = "\n" + outcome.output;
    EXPECT_EQ(outcome.exitCode, 0) << outcome.output;
    std::istringstream expected(GetParam().offered);
    for (std::string word; expected >> word;)
        EXPECT_NE(offered.find("\n" + word + "\n"), std::string::npos) << word << offered;
    std::istringstream unexpected(GetParam().notOffered);
    for (std::string word; unexpected >> word;)
        EXPECT_EQ(offered.find("\n" + word + "\n"), std::string::npos) << word << offered;
}

INSTANTIATE_TEST_SUITE_P(
    Table, HostCompletion,
    ::testing::Values(CompletionRow{"battery_host --sc", "--scenario", "--json"},
                      CompletionRow{"battery_host --scenario w", "worn warm-no-flag", "default"},
                      CompletionRow{"battery_host --scenario generic-t", "generic-two-batteries",
                                    "generic-worn"},
                      CompletionRow{"battery_host -Mbattery --quick = ", "h t", "d"},
                      CompletionRow{"battery_host -Mbattery -E", "-Ed -Ec", "-Qh"},
                      CompletionRow{"battery_host -Mbattery -Q b", "bat", "0"}),
    NameBy<&CompletionRow::line>());
