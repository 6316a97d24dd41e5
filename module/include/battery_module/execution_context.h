#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "battery_module/input_request.h"
#include "battery_module/test_parameter.h"

class SystemComponent;

// The host's side of a run. A host derives from these three classes; the
// module only calls them. The order of the virtual operations is a binary
// contract, so positions the module never calls are kept as reserved slots.

class ResultLog {
public:
    virtual ~ResultLog() = default;
    // level: 0 plain, 1 warning finding, 2 failed verdict. `reserved` is always 0.
    virtual void addEntry(std::string text, uint32_t level, uint32_t reserved) = 0;
};

class UserChannel {
public:
    using NoticeList = std::vector<std::pair<std::string, std::string>>;

    virtual ~UserChannel() = default;
    virtual void updateProgress(uint8_t percent, const std::string &text) = 0;
    virtual void requestInput(const InputRequest &request) = 0;
    virtual void reservedPosition3() {}
    virtual bool isInputRecognized() = 0;
    virtual void postNotice(const std::string &key, const NoticeList &pairs) = 0;
};

// System event bits: 0x04 aborts nothing; 0x01, 0x02, 0x08..0x80 abort every
// test; 0x100 aborts only the charge and discharge tests.
class ExecutionContext {
public:
    virtual ~ExecutionContext() = default;
    virtual SystemComponent *getTargetComponent() = 0;
    virtual ResultLog *getResultLog() = 0;
    virtual UserChannel *getUserChannel() = 0;
    virtual void reservedPosition4() {}
    virtual bool isStopRequested() = 0;
    virtual uint32_t *getSystemEvents() = 0;
    virtual void reservedPosition7() {}
    virtual std::vector<TestParameter> getParameters() = 0;
};
