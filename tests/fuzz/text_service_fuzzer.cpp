// The text service's operations with any texts, buffer sizes and counts.
// Buffers are exactly as large as the size the call is told, and sources
// are terminated unless a count bounds them, as a correct caller does; the
// service must stay inside both whatever the numbers say.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "platform/string_handler.h"

namespace {

// A count as hostile callers give them: small, the edges, or anything.
size_t countFrom(FuzzInput &input) {
    switch (input.byte() % 4) {
    case 0:
        return input.length(64);
    case 1:
        return SIZE_MAX;
    case 2:
        return SIZE_MAX / 2 + input.byte();
    default:
        return input.number();
    }
}

// A buffer of exactly `size` bytes on the heap, so a write past it is seen.
struct Buffer {
    explicit Buffer(size_t size) : bytes(size == 0 ? nullptr : new char[size]), size(size) {
        if (size != 0) std::memset(bytes.get(), 'X', size);
    }
    std::unique_ptr<char[]> bytes;
    size_t size;
};

void byteOperations(StringHandler &text, FuzzInput &input) {
    const std::string first = input.text(80);
    const std::string second = input.text(80);
    const char delimiter = static_cast<char>(input.byte());
    std::string out;
    text.isNumeric(first.c_str(), countFrom(input));
    text.isNumeric(nullptr, countFrom(input));
    text.removeSpaces(first, out);
    text.removeNonPrintable(first, out);
    text.removeCharacters(second, first, out);
    std::string changed = first;
    text.trim(changed);
    text.isUpperCase(first);
    text.toUpperCase(changed);
    text.toLowerCase(changed);
    text.startsWith(first, second);
    text.split(first, delimiter);
    text.compareN(first.c_str(), second.c_str(), countFrom(input));
    text.lengthN(first.c_str(), countFrom(input));
    text.lengthN(nullptr, countFrom(input));
    text.fromBytes(first.data(), first.size());
    text.tokenize(first, second);
    text.truncateAtNul(first);
}

void bufferOperations(StringHandler &text, FuzzInput &input) {
    const std::string source = input.text(80);
    Buffer buffer(input.length(40));
    const size_t count = countFrom(input);
    text.copyN(buffer.bytes.get(), buffer.size, source.c_str(), count);
    text.copyN(buffer.bytes.get(), buffer.size, nullptr, count);
    text.concatN(buffer.bytes.get(), buffer.size, source.c_str(), count);
    text.copyWithOverlapCheck(buffer.bytes.get(), buffer.size, source.c_str(), countFrom(input));
    if (buffer.size > 1) {
        // A source inside the buffer itself.
        buffer.bytes[buffer.size - 1] = '\0';
        text.copyWithOverlapCheck(buffer.bytes.get(), buffer.size, buffer.bytes.get() + 1,
                                  countFrom(input));
    }
    text.formatBounded(buffer.bytes.get(), buffer.size, "%s/%u", source.c_str(), input.number());
    text.formatTruncating(buffer.bytes.get(), buffer.size, "%.*s", static_cast<int>(input.byte()),
                          source.c_str());
    // A fixed-width field is not terminated: its length bounds it.
    const std::vector<uint8_t> field = input.bytes(input.length(40));
    text.sanitizeField(buffer.bytes.get(), buffer.size,
                       reinterpret_cast<const char *>(field.data()), field.size());
}

void wideOperations(StringHandler &text, FuzzInput &input) {
    std::vector<WCHAR> wide(input.length(40));
    for (WCHAR &unit : wide) unit = input.word();
    wide.push_back(0);
    const std::string narrow = input.text(40);
    Buffer buffer(input.length(40));
    std::vector<WCHAR> wideBuffer(input.length(40) + 1);
    size_t converted = 0;
    text.wideLengthN(wide.data(), countFrom(input));
    text.wideLengthN(nullptr, countFrom(input));
    text.wideToMultibyte(&converted, buffer.bytes.get(), buffer.size, wide.data(),
                         countFrom(input));
    text.multibyteToWide(&converted, wideBuffer.data(), wideBuffer.size(), narrow.c_str(),
                         countFrom(input));
    const int64_t time = static_cast<int64_t>(input.wide());
    struct tm local {};
    text.localTime(&local, &time);
    text.localTime(nullptr, &time);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    FuzzInput input(data, size);
    StringHandler &text = *StringHandler::instance();
    switch (input.byte() % 3) {
    case 0:
        byteOperations(text, input);
        break;
    case 1:
        bufferOperations(text, input);
        break;
    default:
        wideOperations(text, input);
        break;
    }
    return 0;
}
