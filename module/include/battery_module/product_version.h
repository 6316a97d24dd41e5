#pragma once

#include <cstdint>

// Version numbers of the module, fixed at build time.
class ProductVersion {
public:
    ProductVersion(uint32_t major, uint32_t minor, uint32_t revision, uint32_t build)
        : major_(major), minor_(minor), revision_(revision), build_(build) {}
    virtual ~ProductVersion();
    virtual uint32_t getMajor();
    virtual uint32_t getMinor();
    virtual uint32_t getRevision();
    virtual uint32_t getBuild();

private:
    uint32_t major_;
    uint32_t minor_;
    uint32_t revision_;
    uint32_t build_;
};
