#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Takes typed values off the front of a fuzz input; an exhausted input gives
// zeros and empty texts, so every input decodes to something.
class FuzzInput {
public:
    FuzzInput(const uint8_t *data, size_t size) : data_(data), size_(size) {}

    uint8_t byte() { return at_ < size_ ? data_[at_++] : 0; }
    uint16_t word() { return static_cast<uint16_t>(byte() | byte() << 8); }
    uint32_t number() {
        return static_cast<uint32_t>(word() | static_cast<uint32_t>(word()) << 16);
    }
    uint64_t wide() { return number() | static_cast<uint64_t>(number()) << 32; }
    bool flag() { return (byte() & 1) != 0; }
    // A length from 0 to `limit`, drawn from one byte (small ones likely).
    size_t length(size_t limit) { return limit == 0 ? 0 : byte() % (limit + 1); }
    std::vector<uint8_t> bytes(size_t count) {
        std::vector<uint8_t> taken;
        while (taken.size() < count && at_ < size_) taken.push_back(data_[at_++]);
        return taken;
    }
    std::string text(size_t limit) {
        const std::vector<uint8_t> taken = bytes(length(limit));
        return std::string(taken.begin(), taken.end());
    }
    std::string rest() {
        const std::vector<uint8_t> taken = bytes(size_ - at_);
        return std::string(taken.begin(), taken.end());
    }
    bool empty() const { return at_ >= size_; }

private:
    const uint8_t *data_;
    size_t size_;
    size_t at_ = 0;
};
