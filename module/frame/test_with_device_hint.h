#pragma once

#include <string>
#include <utility>

#include "battery_module/execution_context.h"
#include "battery_module/test.h"

// Wraps every test the host can reach: forwards everything to the wrapped
// test and, after a failed verdict only, tells the host which device to
// suspect.
template <typename T>
class TestWithDeviceHint : public Test {
public:
    TestWithDeviceHint(const std::string &hint, const EntityId &id)
        : Test(EntityId(0, 0, 0)), wrapped_(id), hint_(hint) {
        assignEntityId(wrapped_.getEntityId());
    }
    ~TestWithDeviceHint() override = default;

    bool prepare(SystemComponent *component) override { return wrapped_.prepare(component); }

    TestResultCode execute(ExecutionContext *context) override {
        const TestResultCode result = wrapped_.execute(context);
        if (result != ResultFailed) {
            return result;
        }
        // A wrapped test fails only after it has used both objects, so they
        // exist; the checks keep a misbehaving context from crashing us.
        if (ResultLog *log = context->getResultLog()) {
            log->addEntry(hint_, 0, 0);
        }
        if (UserChannel *channel = context->getUserChannel()) {
            channel->updateProgress(100, hint_);
        }
        return ResultFailed;
    }

    bool isInteractive() override { return wrapped_.isInteractive(); }
    bool falseQuery() override { return wrapped_.falseQuery(); }

    std::vector<TestParameter> getParameters(void *first, void *second, uint32_t) override {
        return wrapped_.getParameters(first, second, 0);
    }

    void setParameter(TestParameter parameter) override {
        TestParameter copy = parameter;
        wrapped_.setParameter(std::move(copy));
    }

    std::vector<TestParameter> getParameterDefinitions(void *first, void *second,
                                                       uint32_t) override {
        return wrapped_.getParameterDefinitions(first, second, 0);
    }

    bool validateParameters(const std::vector<TestParameter> &parameters,
                            std::vector<TestParameterIssue> &issues) override {
        return wrapped_.validateParameters(parameters, issues);
    }

    bool validateParametersFor(const std::vector<TestParameter> &parameters, void *target,
                               std::vector<TestParameterIssue> &issues) override {
        return wrapped_.validateParametersFor(parameters, target, issues);
    }

    bool applyConfiguration(Configuration configuration, void *target) override {
        Configuration copy = configuration;
        return wrapped_.applyConfiguration(std::move(copy), target);
    }

    void reset() override { wrapped_.reset(); }

    T &wrapped() { return wrapped_; }
    const std::string &hint() const { return hint_; }

private:
    T wrapped_;
    std::string hint_;
};
