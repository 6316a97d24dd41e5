#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "battery_module/entity_id.h"
#include "battery_module/test_parameter.h"
#include "battery_module/test_result_code.h"

class ExecutionContext;
class SystemComponent;

// Abstract base of every test. The order of the virtual operations is a
// binary contract with the host.
class Test {
public:
    using Configuration = std::map<std::string, std::map<std::string, std::string>>;

    explicit Test(const EntityId &id) : entityId_(id) {}
    virtual ~Test();

    EntityId getEntityId() const { return entityId_; }

    virtual bool prepare(SystemComponent *component) = 0;
    virtual TestResultCode execute(ExecutionContext *context) = 0;
    virtual bool isInteractive() = 0;
    virtual bool falseQuery();
    virtual std::vector<TestParameter> getParameters(void *first, void *second, uint32_t third);
    virtual void setParameter(TestParameter parameter);
    virtual std::vector<TestParameter> getParameterDefinitions(void *first, void *second,
                                                               uint32_t third);
    virtual bool validateParameters(const std::vector<TestParameter> &parameters,
                                    std::vector<TestParameterIssue> &issues);
    virtual bool validateParametersFor(const std::vector<TestParameter> &parameters, void *target,
                                       std::vector<TestParameterIssue> &issues);
    virtual bool applyConfiguration(Configuration configuration, void *target);
    virtual void reset();

protected:
    void assignEntityId(const EntityId &id) { entityId_ = id; }

private:
    EntityId entityId_;
    std::vector<EntityId> reserved_;
};
