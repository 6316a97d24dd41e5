#include "output_file.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>

// Windows has no character devices or FIFOs a report would name, and a file
// cannot be renamed over while another program holds it open: the text goes
// to a uniquely named temporary beside the file and replaces it.
namespace output_file {

namespace fs = std::filesystem;

namespace {

constexpr const char *kTemporaryMark = ".battery_host-";
constexpr size_t kRandomLength = 6;
constexpr long kNameMax = 255;

std::string randomPart() {
    static std::mt19937 generator{std::random_device{}()};
    static constexpr char kLetters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::string part;
    for (size_t i = 0; i < kRandomLength; ++i) part += kLetters[generator() % 36];
    return part;
}

} // namespace

Target resolve(const std::string &path) {
    if (path == "-") return {path, Kind::StandardOutput, ""};
    if (path.empty()) return {path, Kind::Missing, "an empty path names no file"};
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found) return {path, Kind::Missing, ""};
    if (error) return {path, Kind::Missing, "cannot write " + path + ": " + error.message()};
    if (status.type() == fs::file_type::regular) return {path, Kind::Regular, ""};
    if (status.type() == fs::file_type::directory) return {path, Kind::Folder, ""};
    return {path, Kind::Other, ""};
}

std::string writeTo(const std::string &path, const Target &target, const std::string &content) {
    if (!target.error.empty()) return target.error;
    if (target.kind == Kind::StandardOutput) {
        const bool ok = std::fwrite(content.data(), 1, content.size(), stdout) == content.size();
        return ok && std::fflush(stdout) == 0 ? "" : "cannot write standard output";
    }
    if (target.kind == Kind::Folder) return "cannot write " + path + ": Is a directory";
    if (target.kind == Kind::Other) return "cannot write " + path + ": not a file";
    const fs::path file(target.path);
    const fs::path temporary =
        file.parent_path() / (temporaryPrefix(file.filename().string(), kNameMax) + randomPart());
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        out.write(content.data(), static_cast<std::streamsize>(content.size()));
        out.flush();
        if (!out) {
            std::error_code ignored;
            fs::remove(temporary, ignored);
            return "cannot write " + path;
        }
    }
    std::error_code error;
    fs::rename(temporary, file, error);
    if (error) {
        std::error_code ignored;
        fs::remove(temporary, ignored);
        return "cannot write " + path + ": " + error.message();
    }
    return "";
}

std::string write(const std::string &path, const std::string &content) {
    return writeTo(path, resolve(path), content);
}

std::string temporaryPrefix(const std::string &name, long nameMax) {
    const size_t fixed = 1 + std::char_traits<char>::length(kTemporaryMark) + kRandomLength;
    const size_t room = nameMax > static_cast<long>(fixed) ? size_t(nameMax) - fixed : 1;
    return "." + name.substr(0, room) + kTemporaryMark;
}

void removeLeftovers(const std::string &) {}

std::string checkBeforeRun(const std::vector<std::string> &outputs,
                           const std::vector<std::string> &inputs) {
    for (const std::string &output : outputs) {
        const Target target = resolve(output);
        if (!target.error.empty()) return target.error;
        if (target.kind == Kind::Folder) return output + " is a folder, not a file to write";
        if (target.kind == Kind::StandardOutput) continue;
        const fs::path folder = fs::path(output).parent_path();
        std::error_code ignored;
        if (!folder.empty() && !fs::is_directory(folder, ignored)) {
            return "no folder '" + folder.string() + "' for " + output;
        }
        for (const std::string &other : inputs) {
            if (!other.empty() && fs::equivalent(output, other, ignored)) {
                return output + " is the same file as " + other;
            }
        }
    }
    return "";
}

} // namespace output_file
