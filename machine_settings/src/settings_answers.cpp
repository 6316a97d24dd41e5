#include "machine_settings/settings_answers.h"

#include <cstring>

namespace machine_settings {

namespace {
constexpr uint32_t kFileNotFound = 2;
constexpr uint32_t kInvalidFunction = 1;
constexpr uint32_t kGenFailure = 31;
constexpr uint32_t kNotSupported = 50;
constexpr uint32_t kInvalidParameter = 87;
constexpr uint32_t kInsufficientBuffer = 122;
constexpr uint8_t kPolicyAc = 1;
constexpr uint8_t kPolicyBoth = 3;
constexpr uint32_t kRecordSize = 3; // policy, AC level, battery level
} // namespace

// The first device found is the one the run changes, the one the journal
// names: when it goes away no other takes its place, and when it comes back
// it is the same object, so the level it had before the first write is still
// known, exactly, when the test puts it back.
uint32_t DisplayAnswer::open() {
    if (backlight_) return Backlight::named(backlight_->name()) ? 0 : kFileNotFound;
    std::optional<Backlight> found = Backlight::find();
    if (!found) return kFileNotFound;
    backlight_ = std::move(found);
    return 0;
}

uint32_t DisplayAnswer::control(uint32_t code, const void *input, uint32_t inputSize, void *output,
                                uint32_t outputSize, uint32_t *returned) {
    if (returned != nullptr) *returned = 0;
    if (!backlight_) return kFileNotFound;
    if (code == kQueryBrightness) {
        if (output == nullptr || outputSize < kRecordSize) return kInsufficientBuffer;
        uint32_t percent = 0;
        if (!backlight_->readPercent(percent)) return kGenFailure;
        const uint8_t record[kRecordSize] = {kPolicyBoth, static_cast<uint8_t>(percent),
                                             static_cast<uint8_t>(percent)};
        std::memcpy(output, record, kRecordSize);
        if (returned != nullptr) *returned = kRecordSize;
        return 0;
    }
    if (code == kSetBrightness) {
        if (input == nullptr || inputSize < kRecordSize) return kInvalidParameter;
        uint8_t record[kRecordSize];
        std::memcpy(record, input, kRecordSize);
        if ((record[0] & kPolicyBoth) == 0 || record[1] > 100 || record[2] > 100) {
            return kInvalidParameter;
        }
        const uint8_t level = (record[0] & kPolicyAc) != 0 ? record[1] : record[2];
        return backlight_->writePercent(level) ? 0 : kGenFailure;
    }
    return kInvalidFunction;
}

PowerProfile *SchemeAnswer::profile() {
    if (!profile_) profile_ = PowerProfile::find();
    return profile_.get();
}

uint32_t SchemeAnswer::active(Scheme &scheme) {
    PowerProfile *found = profile();
    if (found == nullptr) return kNotSupported;
    return found->readScheme(scheme) ? 0 : kGenFailure;
}

uint32_t SchemeAnswer::set(Scheme scheme) {
    PowerProfile *found = profile();
    if (found == nullptr) return kNotSupported;
    return found->apply(scheme) ? 0 : kGenFailure;
}

std::string SchemeAnswer::source() {
    PowerProfile *found = profile();
    return found == nullptr ? std::string() : found->source();
}

} // namespace machine_settings
