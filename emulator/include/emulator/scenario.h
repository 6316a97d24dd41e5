#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform_layer/power_scheme.h"

// A machine description, as loaded from a scenario file. Every section has
// defaults, so a scenario names only what differs from a plain notebook.
namespace emulator {

struct ManufactureDate {
    uint32_t year = 2020;
    uint32_t month = 1;
    uint32_t day = 1;
};

// One battery in real units. The embedded controller and the operating
// system's battery driver both show this same battery.
// What a hostile or broken driver answers to one request, whatever the
// battery is: a failure status, or these bytes cut to the caller's buffer.
struct RawDriverAnswer {
    uint32_t status = 0;
    std::vector<uint8_t> bytes;
};

// Faults of the operating system's battery driver for one battery.
struct DriverFaults {
    // The battery leaves after this many driver requests on its device: its
    // tag goes stale and every later request finds no battery. 0: it never
    // leaves.
    uint32_t vanishAfterRequests = 0;
    // Information levels (BatteryInformation, BatteryTemperature, ...) that
    // the driver does not give.
    std::vector<std::string> failingLevels;
    bool statusFails = false;       // IOCTL_BATTERY_QUERY_STATUS fails
    bool unterminatedTexts = false; // texts fill the whole buffer, no terminator
    bool unknownCapacities = false; // capacities and rate report 0xFFFFFFFF
    bool openFails = false;         // the device path cannot be opened
    // The driver's text for the serial number where it is not the number
    // itself (padded with blanks, say); empty: the number.
    std::string serialNumberText;
    // The tag request fails yet leaves the battery's tag in the caller's
    // buffer, as a driver that is half-way through a reset.
    bool tagFails = false;
    // The battery shows through a further interface of the device in this
    // slot rather than a device of its own, so the device scanner lists its
    // path under that device's key. -1: a device of its own.
    int32_t sharesDeviceOfSlot = -1;
    // Answers given instead of the battery's own, by information level
    // (0 BatteryInformation ... 8 BatterySerialNumber) and kRawTag and
    // kRawStatus for the tag and status requests. Not read from scenario
    // files: tests and fuzz targets set them.
    static constexpr uint32_t kRawTag = 100;
    static constexpr uint32_t kRawStatus = 101;
    std::map<uint32_t, RawDriverAnswer> rawAnswers;
};

struct BatteryDescription {
    uint32_t slot = 0; // controller position: 0 main, 1 secondary
    bool present = true;
    std::string manufacturer;
    std::string deviceName;
    std::string chemistry = "LION"; // as the battery itself reports it
    uint32_t serialNumber = 0;
    ManufactureDate manufactureDate;
    std::string capacityUnit = "mWh"; // "mWh" or "mAh"
    uint32_t designCapacity = 0;
    uint32_t fullChargeCapacity = 0;
    uint32_t designVoltage_mV = 0;
    double temperature_C = 25.0;
    uint32_t cycleCount = 0;
    uint32_t cycleScale = 0;    // the 12-bit divisor the controller shows
    uint32_t cycleScaleTop = 0; // the 4 bits the controller shows above it
    bool overTemperature = false;
    std::string authenticity = "genuine"; // genuine, authorized, not-authenticated, unknown
    double chargePercent = 80.0;
    std::string uniqueId; // the driver's unique identifier; empty when it gives none
    DriverFaults driver;
    // When not empty, the controller shows these bytes on its pages 0x02 to
    // 0x06 (48 registers each, page after page) instead of encoding the
    // fields above. Not read from scenario files: tests and fuzz targets set
    // it.
    std::vector<uint8_t> registerBytes;
};

enum class ControllerPort { Index, Data };

// One port that fails: every access to it, or only its n-th access (counted
// from 1 over reads and writes of that port since the scenario was installed).
struct PortFault {
    ControllerPort port = ControllerPort::Data;
    uint32_t nth = 0; // 0: every access
};

// Ways in which a controller misbehaves.
struct ControllerFaults {
    bool busyForever = false;
    uint32_t busyFromCommand = 0; // n > 0: the n-th command and every later one never finish
    std::vector<PortFault> portFaults;
    bool ignoresSelection = false; // battery 0 stays selected whatever is written
    // Slots the status byte reports instead of the batteries that are there.
    bool overridesReportedSlots = false;
    std::vector<uint32_t> reportedSlots;
    // n > 0: after n reads of the status byte the batteries are gone, as if
    // taken out after the machine was looked at.
    uint32_t batteriesGoneAfterStatusReads = 0;
};

struct ControllerSection {
    bool present = false;   // an embedded controller that answers on ports 0x1610/0x1611
    uint32_t busyPolls = 0; // polls for which each command keeps the controller busy
    ControllerFaults faults;
};

// COM and the management instrumentation service as the module finds them.
struct InstrumentationSection {
    // COM on the calling thread before the module starts it: "none",
    // "multithreaded" (CoInitializeEx gives S_FALSE) or "single-threaded"
    // (it gives RPC_E_CHANGED_MODE).
    std::string apartment = "none";
    bool securityAlreadySet = false; // CoInitializeSecurity gives RPC_E_TOO_LATE
    // The one step that fails: "none", "CoInitializeEx", "CoInitializeSecurity",
    // "CoCreateInstance", "ConnectServer", "CoSetProxyBlanket", "ExecQuery", "Get".
    std::string failingStep = "none";
    // How the service hands out DesignVoltage: "text" (as a uint64 property
    // travels), "int32" or "null".
    std::string designVoltageType = "text";
    // Win32_Battery properties (DeviceID, Name, DesignVoltage) handed out as
    // given instead: a variant type held by value, or VT_BSTR with `text`.
    // Not read from scenario files: tests and fuzz targets set them.
    struct RawVariant {
        uint16_t type = 0;
        uint64_t bits = 0;
        std::string text;
    };
    std::map<std::string, RawVariant> rawProperties;
};

// One device of the battery setup class as the device registry lists it.
struct ClassDevice {
    std::string description;
    bool hasDriverKey = true;  // SPDRP_DRIVER
    std::string driverKey;     // e.g. "{72631E54-78A4-11D0-BCF7-00AA00B7B32A}\\0001"
    std::string driverVersion; // empty: the driver's key has no DriverVersion value
};

// What the operating system knows of the batteries besides the batteries
// themselves.
struct OperatingSystemSection {
    // Absent in a scenario: the AC adapter at index 0 and one device per
    // battery, each with a driver version.
    bool classDevicesGiven = false;
    std::vector<ClassDevice> classDevices;
};

using PowerScheme = platform_layer::PowerScheme;

struct PowerSection {
    bool ac = false;
    PowerScheme scheme = PowerScheme::Balanced;
    bool statusFails = false;        // GetSystemPowerStatus fails
    bool schemeQueryFails = false;   // PowerGetActiveScheme fails
    bool schemeChangeFails = false;  // PowerSetActiveScheme fails
    bool acLineUnknown = false;      // GetSystemPowerStatus reports AC line status 255
    int32_t batteryLifePercent = -1; // overrides the figure from the batteries (0-255)
};

struct DisplaySection {
    bool present = true; // the "\\.\LCD" device
    uint32_t acLevel = 80;
    uint32_t dcLevel = 60;
    bool refusesBrightness = false; // every brightness change fails
};

// How fast the charge moves, in percentage points per minute of virtual time.
struct PhysicsSection {
    double drainPerMinute = 0.35;           // on battery, display dark, balanced scheme
    double brightnessDrainPerMinute = 0.45; // added at full brightness, in proportion below
    double highPerformanceFactor = 1.5;     // drain factor of the high-performance scheme
    double powerSaverFactor = 0.7;          // drain factor of the power-saver scheme
    double chargePerMinute = 1.0;           // on AC, slowing over the last 20 points
    bool dischargeStuck = false;            // the charge does not fall on battery
    bool chargeStuck = false;               // the charge does not rise on AC
};

// Something that happens to the machine at a virtual time.
struct TimelineEvent {
    enum class Kind { AcPlug, AcUnplug, BatteryRemove, BatteryInsert, SystemEvent, StopRequest };
    uint64_t atMs = 0;
    Kind kind = Kind::AcPlug;
    uint32_t slot = 0; // battery events
    uint32_t bits = 0; // system events
};

// The person in front of the machine.
struct UserSection {
    bool ignoresPrompts = false; // asked to plug or unplug the AC cable, does nothing
};

struct Scenario {
    std::string name;
    std::string description;
    std::string source; // the file it came from, or "built-in"
    uint32_t startTick = 0;
    ControllerSection controller;
    std::vector<BatteryDescription> batteries;
    InstrumentationSection instrumentation;
    OperatingSystemSection os;
    PowerSection power;
    DisplaySection display;
    PhysicsSection physics;
    std::vector<TimelineEvent> timeline; // in time order
    UserSection user;
};

} // namespace emulator
