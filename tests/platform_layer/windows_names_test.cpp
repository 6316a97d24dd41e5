#include <gtest/gtest.h>

#include <ntddvdeo.h>
#include <powrprof.h>
#include <setupapi.h>
#include <windows.h>

#include <cstring>
#include <vector>

#include "emulator/notebook.h"

namespace {

const GUID kBattery = {
    0x72631E54, 0x78A4, 0x11D0, {0xBC, 0xF7, 0x00, 0xAA, 0x00, 0xB7, 0xB3, 0x2A}};

void install(const char *json) {
    const auto result = emulator::parseScenario(json, "test");
    ASSERT_TRUE(result.ok) << result.error;
    emulator::Notebook::instance().install(result.scenario);
}

constexpr const char *kTwoBatteries = R"({"name": "two", "batteries": [{"slot": 0}, {"slot": 1}]})";

} // namespace

TEST(PlatformLayer, RecordSizesAreThoseOf64BitWindows) {
    EXPECT_EQ(sizeof(GUID), 16u);
    EXPECT_EQ(sizeof(SYSTEM_POWER_STATUS), 12u);
    EXPECT_EQ(sizeof(SP_DEVINFO_DATA), 32u);
    EXPECT_EQ(sizeof(SP_DEVICE_INTERFACE_DATA), 32u);
    EXPECT_EQ(sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W), 8u);
    EXPECT_EQ(sizeof(DISPLAY_BRIGHTNESS), 3u);
    EXPECT_EQ(sizeof(WCHAR), 2u);
    EXPECT_EQ(sizeof(DWORD), 4u);
    EXPECT_EQ(sizeof(LONG), 4u);
}

TEST(PlatformLayer, ClassDevicesAndTheirDriverKeysFollowTheSizeProtocol) {
    install(kTwoBatteries);
    HDEVINFO set = SetupDiGetClassDevsA(&kBattery, nullptr, nullptr, 0);
    ASSERT_NE(set, INVALID_HANDLE_VALUE);
    SP_DEVINFO_DATA device = {};
    device.cbSize = sizeof device;
    std::vector<std::string> keys;
    for (DWORD index = 0; SetupDiEnumDeviceInfo(set, index, &device); ++index) {
        DWORD needed = 0;
        EXPECT_FALSE(SetupDiGetDeviceRegistryPropertyA(set, &device, SPDRP_DRIVER, nullptr, nullptr,
                                                       0, &needed));
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
        std::vector<BYTE> text(needed);
        ASSERT_TRUE(SetupDiGetDeviceRegistryPropertyA(set, &device, SPDRP_DRIVER, nullptr,
                                                      text.data(), needed, &needed));
        keys.emplace_back(reinterpret_cast<char *>(text.data()));
    }
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_MORE_ITEMS));
    ASSERT_EQ(keys.size(), 3u) << "the AC adapter and two batteries";
    EXPECT_EQ(keys[1], "{72631E54-78A4-11D0-BCF7-00AA00B7B32A}\\0001");
    device.cbSize = 8;
    EXPECT_FALSE(SetupDiEnumDeviceInfo(set, 0, &device));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_USER_BUFFER));
    EXPECT_EQ(emulator::Notebook::instance().registry().openSets, 1u);
    EXPECT_TRUE(SetupDiDestroyDeviceInfoList(set));
    EXPECT_FALSE(SetupDiDestroyDeviceInfoList(set)) << "destroyed once only";
    EXPECT_EQ(emulator::Notebook::instance().registry().openSets, 0u);
}

TEST(PlatformLayer, DriverVersionThroughTheRegistry) {
    install(R"({"name": "r", "os": {"batteryClassDevices": [
        {"driverKey": "{72631E54-78A4-11D0-BCF7-00AA00B7B32A}\\0000", "driverVersion": "1.2.3"},
        {"driverKey": "{72631E54-78A4-11D0-BCF7-00AA00B7B32A}\\0001"}, {}]}})");
    const char *root = "SYSTEM\\CurrentControlSet\\Control\\Class\\";
    const std::string versioned =
        std::string(root) + "{72631E54-78A4-11D0-BCF7-00AA00B7B32A}\\0000";
    const auto driverVersion = [](const std::string &key, char *buffer, DWORD &size) {
        return RegGetValueA(HKEY_LOCAL_MACHINE, key.c_str(), "DriverVersion", RRF_RT_REG_SZ,
                            nullptr, buffer, &size);
    };
    DWORD size = 0;
    ASSERT_EQ(driverVersion(versioned, nullptr, size), ERROR_SUCCESS);
    EXPECT_EQ(size, 6u);
    char small[3];
    DWORD smallSize = sizeof small;
    EXPECT_EQ(driverVersion(versioned, small, smallSize), ERROR_MORE_DATA);
    EXPECT_EQ(smallSize, 6u);
    char text[16];
    DWORD textSize = sizeof text;
    ASSERT_EQ(driverVersion(versioned, text, textSize), ERROR_SUCCESS);
    EXPECT_STREQ(text, "1.2.3");
    const std::string unversioned =
        std::string(root) + "{72631E54-78A4-11D0-BCF7-00AA00B7B32A}\\0001";
    EXPECT_EQ(driverVersion(unversioned, nullptr, size), ERROR_FILE_NOT_FOUND);

    HDEVINFO set = SetupDiGetClassDevsA(&kBattery, nullptr, nullptr, 0);
    SP_DEVINFO_DATA device = {};
    device.cbSize = sizeof device;
    ASSERT_TRUE(SetupDiEnumDeviceInfo(set, 2, &device));
    DWORD needed = 0;
    EXPECT_FALSE(SetupDiGetDeviceRegistryPropertyA(set, &device, SPDRP_DRIVER, nullptr, nullptr, 0,
                                                   &needed));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_DATA)) << "no driver key";
    SetupDiDestroyDeviceInfoList(set);
}

TEST(PlatformLayer, BatteryInterfacesGiveTheirPaths) {
    install(kTwoBatteries);
    HDEVINFO set =
        SetupDiGetClassDevsW(&kBattery, nullptr, nullptr, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE);
    SP_DEVICE_INTERFACE_DATA data = {};
    data.cbSize = sizeof data;
    std::vector<std::string> paths;
    for (DWORD index = 0; SetupDiEnumDeviceInterfaces(set, nullptr, &kBattery, index, &data);
         ++index) {
        DWORD needed = 0;
        EXPECT_FALSE(SetupDiGetDeviceInterfaceDetailW(set, &data, nullptr, 0, &needed, nullptr));
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
        std::vector<char> buffer(needed);
        auto *detail = reinterpret_cast<PSP_DEVICE_INTERFACE_DETAIL_DATA_W>(buffer.data());
        detail->cbSize = sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W);
        ASSERT_TRUE(SetupDiGetDeviceInterfaceDetailW(set, &data, detail, needed, nullptr, nullptr));
        paths.emplace_back(detail->DevicePath, detail->DevicePath + (needed - 4) / 2 - 1);
    }
    SetupDiDestroyDeviceInfoList(set);
    ASSERT_EQ(paths.size(), 2u);
    EXPECT_EQ(paths[1], "\\\\?\\ACPI#PNP0C0A#2#{72631e54-78a4-11d0-bcf7-00aa00b7b32a}");
}

TEST(PlatformLayer, HandlesOpenControlAndCloseOnce) {
    install(kTwoBatteries);
    const auto &devices = emulator::Notebook::instance().registry();
    EXPECT_EQ(CreateFileA("\\\\.\\NOPE", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr),
              INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    HANDLE display = CreateFileW(u"\\\\.\\lcd", GENERIC_READ | GENERIC_WRITE, 3, nullptr,
                                 OPEN_EXISTING, 0x80, nullptr);
    ASSERT_NE(display, INVALID_HANDLE_VALUE);
    EXPECT_EQ(devices.openHandles, 1u);
    DISPLAY_BRIGHTNESS brightness = {DISPLAYPOLICY_BOTH, 101, 101};
    DWORD returned = 0;
    EXPECT_FALSE(DeviceIoControl(display, IOCTL_VIDEO_SET_DISPLAY_BRIGHTNESS, &brightness,
                                 sizeof brightness, nullptr, 0, &returned, nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER)) << "levels run 0-100";
    EXPECT_TRUE(CloseHandle(display));
    EXPECT_FALSE(CloseHandle(display));
    EXPECT_EQ(devices.openHandles, 0u);
}

TEST(PlatformLayer, PowerStatusFlagsFollowTheBatteries) {
    struct Row {
        const char *json;
        BYTE line, flag, percent;
    };
    const Row rows[] = {
        {R"({"name": "a", "batteries": [{"chargePercent": 80}], "power": {"ac": true}})", 1, 1 | 8,
         80},
        {R"({"name": "b", "batteries": [{"chargePercent": 20}, {"slot": 1, "chargePercent": 41}]})",
         0, 2, 30},
        {R"({"name": "c", "batteries": [{"chargePercent": 3}]})", 0, 4, 3},
        {R"({"name": "d", "batteries": [{"chargePercent": 100}], "power": {"ac": true}})", 1, 1,
         100},
        {R"({"name": "e"})", 0, 128, 255},
    };
    for (const Row &row : rows) {
        install(row.json);
        SYSTEM_POWER_STATUS status = {};
        ASSERT_TRUE(GetSystemPowerStatus(&status)) << row.json;
        EXPECT_EQ(status.ACLineStatus, row.line) << row.json;
        EXPECT_EQ(status.BatteryFlag, row.flag) << row.json;
        EXPECT_EQ(status.BatteryLifePercent, row.percent) << row.json;
    }
}
