#pragma once

#include <string>

// Writes `content` to a temporary file beside `path` and renames it over
// `path`, so a reader (a browser, node_exporter's textfile collector) sees the
// old file or the new one, never half of one. Empty on success, else one line.
std::string writeFileAtomically(const std::string &path, const std::string &content);
