#include "module_location.h"

#include <filesystem>
#include <system_error>

namespace module_location {

std::vector<std::string> searchedPaths(const char *argv0) {
    const std::filesystem::path folder = programFolder(argv0);
    const std::filesystem::path installed = folder / ".." / "lib" / "battery_host";
    return {(folder / libraryFileName()).string(),
            (installed.lexically_normal() / libraryFileName()).string()};
}

std::unique_ptr<ModuleLibrary> load(const std::string &chosen, const char *argv0,
                                    std::string &error) {
    if (!chosen.empty()) return ModuleLibrary::load(chosen, error);
    const std::vector<std::string> paths = searchedPaths(argv0);
    for (const std::string &path : paths) {
        std::error_code ignored;
        // A file that is there but does not load is reported as it is,
        // rather than passed over for another copy.
        if (std::filesystem::exists(path, ignored)) return ModuleLibrary::load(path, error);
    }
    error = "no battery module found; looked for";
    for (const std::string &path : paths) error += (&path == &paths.front() ? " " : ", ") + path;
    error += " (name one with --module PATH)";
    return nullptr;
}

} // namespace module_location
