#include <gtest/gtest.h>

#include "support/umockdev_testbed.h"

// Tests of this machine see testbeds in place of /sys.
int main(int argc, char **argv) {
    runUnderUmockdev(argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
