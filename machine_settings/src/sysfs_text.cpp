#include "machine_settings/sysfs_text.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>

namespace machine_settings {

namespace {
constexpr size_t kLongestValue = 4096; // a sysfs attribute is at most one page
}

bool sysfs_text::readLine(const std::string &path, std::string &line) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return false;
    char buffer[kLongestValue];
    ssize_t got;
    do {
        got = read(descriptor, buffer, sizeof buffer);
    } while (got < 0 && errno == EINTR);
    close(descriptor);
    if (got < 0) return false;
    line.assign(buffer, static_cast<size_t>(got));
    const size_t end = line.find('\n');
    if (end != std::string::npos) line.resize(end);
    while (!line.empty() && (line.back() == ' ' || line.back() == '\t' || line.back() == '\r')) {
        line.pop_back();
    }
    return true;
}

bool sysfs_text::readNumber(const std::string &path, uint32_t &number) {
    std::string line;
    if (!readLine(path, line) || line.empty()) return false;
    const char *end = line.data() + line.size();
    const auto result = std::from_chars(line.data(), end, number);
    return result.ec == std::errc() && result.ptr == end;
}

bool sysfs_text::write(const std::string &path, const std::string &text) {
    const int descriptor = open(path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    if (descriptor < 0) return false;
    ssize_t wrote;
    do {
        wrote = ::write(descriptor, text.data(), text.size());
    } while (wrote < 0 && errno == EINTR);
    const bool closed = close(descriptor) == 0;
    return wrote == static_cast<ssize_t>(text.size()) && closed;
}

} // namespace machine_settings
