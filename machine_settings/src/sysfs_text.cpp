#include "machine_settings/sysfs_text.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>

namespace machine_settings {

namespace {
constexpr size_t kLongestValue = 4096; // a sysfs attribute is at most one page
}

// A larger file is not an attribute and is not read to its end.
std::optional<std::string> sysfs_text::readAttribute(const std::string &path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return std::nullopt;
    std::string text(kLongestValue, '\0');
    size_t length = 0;
    bool failed = false;
    while (length < text.size()) {
        const ssize_t got = read(descriptor, &text[length], text.size() - length);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) failed = true;
        if (got <= 0) break;
        length += static_cast<size_t>(got);
    }
    close(descriptor);
    if (failed) return std::nullopt;
    text.resize(length);
    if (!text.empty() && text.back() == '\n') text.pop_back();
    return text;
}

bool sysfs_text::readLine(const std::string &path, std::string &line) {
    std::optional<std::string> text = readAttribute(path);
    if (!text) return false;
    line = std::move(*text);
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

// Not truncated first: an attribute takes the value whole, and a test bed's
// plain file, overwritten in place, still begins with a whole line when its
// writer is killed midway.
bool sysfs_text::write(const std::string &path, const std::string &text) {
    const int descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor < 0) return false;
    const std::string line = text + "\n";
    ssize_t wrote;
    do {
        wrote = ::write(descriptor, line.data(), line.size());
    } while (wrote < 0 && errno == EINTR);
    const bool closed = close(descriptor) == 0;
    return wrote == static_cast<ssize_t>(line.size()) && closed;
}

} // namespace machine_settings
