#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "support/command_run.h"

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

    using Outcome = CommandOutcome;
    Outcome shell(const std::string &line) const {
        const std::string command = "cd " + path_ + " && export XDG_DATA_HOME=" + path_ +
                                    "/data && { " + (line.empty() ? "true" : line) +
                                    "; } 2>&1 </dev/null";
        return runCommand(command);
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
