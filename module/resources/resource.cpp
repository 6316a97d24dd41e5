#include "battery_module/resource.h"

Resource::~Resource() = default;

void *Resource::getAuxiliaryObject() { return auxiliaryObject; }

std::string Resource::getHelpText() { return helpText; }

std::string Resource::getModuleName() { return moduleName; }

std::string Resource::getComponentCode() { return componentCode; }

Resource::OptionTable Resource::getTestOptions() { return testOptions; }

Resource::OptionTable Resource::getDiagnosticOptions() { return diagnosticOptions; }

Resource::RangeLabels Resource::getRangeLabels() { return rangeLabels; }

void Resource::setRangeLabels(const RangeLabels &labels) {
    if (&labels == &rangeLabels) {
        return;
    }
    rangeLabels = labels;
}
