#pragma once

#include <memory>
#include <string>
#include <vector>

#include "emulator/notebook.h"
#include "generic_battery/generic_battery_component.h"
#include "generic_battery/generic_battery_component_manager.h"
#include "smart_battery/smart_battery_component_manager.h"
#include "support/recording_host.h"
#include "support/scenario.h"

// A host whose stop request and system events follow the emulated
// notebook's timeline, as a host on that machine would pass them on.
class TimelineHost : public RecordingHost {
public:
    // Stops once this many notices have come; 0: never.
    size_t stopAfterNotices = 0;

    bool isStopRequested() override {
        if (stopAfterNotices != 0 && notices() >= stopAfterNotices) return true;
        return RecordingHost::isStopRequested() || emulator::Notebook::instance().stopRequested();
    }
    uint32_t *getSystemEvents() override {
        events |= emulator::Notebook::instance().systemEvents();
        return RecordingHost::getSystemEvents();
    }
    size_t notices() const {
        size_t count = 0;
        for (const Event &event : record) count += event.kind == Event::Notice;
        return count;
    }
    // The user does what the prompt asks.
    void obeyPrompts() {
        onInput = [](const InputRequest &request) {
            emulator::Notebook::instance().setAcLine(request.message.find("UNPLUG") ==
                                                     std::string::npos);
        };
    }
};

// A battery with exact charges: `initialPercent` until the measurement has
// slept, `finalPercent` afterwards. The AC line is the emulated notebook's.
class ExactBattery : public GenericBatteryComponent {
public:
    double initialPercent = 50.0;
    double finalPercent = 49.0;
    // Reads of the charge from this one on (counted from 1) fail; 0: none.
    uint32_t chargeFailsFrom = 0;
    bool acFails = false;
    bool presenceFails = false; // the presence query gives a status other than 0
    uint32_t chargeReads = 0;

    uint32_t getChargePercent(double &percent) override {
        ++chargeReads;
        if (chargeFailsFrom != 0 && chargeReads >= chargeFailsFrom) return 1;
        percent =
            emulator::Notebook::instance().clock().sleptMs() == 0 ? initialPercent : finalPercent;
        return 0;
    }
    uint32_t getBatteryCharges(std::vector<BatteryChargeEntry> &) override { return 1; }
    uint32_t isOnAcPower(bool &onAc) override {
        if (acFails) return 1;
        onAc = emulator::Notebook::instance().power().ac;
        return 0;
    }
    uint32_t isBatteryPresent(bool &present) override {
        if (presenceFails) return 1;
        present = true;
        return 0;
    }
    uint32_t refreshCapacities() override { return 0; }
};

// The notebook's battery as the host would name it: the generic component
// of a generic manager, or the smart component of a smart manager.
struct HostBattery {
    std::unique_ptr<GenericBatteryComponentManager> generic;
    std::unique_ptr<SmartBatteryComponentManager> smart;

    SystemComponent *genericComponent() {
        generic = std::make_unique<GenericBatteryComponentManager>(EntityId(12, 0, 0));
        generic->refreshComponents();
        return generic->getComponent(0);
    }
    SystemComponent *smartComponent() {
        smart = std::make_unique<SmartBatteryComponentManager>(EntityId(12, 0, 0));
        smart->refreshComponents();
        return smart->getComponent(0);
    }
};

// Log entries as (key, level); the report's charge lines by key alone, since
// their figures follow the emulated physics.
inline std::vector<std::pair<std::string, uint32_t>>
loggedKeys(const std::vector<RecordingHost::Event> &entries) {
    std::vector<std::pair<std::string, uint32_t>> keys;
    for (const RecordingHost::Event &event : entries) {
        std::string text = event.text;
        if (text.rfind("_BATTERY_CHARGE: ") != std::string::npos)
            text = text.substr(0, text.find(':'));
        keys.emplace_back(text, event.number);
    }
    return keys;
}
