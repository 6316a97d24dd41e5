#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "emulator/emulator_api.h"
#include "emulator/scenario.h"

namespace emulator {

// One property value of an instance, in the form the service hands it out.
struct WmiValue {
    enum Kind { Null, Text, Int32, Raw } kind = Null;
    std::string text;
    int32_t number = 0;
    InstrumentationSection::RawVariant raw; // for Raw
};

using WmiInstance = std::map<std::string, WmiValue>;

struct WmiAnswer {
    int32_t status = 0; // an HRESULT: 0, or the error a real service gives
    std::vector<WmiInstance> rows;
};

// The management instrumentation service of the emulated notebook. It knows
// the class Win32_Battery in ROOT\CIMV2, one instance per battery with a
// unique identifier, and WQL of the form
//   SELECT p1, p2 FROM Win32_Battery [WHERE DeviceID = 'text']
// with any of its properties. Names and strings compare without case, as
// WQL does.
class EMULATOR_API InstrumentationService {
public:
    static constexpr int32_t kInvalidNamespace = static_cast<int32_t>(0x8004100Eu);
    static constexpr int32_t kInvalidClass = static_cast<int32_t>(0x80041010u);
    static constexpr int32_t kInvalidQuery = static_cast<int32_t>(0x80041017u);
    static constexpr int32_t kInvalidQueryType = static_cast<int32_t>(0x80041018u);

    static bool knowsNamespace(const std::string &name);
    static WmiAnswer query(const Scenario &scenario, const std::string &language,
                           const std::string &wql);
};

} // namespace emulator
