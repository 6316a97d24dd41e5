#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "win32_api.h"

namespace platform_layer {

// A request of the battery class driver.
enum class DriverRequest { Tag, Information, Status };

// What a broken or hostile driver answers instead of the battery's own: a
// failure code, or these bytes cut to the caller's buffer.
struct RawAnswer {
    uint32_t status = 0;
    std::vector<uint8_t> bytes;
};

// A property value handed out as given: a variant of this type held by
// value in `bits`, or VT_BSTR with `text`.
struct RawVariant {
    uint16_t type = 0;
    uint64_t bits = 0;
    std::string text;
};

// How a machine breaks the protocols the layer speaks for it. The layer asks
// before it answers; a machine that keeps to the protocols (this machine)
// has none of these, which is what the defaults say.
class WIN32_API ProtocolFaults {
public:
    virtual ~ProtocolFaults();

    // --- The battery class driver of one battery, by the machine's name of it.
    // A request reached the battery's driver (a battery may leave after so many).
    virtual void driverRequested(const std::string &) {}
    virtual bool openFails(const std::string &) { return false; }
    // The tag request fails, yet leaves the tag in the caller's buffer.
    virtual bool tagFails(const std::string &) { return false; }
    virtual bool statusFails(const std::string &) { return false; }
    // Texts fill the whole buffer, with no terminator.
    virtual bool unterminatedTexts(const std::string &) { return false; }
    // The answer given instead of the battery's own; `level` names the
    // information level of an information request.
    virtual std::optional<RawAnswer> rawAnswer(const std::string &, DriverRequest,
                                               uint32_t /*level*/) {
        return std::nullopt;
    }

    // --- COM and the instrumentation service.
    // The named step fails ("CoInitializeEx", "CoCreateInstance",
    // "ConnectServer", "ExecQuery", "Get", ...).
    virtual bool comStepFails(const char *) { return false; }
    // COM on the thread before the module starts it: none, or an apartment
    // of the other or the same model; process security already set.
    enum class Apartment { None, Multithreaded, SingleThreaded };
    virtual Apartment apartmentBefore() { return Apartment::None; }
    virtual bool securitySetBefore() { return false; }
    // The battery rows' DesignVoltage is handed out as a 32-bit integer
    // rather than as the text a uint64 property travels as.
    virtual bool designVoltageAsInt32() { return false; }
    // Properties handed out as given, in every row.
    virtual std::map<std::string, RawVariant> rawProperties() { return {}; }
};

} // namespace platform_layer
