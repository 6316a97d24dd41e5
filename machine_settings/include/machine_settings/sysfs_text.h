#pragma once

#include <cstdint>
#include <optional>
#include <string>

// Small files of sysfs: one value each, ending in a newline.
namespace machine_settings::sysfs_text {

// The whole text of an attribute (at most a page) without the newline the
// kernel ends it with; nothing when it cannot be read.
std::optional<std::string> readAttribute(const std::string &path);
// The file's first line without trailing blanks; false when it cannot be read.
bool readLine(const std::string &path, std::string &line);
// A whole decimal number, nothing else on the line.
bool readNumber(const std::string &path, uint32_t &number);
bool write(const std::string &path, const std::string &text);

} // namespace machine_settings::sysfs_text
