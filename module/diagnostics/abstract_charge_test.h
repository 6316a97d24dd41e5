#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "battery_module/test.h"

class ExecutionContext;
class GenericBatteryComponent;
class GenericBatteryComponentManager;
class PowerManager;
class SystemComponent;
class Timer;

// The engine of the two interactive tests: it checks that the machine may
// run the test, asks the user to change the AC state if needed, forces a
// power scheme and a display brightness for the measured time, puts the
// machine back and lets the subclass judge the change of charge.
class AbstractChargeTest : public Test {
public:
    explicit AbstractChargeTest(const EntityId &id);
    ~AbstractChargeTest() override;
    AbstractChargeTest(const AbstractChargeTest &) = delete;
    AbstractChargeTest &operator=(const AbstractChargeTest &) = delete;

    bool prepare(SystemComponent *component) override;
    TestResultCode execute(ExecutionContext *context) override;
    bool isInteractive() override { return true; }
    bool falseQuery() override { return false; }
    std::vector<TestParameter> getParameters(void *first, void *second, uint32_t third) override;
    void setParameter(TestParameter parameter) override;
    std::vector<TestParameter> getParameterDefinitions(void *first, void *second,
                                                       uint32_t third) override;
    bool validateParameters(const std::vector<TestParameter> &chosen,
                            std::vector<TestParameterIssue> &issues) override;
    bool validateParametersFor(const std::vector<TestParameter> &chosen, void *target,
                               std::vector<TestParameterIssue> &issues) override;
    void reset() override;

    virtual void beforeRun() {}
    virtual bool isDisruptiveEvent(uint32_t events) { return (events & kDisruptiveEvents) != 0; }
    virtual TestResultCode checkChargeLevel(ExecutionContext *context,
                                            GenericBatteryComponent *component);
    virtual bool isExpectedAcState(bool onAc) = 0;
    virtual TestResultCode judgeChargeChange(ExecutionContext *context, double initialPercent,
                                             double finalPercent) = 0;
    virtual TestResultCode saveBrightness(ExecutionContext *context);
    virtual TestResultCode applyLoadStep(int32_t iteration, ExecutionContext *context);
    virtual TestResultCode restoreBrightness(ExecutionContext *context);
    virtual bool isRunComplete(GenericBatteryComponent *component);

    double getDurationSeconds() const { return durationSeconds; }
    bool holdsAboveCharge() const { return holdAboveCharge; }
    int32_t getProgressPercent() const { return progressPercent; }

    static constexpr double kDefaultDurationSeconds = 600.0;
    // Bit 2 aborts nothing; bit 8 aborts only the charge tests.
    static constexpr uint32_t kDisruptiveEvents = 0x1FB;
    static constexpr uint32_t kSleepMilliseconds = 500;

protected:
    // The battery component a run works on: a generic one as it is, the
    // generic component of our own manager for a smart one, else null.
    GenericBatteryComponent *resolveComponent(SystemComponent *target);

    // Both tests keep the AC level and put it back for AC and battery alike.
    void saveDisplayBrightness();
    void restoreDisplayBrightness();

    // The host's two channels; a host that gives none is simply not told.
    static void tell(ExecutionContext *context, uint8_t percent, const std::string &text);
    static void note(ExecutionContext *context, const std::string &text, uint32_t level);
    // Log and progress at 100 with the internal-error key; always ResultAborted.
    static TestResultCode internalError(ExecutionContext *context);
    // The refusal to start at a charge beyond the threshold: the refusal
    // and the advice to the log, the refusal to the channel.
    static TestResultCode refuseStart(ExecutionContext *context, const char *refusal,
                                      int32_t threshold, const char *advice);
    // The verdict on a change of charge in the direction the test wants:
    // more than half a point passes.
    TestResultCode judgeChange(ExecutionContext *context, double change);

    std::string nameKey;
    std::string acAbortMessage;
    std::string acPrompt;
    std::string failureMessage;
    uint32_t powerScheme = 0;
    int32_t progressPercent = 0;
    PowerManager *powerManager = nullptr;
    Timer *timer = nullptr;
    int32_t minimumChargePercent = 20;
    int32_t maximumChargePercent = 93;
    int32_t shownMaximumChargePercent = 93;
    double durationSeconds = kDefaultDurationSeconds;
    bool holdAboveCharge = false;
    std::string errorText;
    std::vector<TestParameter> parameters;
    GenericBatteryComponentManager *batteryManager = nullptr;
    uint32_t savedBrightness = 0;
    // False when the display could not be read: then nothing is put back.
    bool brightnessSaved = false;

private:
    TestResultCode run(ExecutionContext *context);
    bool checkForAbort(ExecutionContext *context);
    TestResultCode ensureAcState(ExecutionContext *context, GenericBatteryComponent *component);
    TestResultCode checkAcState(ExecutionContext *context, GenericBatteryComponent *component);
    TestResultCode measure(ExecutionContext *context, GenericBatteryComponent *component);
    // The elapsed share of the duration, cut to a whole percent, at most 100.
    int32_t elapsedPercent(uint32_t start, uint32_t current);
};

// The one parameter of the charge tests, as every test holds it from
// construction on.
TestParameter durationParameterDefinition();
// "key: message" of each issue but those of kind 0, joined with "; |".
std::string joinParameterIssues(const std::vector<TestParameterIssue> &issues);
