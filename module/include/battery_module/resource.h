#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "battery_module/entity_id.h"

// One row of an option table of the host's command-line program.
struct CommandLineOption {
    std::string shortName;
    std::string longName;
    int32_t kind = 0; // 0 a diagnostic's row, 2 a test's row
};

// What a host shows of a module before anything runs.
class Resource {
public:
    using OptionTable = std::map<EntityId, CommandLineOption>;
    using RangeLabels = std::map<int32_t, std::string>;

    explicit Resource(const EntityId &id) : entityId_(id) {}
    virtual ~Resource();

    virtual void *getAuxiliaryObject();
    virtual std::string getDiagnosticName(const EntityId &id) = 0;
    virtual std::string getTestName(const EntityId &id) = 0;
    virtual std::string getDiagnosticTooltip(const EntityId &id) = 0;
    virtual std::string getTestDescription(const EntityId &id) = 0;
    virtual std::string getHelpText();
    virtual std::string getModuleName();
    virtual std::string getComponentCode();
    virtual OptionTable getTestOptions();
    virtual OptionTable getDiagnosticOptions();
    virtual RangeLabels getRangeLabels();
    virtual void setRangeLabels(const RangeLabels &labels);

protected:
    // A row whose composite is already present is dropped; the first stays.
    void addTestOption(const EntityId &id, const CommandLineOption &option) {
        testOptions.emplace(id, option);
    }
    void addDiagnosticOption(const EntityId &id, const CommandLineOption &option) {
        diagnosticOptions.emplace(id, option);
    }

    EntityId entityId_;
    std::string helpText;
    std::string moduleName;
    std::string componentCode;
    RangeLabels rangeLabels;
    OptionTable testOptions;
    OptionTable diagnosticOptions;
    void *auxiliaryObject = nullptr;
};
