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

TEST(Exports, ReleaseWithoutAnInstanceDoesNothing) {
    LoadedModule module;
    ASSERT_TRUE(module.ok());
    module.release();
    module.release();
    SUCCEED();
}

TEST(Exports, AMachineWithoutBatteryServicesGivesNoInterfaceAndNoCrash) {
    ASSERT_TRUE(emulator::Notebook::instance().load("default").ok);
    LoadedModule module;
    ASSERT_TRUE(module.ok());
    ModuleInterface *first = module.getInterface();
    EXPECT_EQ(module.getInterface(), first);
    module.release();
    module.release();
}
