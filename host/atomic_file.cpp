#include "atomic_file.h"

#include "output_file.h"

std::string writeFileAtomically(const std::string &path, const std::string &content) {
    return output_file::write(path, content);
}
