#include <gtest/gtest.h>

#include "bus_mock.h"

namespace {
// The private bus stands for the system bus before any test connects.
class PrivateBus : public ::testing::Environment {
public:
    void SetUp() override { ASSERT_TRUE(bus_mock::startPrivateSystemBus()); }
};

[[maybe_unused]] ::testing::Environment *const kPrivateBus =
    ::testing::AddGlobalTestEnvironment(new PrivateBus);
} // namespace
