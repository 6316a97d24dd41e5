#pragma once

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <systemd/sd-bus.h>

extern char **environ;

// A private bus stands in for the system bus: started once per test
// program, named by DBUS_SYSTEM_BUS_ADDRESS before anything connects.
namespace bus_mock {

inline pid_t spawn(const std::vector<std::string> &arguments, int output = -1) {
    std::vector<char *> argv;
    for (const std::string &argument : arguments)
        argv.push_back(const_cast<char *>(argument.c_str()));
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (output >= 0) posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    pid_t pid = -1;
    // Spawned without the test's preload, so the mocks see the real /tmp and /sys.
    std::vector<char *> environment;
    for (char **entry = environ; *entry != nullptr; ++entry) {
        if (std::string(*entry).rfind("LD_PRELOAD=", 0) != 0) environment.push_back(*entry);
    }
    environment.push_back(nullptr);
    if (posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environment.data()) != 0)
        pid = -1;
    posix_spawn_file_actions_destroy(&actions);
    return pid;
}

inline void stop(pid_t pid) {
    if (pid <= 0) return;
    kill(pid, SIGTERM);
    waitpid(pid, nullptr, 0);
}

// Starts the bus daemon and points the system bus address at it.
inline bool startPrivateSystemBus() {
    int pipeEnds[2];
    if (pipe(pipeEnds) != 0) return false;
    static pid_t daemon = -1;
    daemon =
        spawn({"/usr/bin/dbus-daemon", "--session", "--nofork", "--print-address=1"}, pipeEnds[1]);
    close(pipeEnds[1]);
    std::string address;
    char c;
    while (read(pipeEnds[0], &c, 1) == 1 && c != '\n') address.push_back(c);
    close(pipeEnds[0]);
    if (daemon <= 0 || address.empty()) return false;
    setenv("DBUS_SYSTEM_BUS_ADDRESS", address.c_str(), 1);
    std::atexit([] { stop(daemon); });
    return true;
}

inline bool nameHasOwner(const char *name) {
    sd_bus *bus = nullptr;
    if (sd_bus_open_system(&bus) < 0) return false;
    sd_bus_message *reply = nullptr;
    int owned = 0;
    if (sd_bus_call_method(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                           "org.freedesktop.DBus", "NameHasOwner", nullptr, &reply, "s",
                           name) >= 0) {
        sd_bus_message_read(reply, "b", &owned);
    }
    sd_bus_message_unref(reply);
    sd_bus_flush_close_unref(bus);
    return owned != 0;
}

// Gives a mock object a method that takes the arguments and does nothing.
inline bool addMethod(const char *service, const char *path, const char *interface,
                      const char *method, const char *signature) {
    sd_bus *bus = nullptr;
    if (sd_bus_open_system(&bus) < 0) return false;
    const int code =
        sd_bus_call_method(bus, service, path, "org.freedesktop.DBus.Mock", "AddMethod", nullptr,
                           nullptr, "sssss", interface, method, signature, "", "");
    sd_bus_flush_close_unref(bus);
    return code >= 0;
}

// One python-dbusmock service on the private bus; its log lists every call.
class Service {
public:
    // Its log is named after this process: ctest runs test programs side by side.
    Service(const std::string &name, std::vector<std::string> arguments, const std::string &folder)
        : log_(folder + name + "." + std::to_string(getpid()) + ".log") {
        std::remove(log_.c_str());
        std::vector<std::string> command = {"/usr/bin/python3", "-m", "dbusmock",
                                            "--system",         "-l", log_};
        command.insert(command.end(), arguments.begin(), arguments.end());
        pid_ = spawn(command);
        for (int tries = 0; tries < 200 && !nameHasOwner(name.c_str()); ++tries) {
            std::this_thread::sleep_for(std::chrono::milliseconds(25));
        }
    }
    ~Service() {
        kill(pid_, SIGCONT);
        stop(pid_);
    }
    pid_t pid() const { return pid_; }
    Service(const Service &) = delete;
    Service &operator=(const Service &) = delete;

    // The logged calls that begin with one of the words, without the time.
    std::vector<std::string> calls(const std::vector<std::string> &words) const {
        std::ifstream in(log_);
        std::vector<std::string> lines;
        for (std::string line; std::getline(in, line);) {
            const size_t space = line.find(' ');
            if (space == std::string::npos) continue;
            line = line.substr(space + 1);
            for (const std::string &word : words) {
                if (line.rfind(word + " ", 0) == 0) lines.push_back(line);
            }
        }
        return lines;
    }
    std::vector<std::string> calls(const std::string &word) const {
        return calls(std::vector<std::string>{word});
    }

private:
    std::string log_;
    pid_t pid_ = -1;
};

} // namespace bus_mock
