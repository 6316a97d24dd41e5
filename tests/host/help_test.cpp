#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "support/command_run.h"

namespace {

using HostRun = CommandOutcome;

HostRun runHost(const std::string &arguments) {
    return runCommand(std::string(HOST_PATH) + " " + arguments + " 2>&1");
}

// The host's options come first and the module's help text of the path the
// scenario's machine takes after them.
TEST(HostHelp, HostOptionsThenTheModulesHelpForThePath) {
    for (const auto &[scenario, pathLine] :
         {std::pair<const char *, const char *>{"default", "t, battery-temperature-test"},
          {"generic", "d, discharge-test"}}) {
        const HostRun run = runHost(std::string("--scenario ") + scenario + " --help");
        SCOPED_TRACE(scenario);
        EXPECT_EQ(run.exitCode, 0);
        const size_t hostOptions = run.output.find("--scenario");
        const size_t moduleHelp = run.output.find("Battery Module help:\n");
        ASSERT_NE(hostOptions, std::string::npos) << run.output;
        ASSERT_NE(moduleHelp, std::string::npos) << run.output;
        EXPECT_GT(moduleHelp, hostOptions);
        EXPECT_NE(run.output.find(pathLine, moduleHelp), std::string::npos) << run.output;
        EXPECT_EQ(run.output.compare(run.output.size() - 2, 2, "\n\n"), 0);
        EXPECT_EQ(run.output.find("battery module 4."), std::string::npos)
            << "help is not a version query";
    }
}

TEST(HostHelp, AModuleThatCannotBeLoadedStillGetsTheHostsHelp) {
    const HostRun help = runHost("--module /nonexistent/battery_module.so --help");
    EXPECT_NE(help.output.find("--scenario"), std::string::npos);
    EXPECT_NE(help.output.find("(no module help: "), std::string::npos) << help.output;
    EXPECT_EQ(help.exitCode, 0);
    const HostRun list = runHost("--module /nonexistent/battery_module.so --list");
    EXPECT_EQ(list.exitCode, 69);
}

} // namespace
