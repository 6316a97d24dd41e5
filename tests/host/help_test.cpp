#include <gtest/gtest.h>

#include <string>

#include "support/command_run.h"

namespace {

using HostRun = CommandOutcome;

HostRun runHost(const std::string &arguments) {
    return runCommand(std::string(HOST_PATH) + " " + arguments + " 2>&1");
}

// The host's options come first; the module's help text, or word that the
// module gave none, comes after them, whichever path this build assembles.
TEST(HostHelp, HostOptionsThenTheModulesHelpForThePath) {
    for (const char *scenario : {"default"}) {
        const HostRun run = runHost(std::string("--scenario ") + scenario + " --help");
        SCOPED_TRACE(scenario);
        const size_t hostOptions = run.output.find("--scenario");
        ASSERT_NE(hostOptions, std::string::npos) << run.output;
        const size_t moduleHelp = run.output.find("Battery Module help:\n");
        if (moduleHelp != std::string::npos) {
            EXPECT_GT(moduleHelp, hostOptions);
            EXPECT_EQ(run.output.compare(run.output.size() - 2, 2, "\n\n"), 0);
            EXPECT_EQ(run.exitCode, 0);
        } else {
            EXPECT_NE(run.output.find("no module help", hostOptions), std::string::npos)
                << run.output;
            EXPECT_EQ(run.exitCode, 0);
        }
        EXPECT_EQ(run.output.find("battery module 4."), std::string::npos)
            << "help is not a version query";
    }
}

TEST(HostHelp, AModuleThatCannotBeLoadedStillGetsTheHostsHelp) {
    const HostRun help = runHost("--module /nonexistent/battery_module.so --help");
    EXPECT_NE(help.output.find("--scenario"), std::string::npos);
    EXPECT_EQ(help.exitCode, 0);
    const HostRun list = runHost("--module /nonexistent/battery_module.so --list");
    EXPECT_EQ(list.exitCode, 69);
}

} // namespace
