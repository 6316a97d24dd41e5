#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "battery_module/execution_context.h"
#include "host_machine.h"
#include "model/run_record.h"
#include "run_view.h"

// How the host answers a prompt to plug or unplug the AC cable.
enum class PromptAnswer {
    Ask,       // read the answer from standard input; at its end, do what is asked
    Automatic, // do what is asked at once (--yes)
};

// One test run: hands the module the chosen battery and parameters, shows
// and records what the module says, and answers its prompts.
class HostRun : public ExecutionContext, public ResultLog, public UserChannel {
public:
    HostRun(SystemComponent *target, std::vector<TestParameter> parameters, HostMachine &machine,
            RunView &view, PromptAnswer answer, RunRecord &record);

    SystemComponent *getTargetComponent() override { return target_; }
    ResultLog *getResultLog() override { return this; }
    UserChannel *getUserChannel() override { return this; }
    bool isStopRequested() override;
    uint32_t *getSystemEvents() override;
    std::vector<TestParameter> getParameters() override { return parameters_; }

    void addEntry(std::string text, uint32_t level, uint32_t reserved) override;

    void updateProgress(uint8_t percent, const std::string &text) override;
    void requestInput(const InputRequest &request) override;
    bool isInputRecognized() override { return true; }
    void postNotice(const std::string &key, const NoticeList &pairs) override;

private:
    SystemComponent *target_;
    std::vector<TestParameter> parameters_;
    HostMachine &machine_;
    RunView &view_;
    PromptAnswer answer_;
    RunRecord &record_;
    uint32_t systemEvents_ = 0;
};
