#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "emulator/scenario.h"

namespace emulator {

class BatteryPages;

// The embedded controller behind the index port 0x1610 and the data port
// 0x1611. A register is reached by writing its number to the index port and
// then moving one byte through the data port. Register 0x00 takes commands
// (0xFF starts a battery selection, 0x02 to 0x06 choose a page) and reads 0
// when the controller is idle; register 0x10 takes the battery number and,
// on page 0x02, reads as the presence status of both slots.
//
// Every write of a register is a command: it keeps the controller busy for
// the scenario's busyPolls reads of register 0x00. Results are port
// statuses: 0 success, anything else failure.
class EmbeddedController {
public:
    static constexpr uint16_t kIndexPort = 0x1610;
    static constexpr uint16_t kDataPort = 0x1611;

    EmbeddedController();
    ~EmbeddedController();

    void install(const Scenario &scenario);
    uint32_t write(uint16_t port, uint8_t value);
    // A battery taken out or put back while the machine runs.
    void setBatteryPresent(uint32_t slot, bool present);
    uint32_t read(uint16_t port, uint8_t *value);

private:
    bool portFails(uint16_t port);
    void command(uint8_t reg, uint8_t value);
    uint8_t pollCommandRegister();
    uint8_t statusByte();

    bool present_ = false;
    uint32_t busyPolls_ = 0;
    ControllerFaults faults_;
    std::array<std::unique_ptr<BatteryPages>, 2> slots_;
    std::array<bool, 2> removed_{}; // taken out while the machine runs
    uint32_t statusReads_ = 0;

    uint8_t index_ = 0;
    uint8_t page_ = 0; // 0: none chosen
    uint32_t selected_ = 0;
    uint32_t pendingPolls_ = 0;
    uint32_t commands_ = 0;
    bool stuck_ = false;
    uint32_t indexAccesses_ = 0;
    uint32_t dataAccesses_ = 0;
};

} // namespace emulator
