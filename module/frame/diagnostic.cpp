#include "battery_module/diagnostic.h"

#include <utility>

#include "battery_module/test.h"

Diagnostic::Diagnostic(EntityId id, std::vector<Test *> tests)
    : entityId_(id), tests_(std::move(tests)) {}

Diagnostic::~Diagnostic() = default;

EntityId Diagnostic::getEntityId() { return entityId_; }

uint64_t Diagnostic::getTestCount() { return tests_.size(); }

Test *Diagnostic::getTest(uint32_t index) { return index < tests_.size() ? tests_[index] : nullptr; }

Test *Diagnostic::findTest(const EntityId &id) {
    for (Test *test : tests_) {
        if (test != nullptr && test->getEntityId().composite() == id.composite()) {
            return test;
        }
    }
    return nullptr;
}
