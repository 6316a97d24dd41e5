#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <string>

// What a shell line wrote on its standard output and how it ended; -1 when
// it did not end by itself.
struct CommandOutcome {
    std::string output;
    int exitCode = -1;
};

inline CommandOutcome runCommand(const std::string &command) {
    CommandOutcome outcome;
    FILE *pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return outcome;
    char chunk[4096];
    for (size_t n; (n = std::fread(chunk, 1, sizeof chunk, pipe)) > 0;)
        outcome.output.append(chunk, n);
    const int status = pclose(pipe);
    outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}
