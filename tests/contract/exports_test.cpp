#include <gtest/gtest.h>

#include "battery_module/module_interface.h"
#include "battery_module/product_version.h"
#include "contract/loaded_module.h"
#include "emulator/notebook.h"
#include "module_session.h"

TEST(Exports, VersionIsThereBeforeAnyInstanceAndAfterARelease) {
    LoadedModule module;
    ASSERT_TRUE(module.ok());
    ProductVersion *version = module.getVersion();
    ASSERT_NE(version, nullptr);
    EXPECT_EQ(version->getMajor(), 4u);
    EXPECT_EQ(version->getMinor(), 37u);
    EXPECT_EQ(version->getRevision(), 0u);
    EXPECT_EQ(version->getBuild(), 209u);
    module.getInterface();
    module.release();
    EXPECT_EQ(module.getVersion(), version);
    EXPECT_EQ(module.getVersion()->getBuild(), 209u);
}

// A release without an instance does nothing; a second get gives the same
// object and touches no hardware.
TEST(Exports, OneInstanceBetweenGetAndRelease) {
    ASSERT_TRUE(emulator::Notebook::instance().load("default").ok);
    LoadedModule module;
    ASSERT_TRUE(module.ok());
    module.release();
    module.release();
    const emulator::Counters &counters = emulator::Notebook::instance().counters();
    ModuleInterface *first = module.getInterface();
    ASSERT_NE(first, nullptr);
    const uint64_t ports = counters.portAccesses, requests = counters.batteryRequests;
    ASSERT_GT(ports, 0u) << "the first get assembles, asking the controller";
    EXPECT_EQ(module.getInterface(), first);
    EXPECT_EQ(counters.portAccesses, ports);
    EXPECT_EQ(counters.batteryRequests, requests);
}

// The host's session takes the one instance and gives it back when it ends:
// the next get assembles the module anew.
TEST(ModuleSession, ReleasesTheInterfaceItTookWhenItEnds) {
    ASSERT_TRUE(emulator::Notebook::instance().load("default").ok);
    LoadedModule module; // the same library, as the host's loader opens it again
    ASSERT_TRUE(module.ok());
    const emulator::Counters &counters = emulator::Notebook::instance().counters();
    {
        std::string error;
        const std::unique_ptr<ModuleSession> session =
            ModuleSession::open(BATTERY_MODULE_PATH, error);
        ASSERT_NE(session, nullptr) << error;
        ASSERT_NE(session->module(), nullptr);
        EXPECT_EQ(module.getInterface(), session->module());
        EXPECT_EQ(session->versionText(), "4.37.0.209");
    }
    const uint64_t ports = counters.portAccesses;
    ASSERT_NE(module.getInterface(), nullptr);
    EXPECT_GT(counters.portAccesses, ports) << "the session left its instance behind";
}

TEST(ModuleSession, AFileThatIsNoModuleIsOneLine) {
    std::string error;
    EXPECT_EQ(ModuleSession::open("/nonexistent/battery_module.so", error), nullptr);
    EXPECT_NE(error.find("battery_module.so"), std::string::npos) << error;
}
