#include "console_run.h"

#include <cstdio>

volatile std::sig_atomic_t gStopRequested = 0;

namespace {
extern "C" void onInterrupt(int) { gStopRequested = 1; }

const char *levelName(uint32_t level) {
    switch (level) {
    case 0: return "info";
    case 1: return "warning";
    case 2: return "failure";
    default: return "level?";
    }
}
} // namespace

void installStopHandler() { std::signal(SIGINT, onInterrupt); }

ConsoleRun::ConsoleRun(SystemComponent *target, std::vector<TestParameter> parameters)
    : target_(target), parameters_(std::move(parameters)) {}

void ConsoleRun::addEntry(std::string text, uint32_t level, uint32_t) {
    std::printf("    log [%s] %s\n", levelName(level), text.c_str());
}

void ConsoleRun::updateProgress(uint8_t percent, const std::string &text) {
    if (text.empty() && percent == lastPercent_) return;
    lastPercent_ = percent;
    if (text.empty()) {
        std::printf("    %3u%%\n", static_cast<unsigned>(percent));
    } else {
        std::printf("    %3u%% %s\n", static_cast<unsigned>(percent), text.c_str());
    }
    std::fflush(stdout);
}

void ConsoleRun::requestInput(const InputRequest &request) {
    std::printf("    %s: %s\n", request.title.c_str(), request.message.c_str());
}

void ConsoleRun::postNotice(const std::string &key, const NoticeList &pairs) {
    std::printf("    notice %s", key.c_str());
    for (const auto &pair : pairs) std::printf(" %s=%s", pair.first.c_str(), pair.second.c_str());
    std::printf("\n");
}
