#pragma once

#include <cstdio>

// Whether a stream is an interactive terminal.
namespace terminal {
bool isTerminal(std::FILE *stream);
}
