#pragma once

#include <cstdint>

#include "portlib_api.h"

// One byte in or out of an I/O port.
namespace portlib {

// Status of one port access: 0 success, anything else failure.
class PORTLIB_API Result {
public:
    explicit Result(uint32_t status = 0) : status_(status) {}
    Result(const Result &) = default;
    Result &operator=(const Result &) = default;
    virtual ~Result();

    uint32_t status() const { return status_; }

private:
    uint32_t status_;
};

class PORTLIB_API PortGate {
public:
    static PortGate &Instance();

    Result outbyte(uint16_t port, uint8_t value);
    Result inbyte(uint16_t port, uint8_t *value);

private:
    PortGate() = default;
};

} // namespace portlib
