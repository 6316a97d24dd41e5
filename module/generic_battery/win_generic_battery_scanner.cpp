#include "generic_battery/win_generic_battery_scanner.h"

#include <cfgmgr32.h>

#include <vector>

#include "frame/chemistry.h"
#include "frame/keys.h"
#include "generic_battery/battery_requests.h"
#include "generic_battery/generic_result.h"
#include "generic_battery/wmi_client.h"
#include "platform/string_handler.h"
#include "wide_text.h"

namespace {

// Private stand-ins for the three text operations of the shared text
// service that this scanner needs (trim, wideToMultibyte, fromBytes), with
// the same contracts. They go once the scanner can use the service itself.

constexpr uint32_t kTextUnits = 255; // a driver text: 510 bytes of UTF-16
constexpr const char *kBatteryClassName = "Win32_Battery";

BATTERY_QUERY_INFORMATION informationQuery(uint32_t tag, BATTERY_QUERY_INFORMATION_LEVEL level) {
    BATTERY_QUERY_INFORMATION query = {};
    query.BatteryTag = tag;
    query.InformationLevel = level;
    query.AtRate = 0;
    return query;
}

bool isOpen(HANDLE handle) {
    return handle != INVALID_HANDLE_VALUE && handle != nullptr;
}

} // namespace

uint32_t WinGenericBatteryScanner::scanDevices(DeviceMap &found) {
    // Ask for a fresh look at the device tree; the listing does not wait for
    // it, and a refusal changes nothing about what can be listed.
    DEVINST root = 0;
    if (CM_Locate_DevNodeA(&root, nullptr, CM_LOCATE_DEVNODE_PHANTOM) == CR_SUCCESS) {
        CM_Reenumerate_DevNode(root, 0);
    }
    DeviceScanner *scanner = deviceScanner();
    if (scanner == nullptr) return generic_result::Failed;

    const WinDeviceScanFilter filter(kBatteryClassGuid, kBatteryClassGuid);
    const uint32_t status = scanner->enumerateDevices(filter, found);
    if (status != 0) return status;
    devices = found;
    return generic_result::Success;
}

// A cell that already holds a handle gives it back before it takes the next.
void WinGenericBatteryScanner::adoptHandle(HANDLE opened, HANDLE *cell) {
    if (isOpen(*cell) && *cell != opened) deviceScanner()->closeDevice(cell);
    *cell = opened;
}

uint32_t WinGenericBatteryScanner::readBattery(const uint32_t &key, GenericBatteryInfo &info,
                                               HANDLE *cell) {
    DeviceScanner *scanner = deviceScanner();
    if (cell == nullptr || scanner == nullptr) return generic_result::Failed;

    const std::vector<std::string> paths = devices[key];
    for (const std::string &path : paths) {
        HANDLE opened = INVALID_HANDLE_VALUE;
        if (scanner->openDevice(path, &opened) != 0) continue;
        adoptHandle(opened, cell);

        uint32_t tag = 0;
        if (queryTag(cell, tag) != generic_result::Success) continue;

        const uint32_t identified =
            queryText(cell, informationQuery(tag, BatteryUniqueID), info.deviceId);
        if (identified == generic_result::BatteryVanished) return generic_result::BatteryVanished;
        if (info.deviceId.empty()) {
            // Without an identifier of the driver's own there is nothing the
            // instrumentation could be asked about.
            info.deviceId = keys::BAT_PREFIX + std::to_string(key);
        } else {
            queryWmiProperty(keys::DESIGN_VOLTAGE_PROPERTY, info.deviceId, info.designVoltage);
        }
        readDetails(cell, tag, info);
    }
    return generic_result::Success;
}

void WinGenericBatteryScanner::readDetails(HANDLE *cell, uint32_t tag, GenericBatteryInfo &info) {
    queryText(cell, informationQuery(tag, BatteryDeviceName), info.name);
    queryText(cell, informationQuery(tag, BatteryManufactureName), info.manufacturer);
    queryText(cell, informationQuery(tag, BatterySerialNumber), info.serialNumber);

    uint32_t temperature = 0;
    const uint32_t measured = queryInformation(cell, informationQuery(tag, BatteryTemperature),
                                               sizeof temperature, &temperature);
    if (measured == generic_result::Success) info.temperature = temperature;
    if (measured == generic_result::Failed) info.temperature = 0;

    BATTERY_MANUFACTURE_DATE date = {};
    const uint32_t dated =
        queryInformation(cell, informationQuery(tag, BatteryManufactureDate), sizeof date, &date);
    info.manufactureYear = dated == generic_result::Failed ? 0 : date.Year;

    BATTERY_INFORMATION battery = {};
    if (queryInformation(cell, informationQuery(tag, BatteryInformation), sizeof battery,
                         &battery) == generic_result::Success) {
        info.chemistry = chemistryName(
            StringHandler::instance()->fromBytes(battery.Chemistry, sizeof battery.Chemistry));
        info.capabilities = battery.Capabilities;
        info.cycleCount = battery.CycleCount;
        info.designCapacity = usableCapacity(battery.DesignedCapacity);
        info.fullChargeCapacity = usableCapacity(battery.FullChargedCapacity);
    }

    BATTERY_STATUS status = {};
    if (requestBatteryStatus(*cell, tag, status)) {
        info.remainingCapacity = status.Capacity;
        info.rate = status.Rate;
    } else {
        info.remainingCapacity = 0;
        info.rate = 0;
    }
}

uint32_t WinGenericBatteryScanner::isBatteryPresent(HANDLE *cell, bool &present) {
    uint32_t tag = 0;
    if (queryTag(cell, tag) != generic_result::Success) return generic_result::Failed;
    BATTERY_INFORMATION battery = {};
    const uint32_t result =
        queryInformation(cell, informationQuery(tag, BatteryInformation), sizeof battery, &battery);
    // Any answer but "no such battery" means something is there.
    present = result != generic_result::BatteryVanished;
    return generic_result::Success;
}

uint32_t WinGenericBatteryScanner::refreshCapacities(HANDLE *cell, GenericBatteryInfo &info) {
    uint32_t tag = 0;
    if (queryTag(cell, tag) != generic_result::Success) return generic_result::Failed;
    BATTERY_INFORMATION battery = {};
    const uint32_t result =
        queryInformation(cell, informationQuery(tag, BatteryInformation), sizeof battery, &battery);
    info.designCapacity =
        result == generic_result::Success ? usableCapacity(battery.DesignedCapacity) : 0;
    info.fullChargeCapacity =
        result == generic_result::Success ? usableCapacity(battery.FullChargedCapacity) : 0;
    return result;
}

uint32_t WinGenericBatteryScanner::queryTag(HANDLE *cell, uint32_t &tag) {
    tag = 0;
    if (cell == nullptr) return generic_result::Failed;
    ULONG wait = 0;
    ULONG answered = 0;
    DWORD returned = 0;
    const BOOL ok = DeviceIoControl(*cell, IOCTL_BATTERY_QUERY_TAG, &wait, sizeof wait, &answered,
                                    sizeof answered, &returned, nullptr);
    tag = answered;
    // A failure that leaves no tag is what an empty slot answers; the next
    // request then tells whether the device still has a battery.
    if (!ok && tag != 0) return generic_result::Failed;
    return generic_result::Success;
}

uint32_t WinGenericBatteryScanner::queryInformation(HANDLE *cell,
                                                    const BATTERY_QUERY_INFORMATION &query,
                                                    uint32_t outputSize, void *output) {
    if (cell == nullptr) return generic_result::Failed;
    BATTERY_QUERY_INFORMATION input = query;
    DWORD returned = 0;
    if (DeviceIoControl(*cell, IOCTL_BATTERY_QUERY_INFORMATION, &input, sizeof input, output,
                        outputSize, &returned, nullptr)) {
        return generic_result::Success;
    }
    return GetLastError() == ERROR_FILE_NOT_FOUND ? generic_result::BatteryVanished
                                                  : generic_result::Failed;
}

uint32_t WinGenericBatteryScanner::queryText(HANDLE *cell, const BATTERY_QUERY_INFORMATION &query,
                                             std::string &value) {
    // Cleared, so that a driver that claims success without writing gives
    // an empty text rather than stale memory.
    WCHAR wide[kTextUnits] = {};
    const uint32_t result = queryInformation(cell, query, sizeof wide, wide);
    if (result != generic_result::Success) return result;

    char narrow[kTextUnits];
    size_t converted = 0;
    StringHandler::instance()->wideToMultibyte(&converted, narrow, sizeof narrow, wide, kTextUnits);
    value = std::string(narrow);

    // Blanks count only for deciding emptiness; the text keeps them.
    std::string trimmed = value;
    StringHandler::instance()->trim(trimmed);
    if (trimmed.empty()) value.clear();
    return generic_result::Success;
}

uint32_t WinGenericBatteryScanner::queryWmiProperty(const char *property,
                                                    const std::string &deviceId,
                                                    std::string &value) {
    const std::string clause = std::string("DeviceID") + " = '" + deviceId + "'";
    std::vector<char> condition(clause.begin(), clause.end());
    condition.push_back('\0');

    WmiResults results;
    const char *names[] = {property};
    WmiClient client;
    const uint32_t code = client.queryProperties(names, condition.data(), kBatteryClassName, 1,
                                                 results, WIDE_TEXT("ROOT\\CIMV2"));
    const auto found = results.find(property);
    value = found != results.end() ? found->second : std::string();
    return code != wmi_code::Success ? generic_result::WmiQueryFailed : generic_result::Success;
}

std::string WinGenericBatteryScanner::chemistryName(const std::string &code) {
    if (code == std::string(4, ' ') || code == std::string(4, '\0')) return std::string();
    const char *key = chemistry::keyOf(code, chemistry::Source::Driver);
    return key != nullptr ? std::string(key) : code;
}
