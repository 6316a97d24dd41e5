#pragma once

#include <cstdint>
#include <vector>

#include "battery_module/entity_id.h"

class Test;

// A named group of tests. Holds bare pointers and owns nothing.
class Diagnostic {
public:
    Diagnostic(EntityId id, std::vector<Test *> tests);
    virtual ~Diagnostic();

    virtual EntityId getEntityId();
    virtual uint64_t getTestCount();
    virtual Test *getTest(uint32_t index);
    virtual Test *findTest(const EntityId &id);

private:
    EntityId entityId_;
    std::vector<Test *> tests_;
};
