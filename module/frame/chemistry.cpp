#include "frame/chemistry.h"

#include <cstring>

#include "frame/keys.h"

namespace chemistry {

namespace {

struct Entry {
    const char *code;
    const char *key;
    bool smartBattery; // reported by smart batteries
    bool driver;       // reported by the battery class driver
};

// Zinc-air and lithium-polymer only smart batteries report; the driver's
// alternative lithium-ion code only the driver.
constexpr Entry kTable[] = {
    {keys::CODE_LEAD_ACID, keys::LEAD_ACID, true, true},
    {keys::CODE_LITHIUM_ION, keys::LITHIUM_ION, true, true},
    {keys::CODE_LITHIUM_ION_ALT, keys::LITHIUM_ION, false, true},
    {keys::CODE_NICKEL_CADMIUM, keys::NICKEL_CADMIUM, true, true},
    {keys::CODE_NICKEL_METAL_HYDRIDE, keys::NICKEL_METAL_HYDRIDE, true, true},
    {keys::CODE_NICKEL_ZINC, keys::NICKEL_ZINC, true, true},
    {keys::CODE_RECHARGEABLE_ALKALINE_MANGANESE, keys::RECHARGEABLE_ALKALINE_MANGANESE, true, true},
    {"ZnAr", keys::ZINC_AIR, true, false},
    {"LiP", keys::LITHIUM_POLYMER, true, false},
};

bool sameCode(const std::string &given, const char *code, Source source) {
    if (given == code) return true;
    const size_t length = std::strlen(code);
    return source == Source::Driver && length == 3 && given.size() == 4 &&
           given.compare(0, 3, code) == 0 && (given[3] == '\0' || given[3] == ' ');
}

} // namespace

const char *keyOf(const std::string &code, Source source) {
    for (const Entry &entry : kTable) {
        const bool used = source == Source::SmartBattery ? entry.smartBattery : entry.driver;
        if (used && sameCode(code, entry.code, source)) return entry.key;
    }
    return nullptr;
}

} // namespace chemistry
