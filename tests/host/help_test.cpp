#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <string>

namespace {

struct HostRun {
    std::string output;
    int exitCode = -1;
};

HostRun runHost(const std::string &arguments) {
    HostRun run;
    FILE *pipe = popen((std::string(HOST_PATH) + " " + arguments + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return run;
    char chunk[4096];
    for (size_t n; (n = std::fread(chunk, 1, sizeof(chunk), pipe)) > 0;)
        run.output.append(chunk, n);
    const int status = pclose(pipe);
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
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
