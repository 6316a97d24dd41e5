#include "hostlib/hostlib.h"

namespace {

// Lists no device yet; opening always fails.
class SetupDeviceScanner : public DeviceScanner {
public:
    uint32_t enumerateDevices(const DeviceScanFilter &, DeviceMap &) override { return 0; }
    uint32_t openDevice(const std::string &, HANDLE *) override { return 1; }
    void closeDevice(HANDLE *) override {}
};

} // namespace

extern "C" HOSTLIB_API DeviceScanner *get_device_scanner() { return new SetupDeviceScanner(); }

extern "C" HOSTLIB_API void release_device_scanner(DeviceScanner *scanner) { delete scanner; }
