#pragma once

#include <array>
#include <cstdint>

#include "emulator/scenario.h"

namespace emulator {

// One battery as the embedded controller shows it: pages 0x02 to 0x06 of
// registers 0x00 to 0x2F, encoded once from the battery's description in
// real units. The controller's own view of the register layout lives here,
// apart from the module's, so that a wrong constant on either side shows.
class BatteryPages {
public:
    static constexpr uint8_t kFirstPage = 0x02;
    static constexpr uint8_t kLastPage = 0x06;
    static constexpr uint8_t kRegisterCount = 0x30;

    // An empty slot: every register reads 0.
    BatteryPages();
    explicit BatteryPages(const BatteryDescription &battery);

    // 0 for a page or register outside the map.
    uint8_t read(uint8_t page, uint8_t reg) const;

private:
    using Page = std::array<uint8_t, kRegisterCount>;
    void putByte(uint8_t page, uint8_t reg, uint8_t value);
    void putWord(uint8_t page, uint8_t lowReg, uint16_t value);
    void putText(uint8_t page, const std::string &text);

    std::array<Page, kLastPage - kFirstPage + 1> pages_{};
};

} // namespace emulator
