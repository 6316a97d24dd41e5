// Replays fuzz inputs through a target's LLVMFuzzerTestOneInput without
// libFuzzer, so every build (gcc too) keeps a fixed crash fixed. Arguments
// are folders (or files); a missing folder is an error, so a renamed one
// cannot silently replay nothing.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

bool replay(const std::filesystem::path &file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) return false;
    const std::string bytes{std::istreambuf_iterator<char>(stream),
                            std::istreambuf_iterator<char>()};
    // A copy of exactly the input's size, so a read past it is seen by the
    // sanitizers, as under libFuzzer.
    std::vector<uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.data(), input.size());
    return true;
}

} // namespace

int main(int argc, char **argv) {
    size_t replayed = 0;
    for (int i = 1; i < argc; ++i) {
        const std::filesystem::path place(argv[i]);
        std::error_code error;
        if (std::filesystem::is_regular_file(place, error)) {
            replayed += replay(place) ? 1 : 0;
            continue;
        }
        if (!std::filesystem::is_directory(place, error)) {
            std::fprintf(stderr, "no such input folder: %s\n", argv[i]);
            return 1;
        }
        for (const auto &entry : std::filesystem::directory_iterator(place)) {
            if (entry.is_regular_file()) replayed += replay(entry.path()) ? 1 : 0;
        }
    }
    std::printf("replayed %zu inputs\n", replayed);
    return replayed == 0 ? 1 : 0;
}
