#include "platform/power_manager_windows.h"

#include <windows.h>
#include <winioctl.h>

#include <ntddvdeo.h>
#include <powrprof.h>

#include <cstring>
#include <new>

#include "wide_text.h"

namespace {

constexpr DWORD kReadWrite = 0xC0000000u; // GENERIC_READ | GENERIC_WRITE
constexpr DWORD kShareReadWrite = 3;      // FILE_SHARE_READ | FILE_SHARE_WRITE
constexpr DWORD kOpenExisting = 3;        // OPEN_EXISTING
constexpr DWORD kNormalAttributes = 0x80; // FILE_ATTRIBUTE_NORMAL
constexpr UCHAR kPolicyAc = 1;            // ask for the AC level
constexpr UCHAR kPolicyBoth = 3;          // set AC and battery levels alike
constexpr BYTE kNoSystemBattery = 128;
constexpr BYTE kUnknownBatteryStatus = 255;

static_assert(sizeof(DISPLAY_BRIGHTNESS) == 3, "DISPLAY_BRIGHTNESS is three bytes");
static_assert(sizeof(SYSTEM_POWER_STATUS) == 12, "SYSTEM_POWER_STATUS is twelve bytes");
static_assert(IOCTL_VIDEO_QUERY_DISPLAY_BRIGHTNESS == 0x230498, "brightness query");
static_assert(IOCTL_VIDEO_SET_DISPLAY_BRIGHTNESS == 0x23049C, "brightness change");

// Power scheme identifiers, by the numbers of the interface.
const GUID kSchemes[] = {
    {0x8c5e7fda, 0xe8bf, 0x4a96, {0x9a, 0x85, 0xa6, 0xe2, 0x3a, 0x8c, 0x63, 0x5c}}, // high perf.
    {0x381b4222, 0xf694, 0x41f0, {0x96, 0x85, 0xff, 0x5b, 0xb2, 0x60, 0xdf, 0x2e}}, // balanced
    {0xa1841308, 0x3541, 0x4fab, {0xbc, 0x81, 0xf7, 0x15, 0x56, 0xf2, 0x0b, 0x4a}}, // power saver
};

// The display device, closed on every road out.
class DisplayDevice {
public:
    DisplayDevice()
        : handle_(CreateFileW(WIDE_TEXT("\\\\.\\LCD"), kReadWrite, kShareReadWrite, nullptr,
                              kOpenExisting, kNormalAttributes, nullptr)) {}
    ~DisplayDevice() {
        if (isOpen()) CloseHandle(handle_);
    }
    DisplayDevice(const DisplayDevice &) = delete;
    DisplayDevice &operator=(const DisplayDevice &) = delete;

    bool isOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
    bool control(DWORD code, void *input, DWORD inputSize, void *output, DWORD outputSize) {
        DWORD returned = 0;
        return DeviceIoControl(handle_, code, input, inputSize, output, outputSize, &returned,
                               nullptr) != FALSE;
    }

private:
    HANDLE handle_;
};

} // namespace

uint32_t PowerManagerWindows::getBrightness(uint32_t &level) {
    DisplayDevice display;
    if (!display.isOpen()) return 1;
    DISPLAY_BRIGHTNESS brightness = {kPolicyAc, 0, 0};
    if (!display.control(IOCTL_VIDEO_QUERY_DISPLAY_BRIGHTNESS, nullptr, 0, &brightness,
                         sizeof brightness)) {
        return 1;
    }
    level = brightness.ucACBrightness;
    return 0;
}

uint32_t PowerManagerWindows::setBrightness(uint8_t level) {
    DisplayDevice display;
    if (!display.isOpen()) return 1;
    DISPLAY_BRIGHTNESS brightness = {kPolicyBoth, level, level};
    return display.control(IOCTL_VIDEO_SET_DISPLAY_BRIGHTNESS, &brightness, sizeof brightness,
                           nullptr, 0)
               ? 0
               : 1;
}

// A scheme that cannot be read counts as one of the user's own: a test
// then puts back the balanced scheme, never a guess of ours.
uint32_t PowerManagerWindows::getPowerScheme() {
    GUID *active = nullptr;
    if (PowerGetActiveScheme(nullptr, &active) != ERROR_SUCCESS || active == nullptr) {
        return kOtherScheme;
    }
    uint32_t scheme = kOtherScheme;
    for (uint32_t number = 0; number < 3; ++number) {
        if (std::memcmp(active, &kSchemes[number], sizeof(GUID)) == 0) {
            scheme = number;
            break;
        }
    }
    LocalFree(active);
    return scheme;
}

void PowerManagerWindows::setPowerScheme(uint32_t scheme) {
    if (scheme > kPowerSaver) return;
    PowerSetActiveScheme(nullptr, &kSchemes[scheme]);
}

// Without a power status the line counts as off and the battery as absent:
// no charge test can start on a machine that cannot tell.
bool PowerManagerWindows::isOnAcPower() {
    SYSTEM_POWER_STATUS status = {};
    return GetSystemPowerStatus(&status) != FALSE && status.ACLineStatus == 1;
}

bool PowerManagerWindows::isBatteryPresent() {
    SYSTEM_POWER_STATUS status = {};
    return GetSystemPowerStatus(&status) != FALSE && status.BatteryFlag != kNoSystemBattery &&
           status.BatteryFlag != kUnknownBatteryStatus;
}

PowerManager *newPowerManager() {
    return new (std::nothrow) PowerManagerWindows();
}
