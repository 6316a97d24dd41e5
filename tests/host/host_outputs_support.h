#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

// Runs the host, or any shell line, in a folder of its own that goes away
// with the test: the history never lands in the user's data folder.
class OutputFolder {
public:
    OutputFolder() {
        char name[] = "/tmp/battery-outputs-XXXXXX";
        path_ = mkdtemp(name) != nullptr ? name : "/tmp";
    }
    ~OutputFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    std::string operator/(const std::string &name) const { return path_ + "/" + name; }
    const std::string &path() const { return path_; }

    struct Outcome {
        std::string output;
        int exitCode = -1;
    };
    Outcome shell(const std::string &line) const {
        const std::string command = "cd " + path_ + " && export XDG_DATA_HOME=" + path_ +
                                    "/data && { " + line + "; } 2>&1 </dev/null";
        Outcome outcome;
        FILE *pipe = popen(command.c_str(), "r");
        if (pipe == nullptr) return outcome;
        char chunk[4096];
        for (size_t n; (n = std::fread(chunk, 1, sizeof chunk, pipe)) > 0;)
            outcome.output.append(chunk, n);
        const int status = pclose(pipe);
        outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return outcome;
    }
    Outcome host(const std::string &arguments) const {
        return shell(std::string(HOST_PATH) + " -Mbattery " + arguments);
    }

private:
    std::string path_;
};

inline std::string fileText(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}
