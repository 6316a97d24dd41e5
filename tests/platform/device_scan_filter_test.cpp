#include <gtest/gtest.h>

#include <cstring>

#include "platform/device_scan_filter.h"

namespace {

TEST(DeviceScanFilter, BatteryClassGuidIsTheWindowsBatteryClass) {
    // {72631E54-78A4-11D0-BCF7-00AA00B7B32A}, field by field as Windows lays it out.
    const unsigned char bytes[16] = {0x54, 0x1E, 0x63, 0x72, 0xA4, 0x78, 0xD0, 0x11,
                                     0xBC, 0xF7, 0x00, 0xAA, 0x00, 0xB7, 0xB3, 0x2A};
    EXPECT_EQ(std::memcmp(&kBatteryClassGuid, bytes, sizeof(bytes)), 0);
}

TEST(DeviceScanFilter, ConstructorCopiesTheFirstGuidThenTheSecondInFieldOrder) {
    GUID first = kBatteryClassGuid;
    GUID second = kBatteryClassGuid;
    second.Data1 = 0x01020304;
    WinDeviceScanFilter filter(first, second);
    first.Data1 = 0; // copies, not references
    second.Data1 = 0;

    EXPECT_EQ(filter.firstGuid, kBatteryClassGuid);
    EXPECT_EQ(filter.secondGuid.Data1, 0x01020304u);
    // The closed scanner reads the two fields directly: first, then second, adjacent.
    EXPECT_EQ(reinterpret_cast<const char *>(&filter.secondGuid) -
                  reinterpret_cast<const char *>(&filter.firstGuid),
              16);
    const DeviceScanFilter &base = filter;
    EXPECT_EQ(dynamic_cast<const WinDeviceScanFilter *>(&base), &filter);
}

} // namespace
