// The display's brightness requests, answered for every machine from the
// levels it says its display has.

#include <windows.h>
#include <winioctl.h>

#include <ntddvdeo.h>

#include <cstring>

#include "device_requests.h"

namespace platform_layer {

namespace {

UCHAR policyOf(DisplayLevels::InForce inForce) {
    switch (inForce) {
    case DisplayLevels::InForce::OnAc:
        return DISPLAYPOLICY_AC;
    case DisplayLevels::InForce::OnBattery:
        return DISPLAYPOLICY_DC;
    default:
        return DISPLAYPOLICY_BOTH;
    }
}

} // namespace

uint32_t displayRequest(Machine &machine, uint32_t code, const void *input, uint32_t inputSize,
                        void *output, uint32_t outputSize, uint32_t *returned) {
    *returned = 0;
    if (code == IOCTL_VIDEO_QUERY_DISPLAY_BRIGHTNESS) {
        if (output == nullptr || outputSize < sizeof(DISPLAY_BRIGHTNESS)) {
            return ERROR_INSUFFICIENT_BUFFER;
        }
        const std::optional<DisplayLevels> levels = machine.displayLevels();
        if (!levels) return ERROR_GEN_FAILURE;
        const DISPLAY_BRIGHTNESS record = {policyOf(levels->inForce),
                                           static_cast<UCHAR>(levels->onAc_percent),
                                           static_cast<UCHAR>(levels->onBattery_percent)};
        std::memcpy(output, &record, sizeof record);
        *returned = sizeof record;
        return ERROR_SUCCESS;
    }
    if (code == IOCTL_VIDEO_SET_DISPLAY_BRIGHTNESS) {
        if (input == nullptr || inputSize < sizeof(DISPLAY_BRIGHTNESS)) {
            return ERROR_INVALID_PARAMETER;
        }
        DISPLAY_BRIGHTNESS record;
        std::memcpy(&record, input, sizeof record);
        if ((record.ucDisplayPolicy & DISPLAYPOLICY_BOTH) == 0 || record.ucACBrightness > 100 ||
            record.ucDCBrightness > 100) {
            return ERROR_INVALID_PARAMETER;
        }
        std::optional<uint32_t> onAc, onBattery;
        if (record.ucDisplayPolicy & DISPLAYPOLICY_AC) onAc = record.ucACBrightness;
        if (record.ucDisplayPolicy & DISPLAYPOLICY_DC) onBattery = record.ucDCBrightness;
        return machine.setDisplayLevels(onAc, onBattery) ? ERROR_SUCCESS : ERROR_GEN_FAILURE;
    }
    return ERROR_INVALID_FUNCTION;
}

} // namespace platform_layer
