#pragma once

#include <string>

#include "instrumentation_answer.h"
#include "platform_layer/machine.h"

namespace platform_layer {

// The namespace the service knows.
bool knownNamespace(const std::string &name);

// The service's answer to one query of the form
//   SELECT p1, p2 FROM Win32_Battery [WHERE Property = 'text']
// over the machine's battery rows: an HRESULT status and the rows found.
// Names and strings compare without case, as WQL does.
InstrumentationAnswer queryInstrumentation(Machine &machine, const std::string &language,
                                           const std::string &wql);

} // namespace platform_layer
