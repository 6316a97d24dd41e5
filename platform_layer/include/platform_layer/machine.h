#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform_layer/battery_facts.h"
#include "platform_layer/power_scheme.h"
#include "platform_layer/protocol_faults.h"
#include "win32_api.h"

// The one interface the Windows names of the platform layer answer from.
//
// The layer (kernel32, setupapi, cfgmgr32, advapi32, powrprof, ole32,
// oleaut32, the instrumentation client) keeps the whole Windows side:
// handles, device paths, request codes, record layouts, size protocols,
// GUIDs, COM objects, WQL and error codes. A Machine keeps the other side,
// in its own terms: what the batteries, the power line, the display, the
// power scheme and the instrumentation rows of one computer say. Two
// machines stand behind it, and neither knows the other:
//   - the emulated notebook (platform_layer/emulated), scenarios and faults;
//   - this machine (platform_layer/this_machine), the Linux computer the
//     process runs on.
// Every call is answered afresh. A battery goes by the machine's own name of
// it (BatteryDevice::name); a battery level a machine does not give is empty.
namespace platform_layer {

class ComApartment; // platform_layer/src/com_apartment.h

// A device of the battery setup class, as SetupDiGetDeviceRegistryProperty
// shows it.
struct SetupDevice {
    std::string description;
    std::optional<std::string> driverKey;     // under ...\Control\Class\, when it has one
    std::optional<std::string> driverVersion; // the DriverVersion value under that key
};

// What GetSystemPowerStatus reports.
struct SystemPower {
    bool acOnLine = false;
    bool acLineUnknown = false; // the line status reads 255
    bool anyBattery = false;
    uint32_t batteryPercent = 255; // 255: unknown or no battery
};

// Things the layer did that a machine may count for tests and benchmarks.
enum class LayerEvent {
    DeviceSetOpened,
    DeviceSetDestroyed,
    DeviceOpened,
    DeviceClosed,
    ComObjectMade,
    ComObjectReleased,
    ComStarted,
    ComEnded,
    ComEndedUnbalanced,
    DeviceTreeReenumerated,
    InstrumentationQueried,
};

class WIN32_API Machine {
public:
    virtual ~Machine();

    // --- Time: GetTickCount and Sleep.
    virtual uint32_t tickCount() = 0;
    virtual void sleep(uint32_t milliseconds) = 0;

    // --- Batteries, each as its driver knows it now.
    virtual std::vector<BatteryDevice> batteryDevices() = 0;
    // A device request starts: what a machine reads for it from here on
    // is one picture of the machine.
    virtual void beginRequest() {}
    // The number of the battery's present insertion; none while its slot is
    // empty or it is gone.
    virtual std::optional<uint32_t> batteryTag(const std::string &battery) = 0;
    virtual std::optional<BatteryFigures> batteryFigures(const std::string &battery) = 0;
    virtual std::optional<uint32_t> batteryTemperature_deciKelvin(const std::string &battery) = 0;
    // The time left at the present rate: a level some drivers give without
    // ever knowing it.
    virtual std::optional<std::optional<uint32_t>>
    batteryTimeLeft_s(const std::string &battery) = 0;
    virtual std::optional<BatteryDate> batteryManufactureDate(const std::string &battery) = 0;
    virtual std::optional<std::string> batteryText(const std::string &battery,
                                                   BatteryText which) = 0;
    virtual std::optional<BatteryStatus> batteryStatus(const std::string &battery) = 0;
    // The devices of the battery setup class (AC adapters and batteries).
    virtual std::vector<SetupDevice> batteryClassDevices() = 0;

    // --- The display: none when the machine has no controllable display.
    virtual bool hasDisplay() = 0;
    virtual std::optional<DisplayLevels> displayLevels() = 0;
    // Sets the levels given; false when the display refuses.
    virtual bool setDisplayLevels(std::optional<uint32_t> onAc_percent,
                                  std::optional<uint32_t> onBattery_percent) = 0;

    // --- Power: GetSystemPowerStatus, PowerGetActiveScheme,
    // PowerSetActiveScheme; results are error codes of <winerror.h>, 0
    // success. A set is a change a test must put back; the machine records
    // or applies it.
    virtual uint32_t systemPower(SystemPower *power) = 0;
    virtual uint32_t activeScheme(PowerScheme *scheme) = 0;
    virtual uint32_t setActiveScheme(PowerScheme scheme) = 0;

    // --- COM on the calling thread and the instrumentation service.
    virtual ComApartment &comApartment() = 0;
    virtual bool knowsNamespace(const std::string &name) = 0;
    // The instances of Win32_Battery.
    virtual std::vector<BatteryRow> batteryRows() = 0;

    // --- The port library stand-in: one byte in or out of an I/O port,
    // 0 success. A real machine refuses every access.
    virtual uint32_t writePort(uint16_t port, uint8_t value) = 0;
    virtual uint32_t readPort(uint16_t port, uint8_t *value) = 0;

    // How the machine breaks the protocols; none by default.
    virtual ProtocolFaults &faults();
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
