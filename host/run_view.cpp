#include "run_view.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "terminal.h"

namespace {
constexpr const char *kRed = "\033[31m";
constexpr const char *kYellow = "\033[33m";
constexpr const char *kGreen = "\033[32m";
constexpr const char *kReset = "\033[0m";
constexpr uint32_t kBarWidth = 30;
constexpr uint32_t kPlainStep = 10; // plain output shows every tenth percent

// Pieces of a report line such as "INITIAL_... || FINAL_...".
std::vector<std::string> partsOf(const std::string &text) {
    std::vector<std::string> parts;
    size_t start = 0;
    for (size_t at; (at = text.find(" || ", start)) != std::string::npos; start = at + 4) {
        parts.push_back(text.substr(start, at - start));
    }
    parts.push_back(text.substr(start));
    return parts;
}
} // namespace

RunView::RunView(Mode mode, bool colour, bool rawKeys, const Language &language)
    : mode_(mode), colour_(colour && mode == Mode::Terminal), rawKeys_(rawKeys),
      language_(language) {}

RunView::Mode RunView::modeFor(bool json) {
    if (json) return Mode::Silent;
    return terminal::isTerminal(stdout) ? Mode::Terminal : Mode::Lines;
}

bool RunView::colourWanted() {
    const char *noColour = std::getenv("NO_COLOR");
    return noColour == nullptr || *noColour == '\0';
}

void RunView::say(const std::string &line, const char *colour) {
    if (mode_ == Mode::Silent) return;
    clearBar();
    const std::string shown = text_escape::forTerminal(line);
    if (colour_ && colour != nullptr) {
        std::printf("%s%s%s\n", colour, shown.c_str(), kReset);
    } else {
        std::printf("%s\n", shown.c_str());
    }
    drawBar();
    std::fflush(stdout);
}

void RunView::drawBar() {
    if (mode_ != Mode::Terminal || testName_.empty()) return;
    const uint32_t filled = std::min(percent_, 100u) * kBarWidth / 100;
    std::printf("  [%s%s] %3u%%", std::string(filled, '#').c_str(),
                std::string(kBarWidth - filled, '.').c_str(), percent_);
    barShown_ = true;
}

void RunView::clearBar() {
    if (!barShown_) return;
    std::printf("\r\033[K");
    barShown_ = false;
}

bool RunView::alreadySaid(const std::string &text) const {
    for (const std::string &part : partsOf(text)) {
        if (std::find(said_.begin(), said_.end(), part) == said_.end()) return false;
    }
    return true;
}

void RunView::flushPending() {
    if (pending_.empty()) return;
    const std::string text = pending_;
    pending_.clear();
    for (const std::string &part : partsOf(text)) {
        for (const std::string &line : language_.lines(part, rawKeys_)) say("    " + line);
    }
}

void RunView::begin(const std::string &testName, const std::string &device) {
    flushPending();
    testName_.clear();
    said_.clear();
    percent_ = 0;
    lastPlainStep_ = 0;
    say(text(testName) + (device.empty() ? "" : " on battery " + device));
    testName_ = testName;
    drawBar();
}

void RunView::entry(const std::string &message, uint32_t level) {
    if (pending_ == message) {
        pending_.clear();
    } else {
        flushPending();
    }
    said_.push_back(message);
    const char *colour = level == 2 ? kRed : level == 1 ? kYellow : nullptr;
    const char *mark = level == 2 ? "  ! " : level == 1 ? "  ~ " : "    ";
    for (const std::string &line : language_.lines(message, rawKeys_)) say(mark + line, colour);
}

void RunView::progress(uint32_t percent, const std::string &message) {
    percent_ = percent;
    if (!message.empty() && !alreadySaid(message) && message != pending_) {
        flushPending();
        said_.push_back(message);
        pending_ = message;
    }
    if (mode_ == Mode::Terminal) {
        clearBar();
        drawBar();
        std::fflush(stdout);
    } else if (mode_ == Mode::Lines && percent / kPlainStep > lastPlainStep_) {
        lastPlainStep_ = percent / kPlainStep;
        say("    " + std::to_string(percent) + "%");
    }
}

void RunView::notice(const std::string &key) {
    say("  note: " + text(key), kYellow);
}

void RunView::prompt(const std::string &title, const std::string &message) {
    flushPending();
    say("  " + text(title) + ": " + text(message), kYellow);
}

void RunView::ask(const std::string &question) {
    clearBar();
    std::fflush(stdout);
    std::fprintf(stderr, "  %s", question.c_str());
    std::fflush(stderr);
}

void RunView::answered(const std::string &what) {
    say("  (" + what + ")");
}

void RunView::end(TestResultCode result) {
    flushPending();
    const char *colour = result == ResultSuccess ? kGreen : result == ResultFailed ? kRed : kYellow;
    clearBar();
    testName_.clear();
    const std::string verdict = result == ResultSuccess         ? "passed"
                                : result == ResultFailed        ? "FAILED"
                                : result == ResultWarning       ? "passed with a warning"
                                : result == ResultAborted       ? "aborted"
                                : result == ResultNotApplicable ? "not applicable"
                                : result == ResultInvalid       ? "invalid"
                                                                : "unknown result";
    say("  => " + verdict + " (" + std::to_string(static_cast<int>(result)) + ")", colour);
}
