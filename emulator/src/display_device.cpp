#include "display_device.h"

#include <cstring>

#include "emulator/notebook.h"

namespace emulator {

namespace {
constexpr uint32_t kGenFailure = 31;
constexpr uint32_t kInvalidParameter = 87;
constexpr uint32_t kInsufficientBuffer = 122;
constexpr uint32_t kInvalidFunction = 1;
constexpr uint8_t kPolicyAc = 1;
constexpr uint8_t kPolicyDc = 2;
constexpr uint32_t kRecordSize = 3; // policy, AC level, DC level
} // namespace

uint32_t DisplayDevice::control(uint32_t code, const void *input, uint32_t inputSize, void *output,
                                uint32_t outputSize, uint32_t *returned) {
    PowerState &power = notebook_.power();
    if (returned != nullptr) *returned = 0;
    if (code == kQueryBrightness) {
        if (output == nullptr || outputSize < kRecordSize) return kInsufficientBuffer;
        const uint8_t record[kRecordSize] = {power.ac ? kPolicyAc : kPolicyDc,
                                             static_cast<uint8_t>(power.acBrightness),
                                             static_cast<uint8_t>(power.dcBrightness)};
        std::memcpy(output, record, kRecordSize);
        if (returned != nullptr) *returned = kRecordSize;
        return 0;
    }
    if (code == kSetBrightness) {
        if (input == nullptr || inputSize < kRecordSize) return kInvalidParameter;
        uint8_t record[kRecordSize];
        std::memcpy(record, input, kRecordSize);
        if (record[1] > 100 || record[2] > 100) return kInvalidParameter;
        if (power.displayRefuses) return kGenFailure;
        const uint64_t now = notebook_.clock().elapsedMs();
        if (record[0] & kPolicyAc) {
            power.acBrightness = record[1];
            power.changes.push_back({now, "brightness-ac", record[1]});
        }
        if (record[0] & kPolicyDc) {
            power.dcBrightness = record[2];
            power.changes.push_back({now, "brightness-dc", record[2]});
        }
        return 0;
    }
    return kInvalidFunction;
}

} // namespace emulator
