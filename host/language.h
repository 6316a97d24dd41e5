#pragma once

#include <map>
#include <string>
#include <vector>

// Turns the module's message keys into English. A text from the module is a
// key, a line of keys joined by "_|", or a line that embeds keys beside
// numbers ("TOTAL_BATTERY_CHARGE: 76%"); each key is replaced by its text.
class Language {
public:
    // The language file compiled into the host.
    static const Language &english();
    explicit Language(std::map<std::string, std::string> texts) : texts_(std::move(texts)) {}

    // Display lines for one text of the module; with `rawKeys` the keys stay.
    std::vector<std::string> lines(const std::string &text, bool rawKeys) const;
    // One line, the pieces of a composed key joined by a blank.
    std::string line(const std::string &text, bool rawKeys) const;
    bool has(const std::string &key) const { return texts_.count(key) != 0; }

private:
    std::string translateWords(const std::string &text) const;
    std::map<std::string, std::string> texts_;
};
