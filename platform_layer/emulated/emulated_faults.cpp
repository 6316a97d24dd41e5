#include "emulated_faults.h"

#include <cstdlib>

namespace platform_layer {

namespace {
emulator::Notebook &notebook() {
    return emulator::Notebook::instance();
}
} // namespace

std::optional<size_t> emulatedBattery(const std::string &name) {
    char *end = nullptr;
    const unsigned long index = std::strtoul(name.c_str(), &end, 10);
    if (name.empty() || *end != '\0' || index >= notebook().batteries().size()) return std::nullopt;
    return static_cast<size_t>(index);
}

const emulator::DriverFaults *EmulatedFaults::driver(const std::string &battery) {
    const std::optional<size_t> index = emulatedBattery(battery);
    return index ? &notebook().batteries()[*index].driver : nullptr;
}

void EmulatedFaults::driverRequested(const std::string &battery) {
    if (const std::optional<size_t> index = emulatedBattery(battery)) {
        notebook().driverRequested(*index);
    }
}

bool EmulatedFaults::openFails(const std::string &battery) {
    const emulator::DriverFaults *faults = driver(battery);
    return faults != nullptr && faults->openFails;
}

bool EmulatedFaults::tagFails(const std::string &battery) {
    const emulator::DriverFaults *faults = driver(battery);
    return faults != nullptr && faults->tagFails;
}

bool EmulatedFaults::statusFails(const std::string &battery) {
    const emulator::DriverFaults *faults = driver(battery);
    return faults != nullptr && faults->statusFails;
}

bool EmulatedFaults::unterminatedTexts(const std::string &battery) {
    const emulator::DriverFaults *faults = driver(battery);
    return faults != nullptr && faults->unterminatedTexts;
}

std::optional<RawAnswer> EmulatedFaults::rawAnswer(const std::string &battery,
                                                   DriverRequest request, uint32_t level) {
    const emulator::DriverFaults *faults = driver(battery);
    if (faults == nullptr) return std::nullopt;
    const uint32_t key = request == DriverRequest::Tag      ? emulator::DriverFaults::kRawTag
                         : request == DriverRequest::Status ? emulator::DriverFaults::kRawStatus
                                                            : level;
    const auto found = faults->rawAnswers.find(key);
    if (found == faults->rawAnswers.end()) return std::nullopt;
    return RawAnswer{found->second.status, found->second.bytes};
}

bool EmulatedFaults::comStepFails(const char *step) {
    return notebook().scenario().instrumentation.failingStep == step;
}

ProtocolFaults::Apartment EmulatedFaults::apartmentBefore() {
    const std::string &apartment = notebook().scenario().instrumentation.apartment;
    if (apartment == "multithreaded") return Apartment::Multithreaded;
    if (apartment == "single-threaded") return Apartment::SingleThreaded;
    return Apartment::None;
}

bool EmulatedFaults::securitySetBefore() {
    return notebook().scenario().instrumentation.securityAlreadySet;
}

bool EmulatedFaults::designVoltageAsInt32() {
    return notebook().scenario().instrumentation.designVoltageType == "int32";
}

std::map<std::string, RawVariant> EmulatedFaults::rawProperties() {
    std::map<std::string, RawVariant> given;
    for (const auto &property : notebook().scenario().instrumentation.rawProperties) {
        given[property.first] = {property.second.type, property.second.bits, property.second.text};
    }
    return given;
}

} // namespace platform_layer
