#pragma once

#include <cstdint>
#include <string>

#include "language.h"
#include "model/run_record.h"
#include "text_escape.h"

// How runs appear on the terminal: a progress bar redrawn in place on a
// terminal, plain lines elsewhere, nothing at all for a JSON report.
class RunView {
public:
    enum class Mode { Terminal, Lines, Silent };
    RunView(Mode mode, bool colour, bool rawKeys, const Language &language);

    static Mode modeFor(bool json);
    static bool colourWanted();

    void begin(const std::string &testName, const std::string &device);
    void entry(const std::string &text, uint32_t level);
    void progress(uint32_t percent, const std::string &text);
    void notice(const std::string &key);
    void prompt(const std::string &title, const std::string &message);
    void answered(const std::string &what);
    // A question on its own line, the answer to be typed behind it.
    void ask(const std::string &question);
    void end(TestResultCode result);

    // Text for a line the host writes itself, safe on a terminal.
    std::string text(const std::string &keyOrLine) const {
        return text_escape::forTerminal(language_.line(keyOrLine, rawKeys_));
    }

private:
    void say(const std::string &line, const char *colour = nullptr);
    void drawBar();
    void clearBar();
    bool alreadySaid(const std::string &text) const;
    // A progress text is held back for a moment: when the log entry that
    // usually follows carries the same text, that entry is shown instead,
    // with its level.
    void flushPending();

    Mode mode_;
    bool colour_;
    bool rawKeys_;
    const Language &language_;
    std::string testName_;
    uint32_t percent_ = 0;
    uint32_t lastPlainStep_ = 0;
    bool barShown_ = false;
    std::vector<std::string> said_;
    std::string pending_;
};
