#pragma once

#include <csignal>
#include <cstdint>
#include <string>
#include <vector>

#include "battery_module/execution_context.h"

// Set by Ctrl-C; every run's stop request reads it.
extern volatile std::sig_atomic_t gStopRequested;
void installStopHandler();

// One test run on the console: prints the log entries and progress that the
// module sends and hands it the chosen component and parameters.
class ConsoleRun : public ExecutionContext, public ResultLog, public UserChannel {
public:
    ConsoleRun(SystemComponent *target, std::vector<TestParameter> parameters);

    SystemComponent *getTargetComponent() override { return target_; }
    ResultLog *getResultLog() override { return this; }
    UserChannel *getUserChannel() override { return this; }
    bool isStopRequested() override { return gStopRequested != 0; }
    uint32_t *getSystemEvents() override { return &systemEvents_; }
    std::vector<TestParameter> getParameters() override { return parameters_; }

    void addEntry(std::string text, uint32_t level, uint32_t reserved) override;

    void updateProgress(uint8_t percent, const std::string &text) override;
    void requestInput(const InputRequest &request) override;
    bool isInputRecognized() override { return true; }
    void postNotice(const std::string &key, const NoticeList &pairs) override;

private:
    SystemComponent *target_;
    std::vector<TestParameter> parameters_;
    uint32_t systemEvents_ = 0;
    int lastPercent_ = -1;
};
