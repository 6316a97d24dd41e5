#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace platform_layer {

// One property value of an instrumentation instance, in the form the
// service hands it out.
struct InstrumentationValue {
    enum Kind { Null, Text, Int32, Raw } kind = Null;
    std::string text;
    int32_t number = 0;
    // Raw: a variant of this type held by value in `bits`, or VT_BSTR with
    // `text`, as a hostile service might hand out.
    uint16_t variantType = 0;
    uint64_t bits = 0;
};

using InstrumentationInstance = std::map<std::string, InstrumentationValue>;

// A query's answer: the status a real service gives (an HRESULT, 0 success)
// and the instances found.
struct InstrumentationAnswer {
    int32_t status = 0;
    std::vector<InstrumentationInstance> rows;
};

} // namespace platform_layer
