#include <gtest/gtest.h>

#include "battery_module/module_interface.h"
#include "battery_module/product_version.h"
#include "contract/loaded_module.h"
#include "emulator/notebook.h"

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
