#pragma once

#include <string>

#include "text_escape.h"

// Text made safe to stand in HTML or SVG, in an element or an attribute; a
// text that is not UTF-8 is shown with replacement characters.
inline std::string escapedHtml(const std::string &text) {
    std::string out;
    out.reserve(text.size());
    for (const char c : text_escape::validUtf8(text)) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        case '\'':
            out += "&#39;";
            break;
        default:
            out += c;
        }
    }
    return out;
}
