#include "emulator/embedded_controller.h"

#include "battery_pages.h"

namespace emulator {

namespace {

constexpr uint32_t kNoDevice = 1;
constexpr uint32_t kPortFault = 2;

constexpr uint8_t kCommandRegister = 0x00;
constexpr uint8_t kBatteryRegister = 0x10;
constexpr uint8_t kStatusRegister = 0x10;
constexpr uint8_t kStatusPage = 0x02;
constexpr uint8_t kStartSelection = 0xFF;
constexpr uint8_t kBusy = 0x01;
constexpr uint8_t kSlot0PresentBit = 0x40;
constexpr uint8_t kSlot1PresentBit = 0x20;
constexpr uint32_t kNoSlot = 2;

} // namespace

EmbeddedController::EmbeddedController() = default;
EmbeddedController::~EmbeddedController() = default;

void EmbeddedController::install(const Scenario &scenario) {
    present_ = scenario.controller.present;
    busyPolls_ = scenario.controller.busyPolls;
    faults_ = scenario.controller.faults;
    for (auto &slot : slots_) slot.reset();
    for (const BatteryDescription &battery : scenario.batteries) {
        if (battery.present && battery.slot < slots_.size()) {
            slots_[battery.slot] = std::make_unique<BatteryPages>(battery);
        }
    }
    removed_ = {};
    statusReads_ = 0;
    index_ = 0;
    page_ = 0;
    selected_ = 0;
    pendingPolls_ = 0;
    commands_ = 0;
    stuck_ = faults_.busyForever;
    indexAccesses_ = 0;
    dataAccesses_ = 0;
}

bool EmbeddedController::portFails(uint16_t port) {
    const bool index = port == kIndexPort;
    const uint32_t count = index ? ++indexAccesses_ : ++dataAccesses_;
    for (const PortFault &fault : faults_.portFaults) {
        const bool samePort = (fault.port == ControllerPort::Index) == index;
        if (samePort && (fault.nth == 0 || fault.nth == count)) return true;
    }
    return false;
}

uint32_t EmbeddedController::write(uint16_t port, uint8_t value) {
    if (!present_ || (port != kIndexPort && port != kDataPort)) return kNoDevice;
    if (portFails(port)) return kPortFault;
    if (port == kIndexPort) {
        index_ = value;
    } else {
        command(index_, value);
    }
    return 0;
}

uint32_t EmbeddedController::read(uint16_t port, uint8_t *value) {
    if (!present_ || port != kDataPort || value == nullptr) return kNoDevice;
    if (portFails(port)) return kPortFault;
    if (index_ == kCommandRegister) {
        *value = pollCommandRegister();
    } else if (page_ == kStatusPage && index_ == kStatusRegister) {
        *value = statusByte();
    } else {
        const BatteryPages *slot = selected_ < slots_.size() ? slots_[selected_].get() : nullptr;
        *value = slot != nullptr ? slot->read(page_, index_) : 0;
    }
    return 0;
}

void EmbeddedController::command(uint8_t reg, uint8_t value) {
    ++commands_;
    if (faults_.busyFromCommand != 0 && commands_ >= faults_.busyFromCommand) stuck_ = true;
    pendingPolls_ = busyPolls_;
    if (reg == kCommandRegister) {
        // A selection starts without a page; a page command chooses one.
        page_ = value == kStartSelection ? 0 : value;
    } else if (reg == kBatteryRegister && !faults_.ignoresSelection) {
        selected_ = value == 0x00 ? 0 : value == 0x01 ? 1 : kNoSlot;
    }
}

uint8_t EmbeddedController::pollCommandRegister() {
    if (stuck_) return kBusy;
    if (pendingPolls_ > 0) {
        --pendingPolls_;
        return kBusy;
    }
    return 0;
}

void EmbeddedController::setBatteryPresent(uint32_t slot, bool present) {
    if (slot < removed_.size()) removed_[slot] = !present;
}

uint8_t EmbeddedController::statusByte() {
    ++statusReads_;
    const bool gone = faults_.batteriesGoneAfterStatusReads != 0 &&
                      statusReads_ > faults_.batteriesGoneAfterStatusReads;
    bool reported[2] = {slots_[0] != nullptr && !removed_[0] && !gone,
                        slots_[1] != nullptr && !removed_[1] && !gone};
    if (faults_.overridesReportedSlots) {
        reported[0] = reported[1] = false;
        for (uint32_t slot : faults_.reportedSlots) {
            if (slot < 2) reported[slot] = true;
        }
    }
    return static_cast<uint8_t>((reported[0] ? kSlot0PresentBit : 0) |
                                (reported[1] ? kSlot1PresentBit : 0));
}

} // namespace emulator
