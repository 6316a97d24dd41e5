#include "battery_module/product_version.h"

ProductVersion::~ProductVersion() = default;
uint32_t ProductVersion::getMajor() { return major_; }
uint32_t ProductVersion::getMinor() { return minor_; }
uint32_t ProductVersion::getRevision() { return revision_; }
uint32_t ProductVersion::getBuild() { return build_; }
