#pragma once

#include <string>

// Writes `content` to `path` by the output rules of output_file.h: a reader
// (a browser, node_exporter's textfile collector) sees the old file or the
// new one, never half of one. Empty on success, else one line naming `path`
// and the reason.
std::string writeFileAtomically(const std::string &path, const std::string &content);
