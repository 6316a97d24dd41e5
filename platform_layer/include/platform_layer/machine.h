#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform_layer/instrumentation_answer.h"
#include "win32_api.h"

// The one interface the Windows names of the platform layer answer from.
//
// The layer (kernel32, setupapi, cfgmgr32, advapi32, powrprof, ole32,
// oleaut32, the instrumentation client) keeps the Windows side: handles,
// record layouts, size protocols, GUIDs, COM objects. A Machine keeps the
// other side: what the devices, settings and services of one computer say.
// Two machines stand behind it, and neither knows the other:
//   - the emulated notebook (platform_layer/emulated), scenarios and faults;
//   - this machine (platform_layer/this_machine), the Linux computer the
//     process runs on.
// Every call is answered afresh; results are Windows error codes (0 success)
// unless said otherwise, COM results are HRESULT values.
namespace platform_layer {

// A device of the battery setup class, as SetupDiGetDeviceRegistryProperty
// shows it.
struct SetupDevice {
    std::string description;
    std::optional<std::string> driverKey; // under ...\Control\Class\, when it has one
};

// What GetSystemPowerStatus reports.
struct SystemPower {
    bool acOnLine = false;
    bool acLineUnknown = false; // the line status reads 255
    bool anyBattery = false;
    uint32_t batteryPercent = 255; // 255: unknown or no battery
};

// The power schemes Windows ships, and one a user made. The layer maps them
// to and from their GUIDs.
enum class PowerScheme { HighPerformance, Balanced, PowerSaver, Custom };

// Things the layer did that a machine may count for tests and benchmarks.
enum class LayerEvent {
    DeviceSetOpened,
    DeviceSetDestroyed,
    ComObjectMade,
    ComObjectReleased,
    DeviceTreeReenumerated,
    InstrumentationQueried,
};

class WIN32_API Machine {
public:
    virtual ~Machine();

    // --- Time: GetTickCount and Sleep.
    virtual uint32_t tickCount() = 0;
    virtual void sleep(uint32_t milliseconds) = 0;

    // --- Devices opened by path (CreateFile, DeviceIoControl, CloseHandle):
    // the battery device interfaces answer the battery class requests, and
    // the display "\\.\LCD" answers the brightness requests
    // (IOCTL_VIDEO_QUERY_SUPPORTED_BRIGHTNESS, _QUERY_DISPLAY_BRIGHTNESS,
    // _SET_DISPLAY_BRIGHTNESS). A machine without a controllable display
    // answers its open with ERROR_FILE_NOT_FOUND.
    virtual uint32_t openDevice(const std::string &path, void **handle) = 0;
    virtual uint32_t controlDevice(void *handle, uint32_t code, const void *input,
                                   uint32_t inputSize, void *output, uint32_t outputSize,
                                   uint32_t *returned) = 0;
    virtual bool closeDevice(void *handle) = 0;

    // --- Device setup and the registry.
    // The devices of the battery setup class (AC adapters and batteries).
    virtual std::vector<SetupDevice> batteryClassDevices() = 0;
    // Device paths of the battery device interfaces, one per battery.
    virtual std::vector<std::string> batteryInterfacePaths() = 0;
    // A REG_SZ value under HKEY_LOCAL_MACHINE; nothing when the key or the
    // value does not exist. Key paths and names compare without case.
    virtual std::optional<std::string> registryText(const std::string &keyPath,
                                                    const std::string &name) = 0;

    // --- Power: GetSystemPowerStatus, PowerGetActiveScheme,
    // PowerSetActiveScheme. A set is a change a test must put back; the
    // machine records or applies it.
    virtual uint32_t systemPower(SystemPower *power) = 0;
    virtual uint32_t activeScheme(PowerScheme *scheme) = 0;
    virtual uint32_t setActiveScheme(PowerScheme scheme) = 0;

    // --- COM on the calling thread and the instrumentation service.
    virtual int32_t comInitialize(uint32_t coInit) = 0;
    virtual void comUninitialize() = 0;
    virtual int32_t comInitializeSecurity() = 0;
    // Whether the thread can use COM objects at all.
    virtual bool comUsable() = 0;
    // True when this machine makes the named step fail ("CoCreateInstance",
    // "ConnectServer", "ExecQuery", "Get", ...).
    virtual bool comStepFails(const char *step) = 0;
    virtual bool knowsNamespace(const std::string &name) = 0;
    virtual InstrumentationAnswer query(const std::string &language, const std::string &wql) = 0;

    // --- The port library stand-in: one byte in or out of an I/O port,
    // 0 success. A real machine refuses every access.
    virtual uint32_t writePort(uint16_t port, uint8_t value) = 0;
    virtual uint32_t readPort(uint16_t port, uint8_t *value) = 0;

    // What the layer did, for a machine that counts it.
    virtual void note(LayerEvent) {}
};

// The machine the layer answers from now: the emulated notebook unless the
// process chose another.
WIN32_API Machine &currentMachine();
// Chooses the machine for every later call; null goes back to the emulated
// notebook. The machine must outlive its use.
WIN32_API void useMachine(Machine *machine);
WIN32_API Machine &emulatedNotebook();

} // namespace platform_layer
