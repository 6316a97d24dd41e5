#include "sysfs_reading.h"

#include <dirent.h>

#include <algorithm>
#include <limits>
#include <mutex>
#include <set>

#include "machine_settings/sysfs_text.h"

namespace platform_layer {

namespace {

struct ReadLog {
    std::mutex mutex;
    SysfsReadCounts counts;
    std::set<std::string> thisRequest;
};

ReadLog &readLog() {
    static ReadLog log;
    return log;
}

void countRead(const std::string &path) {
    ReadLog &log = readLog();
    std::lock_guard<std::mutex> lock(log.mutex);
    ++log.counts.reads;
    if (!log.thisRequest.insert(path).second) ++log.counts.repeatedReads;
}

std::optional<std::string> readFile(const std::string &path) {
    countRead(path);
    return machine_settings::sysfs_text::readAttribute(path);
}

} // namespace

void beginSysfsRequest() {
    ReadLog &log = readLog();
    std::lock_guard<std::mutex> lock(log.mutex);
    log.thisRequest.clear();
}

SysfsReadCounts sysfsReadCounts() {
    ReadLog &log = readLog();
    std::lock_guard<std::mutex> lock(log.mutex);
    return log.counts;
}

SysfsReading::SysfsReading(std::string classRoot) : root_(std::move(classRoot)) {}

const std::vector<std::string> &SysfsReading::supplies() {
    if (supplies_) return *supplies_;
    supplies_.emplace();
    DIR *folder = ::opendir(root_.c_str());
    if (folder == nullptr) return *supplies_;
    while (const dirent *entry = ::readdir(folder)) {
        const std::string name = entry->d_name;
        if (name.empty() || name[0] == '.') continue;
        supplies_->push_back(name);
    }
    ::closedir(folder);
    std::sort(supplies_->begin(), supplies_->end());
    return *supplies_;
}

const std::optional<std::string> &SysfsReading::text(const std::string &supply,
                                                     const std::string &attribute) {
    const std::string key = supply + "/" + attribute;
    const auto known = texts_.find(key);
    if (known != texts_.end()) return known->second;
    // A name that could leave the supply's folder is no attribute of it.
    if (supply.find('/') != std::string::npos || supply == "..") {
        return texts_[key] = std::nullopt;
    }
    return texts_[key] = readFile(root_ + "/" + key);
}

std::optional<int64_t> SysfsReading::integer(const std::string &supply,
                                             const std::string &attribute) {
    const std::optional<std::string> &raw = text(supply, attribute);
    if (!raw) return std::nullopt;
    std::optional<int64_t> value = parseDecimal(*raw);
    if (!value) malformed_ = true;
    return value;
}

std::optional<int64_t> parseDecimal(const std::string &text) {
    size_t at = 0;
    const bool negative = !text.empty() && text[0] == '-';
    if (negative) ++at;
    if (at == text.size()) return std::nullopt;
    uint64_t magnitude = 0;
    constexpr uint64_t kLimit = static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
    for (; at < text.size(); ++at) {
        const char digit = text[at];
        if (digit < '0' || digit > '9') return std::nullopt;
        magnitude = magnitude * 10 + static_cast<uint64_t>(digit - '0');
        if (magnitude > kLimit) return std::nullopt;
    }
    const auto value = static_cast<int64_t>(magnitude);
    return negative ? -value : value;
}

} // namespace platform_layer
