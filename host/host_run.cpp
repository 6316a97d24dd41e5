#include "host_run.h"

#include <string>

#include "battery_rules/host_keys.h"
#include "stop_signals.h"

namespace {
constexpr int kStandardInput = 0;

// The module asks with its own keys: the charge test to plug the cable in,
// the discharge test to unplug it.
bool asksToPlug(const std::string &message) {
    return message != keys::PLEASE_UNPLUG_AC;
}
} // namespace

HostRun::HostRun(SystemComponent *target, std::vector<TestParameter> parameters,
                 HostMachine &machine, RunView &view, PromptAnswer answer, RunRecord &record)
    : target_(target), parameters_(std::move(parameters)), machine_(machine), view_(view),
      answer_(answer), record_(record) {}

bool HostRun::isStopRequested() {
    return stop_signals::requested() || machine_.stopRequested();
}

uint32_t *HostRun::getSystemEvents() {
    systemEvents_ = machine_.systemEvents();
    return &systemEvents_;
}

void HostRun::addEntry(std::string text, uint32_t level, uint32_t) {
    view_.entry(text, level);
    record_.entries.push_back({std::move(text), level});
}

void HostRun::updateProgress(uint8_t percent, const std::string &text) {
    view_.progress(percent, text);
    record_.progress.push_back({percent, text});
    record_.samples.push_back(machine_.sample());
}

void HostRun::requestInput(const InputRequest &request) {
    record_.prompts.push_back(request.message);
    view_.prompt(request.title, request.message);
    const bool plug = asksToPlug(request.message);
    bool act = true;
    if (answer_ == PromptAnswer::Ask) {
        // Asked on standard error, so a JSON report on standard output still
        // leaves the person told which way the cable must go.
        view_.ask(std::string(plug ? "Plug in the AC cable" : "Unplug the AC cable") +
                  ", then press Enter (or type n and Enter to leave it): ");
        std::string line;
        if (stop_signals::readLine(kStandardInput, line)) {
            act = line.empty() || (line[0] != 'n' && line[0] != 'N');
        }
        // No answer at all (standard input closed): do what was asked.
    }
    if (stop_signals::requested()) {
        // Nobody waits for the cable any more: the run ends as it stands.
        view_.answered("stopped, left as it is");
    } else if (!act) {
        view_.answered("left as it is");
    } else if (!machine_.controlsAcCable()) {
        view_.answered("the AC line is read as it is now");
    } else if (machine_.userIgnoresPrompts()) {
        view_.answered("the user ignores the request");
    } else {
        machine_.setAcCable(plug);
        view_.answered(plug ? "AC cable plugged in" : "AC cable unplugged");
    }
}

void HostRun::postNotice(const std::string &key, const NoticeList &pairs) {
    if (!record_.notices.empty() && record_.notices.back().key == key &&
        record_.notices.back().pairs == pairs) {
        ++record_.notices.back().times;
        return;
    }
    record_.notices.push_back({key, pairs, 1});
    view_.notice(key);
}
