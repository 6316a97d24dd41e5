#pragma once

#include <string>

#include <nlohmann/json.hpp>

namespace emulator {

// Why a scenario text did not become a JSON document. `field` is the dotted
// path of the value at fault, empty when the text is not JSON at all.
struct DocumentError {
    std::string field;
    std::string problem;
};

// Parses scenario text without letting the JSON library's exceptions out;
// a number no double holds and a key given twice in one object are errors
// that name the field, instead of an abort or a silent last-one-wins.
bool readScenarioDocument(const std::string &text, nlohmann::json &document, DocumentError &error);

// Field names and library messages may carry any text a file holds; an
// error stays one readable line of bounded length.
std::string oneLine(const std::string &text);

// Reads a scenario file whole; the answer is empty, or what keeps it from
// being read. Only a regular file is read: a FIFO or a device would block
// or never end.
std::string readScenarioFile(const std::string &path, std::string &text);

} // namespace emulator
