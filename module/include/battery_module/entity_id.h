#pragma once

#include <cstdint>

// Identity of anything a host can address: module.diagnostic.test.
// Only the composite decides equality and order; the fields are informative.
class EntityId {
public:
    constexpr EntityId(uint16_t module, uint32_t diagnostic, uint32_t test)
        : module_(module), diagnostic_(diagnostic & kFieldMask), test_(test & kFieldMask),
          composite_((static_cast<uint64_t>(module_) << 48) |
                     (static_cast<uint64_t>(diagnostic_) << 24) | test_) {}
    constexpr EntityId(const EntityId &) = default;
    constexpr EntityId &operator=(const EntityId &) = default;

    constexpr uint16_t module() const { return module_; }
    constexpr uint32_t diagnostic() const { return diagnostic_; }
    constexpr uint32_t test() const { return test_; }
    constexpr uint64_t composite() const { return composite_; }

    friend bool operator==(const EntityId &a, const EntityId &b) { return a.composite_ == b.composite_; }
    friend bool operator!=(const EntityId &a, const EntityId &b) { return !(a == b); }
    friend bool operator<(const EntityId &a, const EntityId &b) { return a.composite_ < b.composite_; }

private:
    static constexpr uint32_t kFieldMask = 0x00FFFFFFu;
    uint16_t module_;
    uint32_t diagnostic_;
    uint32_t test_;
    uint64_t composite_;
};
