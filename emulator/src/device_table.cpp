#include "emulator/device_table.h"

#include <algorithm>
#include <cctype>

namespace emulator {

namespace {
constexpr uint32_t kFileNotFound = 2;
constexpr uint32_t kInvalidHandle = 6;

std::string folded(std::string path) {
    std::transform(path.begin(), path.end(), path.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return path;
}
} // namespace

void DeviceTable::add(const std::string &path, std::shared_ptr<Device> device) {
    devices_[folded(path)] = std::move(device);
}

// Handles already given out stay counted: a test that installs a new machine
// must still see what the old one leaked.
void DeviceTable::clear() {
    devices_.clear();
}

uint32_t DeviceTable::open(const std::string &path, void **handle) {
    const auto found = devices_.find(folded(path));
    if (found == devices_.end()) return kFileNotFound;
    if (const uint32_t error = found->second->open()) return error;
    void *fresh = reinterpret_cast<void *>(nextHandle_);
    nextHandle_ += 4; // Windows handles are multiples of four
    handles_[fresh] = found->second;
    ++opened_;
    *handle = fresh;
    return 0;
}

uint32_t DeviceTable::control(void *handle, uint32_t code, const void *input, uint32_t inputSize,
                              void *output, uint32_t outputSize, uint32_t *returned) {
    const auto found = handles_.find(handle);
    if (found == handles_.end()) return kInvalidHandle;
    ++requests_;
    return found->second->control(code, input, inputSize, output, outputSize, returned);
}

bool DeviceTable::close(void *handle) {
    return handles_.erase(handle) == 1;
}

} // namespace emulator
