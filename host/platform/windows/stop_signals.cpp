#include "stop_signals.h"

#include <iostream>

// Windows has no hang-up or broken-pipe signals; Ctrl-C and Ctrl-Break ask
// for the stop, and a prompt's line comes from the console as it is.
namespace {
volatile std::sig_atomic_t gReceived = 0;

extern "C" void onStopSignal(int number) {
    if (gReceived == 0) gReceived = number;
    std::signal(number, onStopSignal);
}
} // namespace

void stop_signals::install() {
    std::signal(SIGINT, onStopSignal);
    std::signal(SIGTERM, onStopSignal);
    std::signal(SIGBREAK, onStopSignal);
}

int stop_signals::received() {
    return gReceived;
}

bool stop_signals::requested() {
    return gReceived != 0;
}

void stop_signals::endLikeTheSignal() {}

bool stop_signals::readLine(int, std::string &line) {
    return static_cast<bool>(std::getline(std::cin, line)) && !requested();
}
