#include "atomic_file.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>

std::string writeFileAtomically(const std::string &path, const std::string &content) {
    const std::filesystem::path target(path);
    // A leading dot keeps the collector from reading the half-written file.
    std::filesystem::path temporary =
        target.parent_path() / ("." + target.filename().string() + ".tmp");
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        if (!out) return "cannot write " + temporary.string();
        out.write(content.data(), static_cast<std::streamsize>(content.size()));
        out.flush();
        if (!out) {
            std::error_code ignored;
            std::filesystem::remove(temporary, ignored);
            return "cannot write " + temporary.string();
        }
    }
    std::error_code error;
    std::filesystem::rename(temporary, target, error);
    if (error) {
        std::error_code ignored;
        std::filesystem::remove(temporary, ignored);
        return "cannot replace " + path + ": " + error.message();
    }
    return "";
}
