#include "wql_statement.h"

#include <cctype>

#include "ignoring_case.h"

namespace platform_layer {

namespace {

class Reader {
public:
    explicit Reader(const std::string &text) : text_(text) {}

    bool atEnd() {
        skipBlanks();
        return at_ == text_.size();
    }
    std::string word() {
        skipBlanks();
        const size_t start = at_;
        while (at_ < text_.size() &&
               (std::isalnum(static_cast<unsigned char>(text_[at_])) || text_[at_] == '_')) {
            ++at_;
        }
        return text_.substr(start, at_ - start);
    }
    bool keyword(const char *expected) { return sameIgnoringCase(word(), expected); }
    bool symbol(char expected) {
        skipBlanks();
        if (at_ >= text_.size() || text_[at_] != expected) return false;
        ++at_;
        return true;
    }
    bool quoted(std::string &value) {
        if (!symbol('\'')) return false;
        const size_t close = text_.find('\'', at_);
        if (close == std::string::npos) return false;
        value = text_.substr(at_, close - at_);
        at_ = close + 1;
        return true;
    }

private:
    void skipBlanks() {
        while (at_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[at_]))) ++at_;
    }

    const std::string &text_;
    size_t at_ = 0;
};

} // namespace

std::optional<WqlStatement> parseWql(const std::string &text) {
    Reader reader(text);
    WqlStatement statement;
    if (!reader.keyword("SELECT")) return std::nullopt;
    do {
        statement.selected.push_back(reader.word());
        if (statement.selected.back().empty()) return std::nullopt;
    } while (reader.symbol(','));
    if (!reader.keyword("FROM")) return std::nullopt;
    statement.className = reader.word();
    if (statement.className.empty()) return std::nullopt;
    if (reader.atEnd()) return statement;
    std::string property, value;
    if (!reader.keyword("WHERE") || (property = reader.word()).empty() || !reader.symbol('=') ||
        !reader.quoted(value) || !reader.atEnd()) {
        return std::nullopt;
    }
    statement.filter.emplace(property, value);
    return statement;
}

} // namespace platform_layer
