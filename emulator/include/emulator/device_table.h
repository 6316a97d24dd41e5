#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "emulator/emulator_api.h"

namespace emulator {

// A device that can be opened by path and sent I/O control
// requests. Results are Windows error codes: 0 success.
class Device {
public:
    virtual ~Device() = default;
    virtual uint32_t open() { return 0; }
    virtual uint32_t control(uint32_t code, const void *input, uint32_t inputSize, void *output,
                             uint32_t outputSize, uint32_t *returned) = 0;
};

// The handles of the emulated machine: every open device and how many are
// still open, so a test can prove that nothing leaks.
class EMULATOR_API DeviceTable {
public:
    // Paths compare without regard to case, as Windows device paths do.
    void add(const std::string &path, std::shared_ptr<Device> device);
    void clear();

    // 0 and a handle, or a Windows error code.
    uint32_t open(const std::string &path, void **handle);
    uint32_t control(void *handle, uint32_t code, const void *input, uint32_t inputSize,
                     void *output, uint32_t outputSize, uint32_t *returned);
    bool close(void *handle);

    uint64_t openHandles() const { return handles_.size(); }
    uint64_t handlesOpened() const { return opened_; }
    uint64_t controlRequests() const { return requests_; }

private:
    std::map<std::string, std::shared_ptr<Device>> devices_;
    std::map<void *, std::shared_ptr<Device>> handles_;
    uintptr_t nextHandle_ = 0x1000;
    uint64_t opened_ = 0;
    uint64_t requests_ = 0;
};

} // namespace emulator
