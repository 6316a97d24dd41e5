#include "terminal.h"

#include <unistd.h>

bool terminal::isTerminal(std::FILE *stream) {
    return isatty(fileno(stream)) != 0;
}
