#include "language.h"

#include <nlohmann/json.hpp>

#include "language_text.h"

namespace {

// Pieces of a composed key are separated by this marker.
constexpr const char *kLineBreak = "_|";

// The list of parameter issues joins its items with this.
constexpr const char *kIssueBreak = "; |";

std::vector<std::string> splitOn(const std::string &text, const std::string &marker) {
    std::vector<std::string> pieces;
    size_t start = 0;
    for (size_t at; (at = text.find(marker, start)) != std::string::npos;
         start = at + marker.size()) {
        pieces.push_back(text.substr(start, at - start));
    }
    pieces.push_back(text.substr(start));
    return pieces;
}

std::vector<std::string> splitComposed(const std::string &text) {
    std::vector<std::string> pieces;
    for (const std::string &issue : splitOn(text, kIssueBreak)) {
        for (const std::string &piece : splitOn(issue, kLineBreak)) pieces.push_back(piece);
    }
    return pieces;
}

bool isSeparator(char c) {
    return c == ' ' || c == ',' || c == ';' || c == '|';
}

} // namespace

const Language &Language::english() {
    static const Language language(
        nlohmann::json::parse(kEnglishLanguageFile).get<std::map<std::string, std::string>>());
    return language;
}

// Words are runs between blanks, commas, semicolons and bars; a word that is
// no key as it stands may be one with its trailing colon taken off.
std::string Language::translateWords(const std::string &text) const {
    std::string out;
    size_t i = 0;
    while (i < text.size()) {
        if (isSeparator(text[i])) {
            out.push_back(text[i++]);
            continue;
        }
        size_t end = i;
        while (end < text.size() && !isSeparator(text[end])) ++end;
        std::string word = text.substr(i, end - i);
        const auto found = texts_.find(word);
        if (found != texts_.end()) {
            out += found->second;
        } else if (word.size() > 1 && word.back() == ':' &&
                   texts_.count(word.substr(0, word.size() - 1))) {
            out += texts_.at(word.substr(0, word.size() - 1)) + ":";
        } else {
            out += word;
        }
        i = end;
    }
    return out;
}

std::vector<std::string> Language::lines(const std::string &text, bool rawKeys) const {
    if (rawKeys) return {text};
    std::vector<std::string> result;
    for (const std::string &piece : splitComposed(text)) {
        // A whole key may itself hold blanks or colons; try it first.
        const auto found = texts_.find(piece);
        result.push_back(found != texts_.end() ? found->second : translateWords(piece));
    }
    return result;
}

std::string Language::line(const std::string &text, bool rawKeys) const {
    std::string joined;
    for (const std::string &piece : lines(text, rawKeys)) {
        joined += (joined.empty() ? "" : " ") + piece;
    }
    return joined;
}
