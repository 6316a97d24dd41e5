#include "module_location.h"

#include <limits.h>
#include <stdlib.h>
#include <unistd.h>

namespace module_location {

namespace {
std::string folderOf(const std::string &path) {
    const auto slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}
} // namespace

std::string programFolder(const char *argv0) {
    // The kernel names the program's file with every symlink resolved, also
    // when PATH found it.
    char own[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", own, sizeof own - 1);
    if (length > 0) return folderOf(std::string(own, static_cast<size_t>(length)));
    // Without /proc (a bare chroot) argv[0] is all there is.
    char resolved[PATH_MAX];
    const std::string named = argv0 != nullptr ? argv0 : "";
    if (!named.empty() && realpath(named.c_str(), resolved) != nullptr) return folderOf(resolved);
    return folderOf(named);
}

const char *libraryFileName() {
    return "battery_module.so";
}

} // namespace module_location
