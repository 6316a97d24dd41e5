#include "terminal.h"

#include <io.h>

bool terminal::isTerminal(std::FILE *stream) {
    return _isatty(_fileno(stream)) != 0;
}
