#include "stop_signals.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace {
volatile std::sig_atomic_t gReceived = 0;
constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};
constexpr int kPollMilliseconds = 200; // a stop is seen within this long at a prompt

extern "C" void onStopSignal(int number) {
    if (gReceived == 0) gReceived = number;
}
} // namespace

void stop_signals::install() {
    struct sigaction action = {};
    action.sa_handler = onStopSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = 0;
    for (int number : kSignals) sigaction(number, &action, nullptr);
}

int stop_signals::received() {
    return gReceived;
}

bool stop_signals::requested() {
    return gReceived != 0;
}

void stop_signals::endLikeTheSignal() {
    const int number = gReceived;
    if (number == 0 || number == SIGINT) return;
    std::signal(number, SIG_DFL);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, number);
    sigprocmask(SIG_UNBLOCK, &set, nullptr);
    raise(number);
}

bool stop_signals::readLine(int descriptor, std::string &line) {
    line.clear();
    while (!requested()) {
        pollfd waiting = {descriptor, POLLIN, 0};
        const int ready = poll(&waiting, 1, kPollMilliseconds);
        if (ready < 0 && errno != EINTR) return false;
        if (ready <= 0) continue;
        char c = 0;
        const ssize_t got = read(descriptor, &c, 1);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return got == 0 && !line.empty();
        if (c == '\n') return !requested();
        line.push_back(c);
    }
    return false;
}
