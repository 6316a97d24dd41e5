#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "battery_module/execution_context.h"

// A host that keeps everything a test tells it, in order, so a test can
// compare the whole conversation. Every answer it gives can be set.
class RecordingHost : public ExecutionContext, public ResultLog, public UserChannel {
public:
    struct Event {
        enum Kind { Entry, Progress, Input, Notice } kind;
        std::string text;
        uint32_t number; // level of an entry, percent of a progress update
        bool operator==(const Event &other) const {
            return kind == other.kind && text == other.text && number == other.number;
        }
    };

    SystemComponent *target = nullptr;
    bool stop = false;
    uint32_t events = 0;
    bool inputRecognized = true;
    // Answers that change during a run: the n-th call gets the n-th value,
    // later calls the last one. Empty: the plain field above answers.
    std::vector<uint32_t> eventsByCall;
    std::vector<bool> recognizedByCall;
    // n > 0: from the n-th stop query on, a stop is requested.
    uint32_t stopFromCall = 0;
    uint32_t eventCalls = 0, recognizedCalls = 0, stopCalls = 0;
    std::vector<TestParameter> parameters;
    std::vector<Event> record;
    // Called on each requestInput, e.g. to plug the emulated AC cable.
    std::function<void(const InputRequest &)> onInput;
    bool nullLog = false, nullChannel = false, nullEvents = false;

    SystemComponent *getTargetComponent() override { return target; }
    ResultLog *getResultLog() override { return nullLog ? nullptr : this; }
    UserChannel *getUserChannel() override { return nullChannel ? nullptr : this; }
    bool isStopRequested() override {
        ++stopCalls;
        return stop || (stopFromCall != 0 && stopCalls >= stopFromCall);
    }
    uint32_t *getSystemEvents() override {
        if (nullEvents) return nullptr;
        if (!eventsByCall.empty()) events = nth(eventsByCall, eventCalls++);
        return &events;
    }
    std::vector<TestParameter> getParameters() override { return parameters; }

    void addEntry(std::string text, uint32_t level, uint32_t) override {
        record.push_back({Event::Entry, std::move(text), level});
    }
    void updateProgress(uint8_t percent, const std::string &text) override {
        record.push_back({Event::Progress, text, percent});
    }
    void requestInput(const InputRequest &request) override {
        record.push_back({Event::Input, request.message, request.kind});
        if (onInput) onInput(request);
    }
    bool isInputRecognized() override {
        if (recognizedByCall.empty()) return inputRecognized;
        return nth(recognizedByCall, recognizedCalls++);
    }
    void postNotice(const std::string &key, const NoticeList &) override {
        record.push_back({Event::Notice, key, 0});
    }

    std::vector<Event> entries() const { return only(Event::Entry); }
    std::vector<Event> progress() const { return only(Event::Progress); }

private:
    template <typename T> static T nth(const std::vector<T> &values, size_t call) {
        return values[call < values.size() ? call : values.size() - 1];
    }
    std::vector<Event> only(Event::Kind kind) const {
        std::vector<Event> picked;
        for (const Event &event : record)
            if (event.kind == kind) picked.push_back(event);
        return picked;
    }
};

// Readable failure messages: kind, number and text of each event.
inline void PrintTo(const RecordingHost::Event &event, std::ostream *out) {
    static const char *const kinds[] = {"entry", "progress", "input", "notice"};
    *out << kinds[event.kind] << "(" << event.number << ", \"" << event.text << "\")";
}

inline RecordingHost::Event entry(const std::string &text, uint32_t level) {
    return {RecordingHost::Event::Entry, text, level};
}
inline RecordingHost::Event progress(uint32_t percent, const std::string &text) {
    return {RecordingHost::Event::Progress, text, percent};
}
