#include "scenario_document.h"

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <system_error>
#include <vector>

namespace emulator {

namespace {

using Json = nlohmann::json;
using DomBuilder = nlohmann::detail::json_sax_dom_parser<Json>;

// Builds the document as the library's own parser does, while keeping the
// path of the value being read for the error line.
class TrackingBuilder {
public:
    TrackingBuilder(Json &document, DocumentError &error) : dom_(document, false), error_(error) {}

    bool null() { return scalar(dom_.null()); }
    bool boolean(bool value) { return scalar(dom_.boolean(value)); }
    bool number_integer(Json::number_integer_t value) { return scalar(dom_.number_integer(value)); }
    bool number_unsigned(Json::number_unsigned_t value) {
        return scalar(dom_.number_unsigned(value));
    }
    bool number_float(Json::number_float_t value, const Json::string_t &text) {
        return scalar(dom_.number_float(value, text));
    }
    bool string(Json::string_t &value) { return scalar(dom_.string(value)); }
    bool binary(Json::binary_t &value) { return scalar(dom_.binary(value)); }

    bool start_object(std::size_t size) {
        frames_.push_back(Frame{false, 0, {}, {}});
        return dom_.start_object(size);
    }
    bool key(Json::string_t &name) {
        Frame &frame = frames_.back();
        if (!frame.keys.insert(name).second) {
            frame.key = name;
            return fail("given twice in one object");
        }
        frame.key = name;
        return dom_.key(name);
    }
    bool end_object() { return closed(dom_.end_object()); }
    bool start_array(std::size_t size) {
        frames_.push_back(Frame{true, 0, {}, {}});
        return dom_.start_array(size);
    }
    bool end_array() { return closed(dom_.end_array()); }

    template <class Exception>
    bool parse_error(std::size_t position, const std::string &, const Exception &exception) {
        if (exception.id == 406) return fail("number out of range");
        error_.field.clear();
        error_.problem = "not valid JSON near byte " + std::to_string(position) + " (" +
                         oneLine(withoutPrefix(exception.what())) + ")";
        return false;
    }

private:
    struct Frame {
        bool array;
        std::size_t index;
        std::string key;
        std::set<std::string> keys;
    };

    bool scalar(bool accepted) {
        if (!frames_.empty() && frames_.back().array) ++frames_.back().index;
        return accepted;
    }
    bool closed(bool accepted) {
        frames_.pop_back();
        return scalar(accepted);
    }
    bool fail(const char *problem) {
        error_.field = path();
        error_.problem = problem;
        return false;
    }
    std::string path() const {
        std::string text;
        for (const Frame &frame : frames_) {
            if (frame.array) {
                text += "[" + std::to_string(frame.index) + "]";
            } else {
                text += (text.empty() ? "" : ".") + frame.key;
            }
        }
        return text.empty() ? "(top level)" : text;
    }
    // The library's messages start with "[json.exception.parse_error.101] ".
    static std::string withoutPrefix(const std::string &message) {
        const std::size_t end = message.find("] ");
        return end == std::string::npos ? message : message.substr(end + 2);
    }

    DomBuilder dom_;
    DocumentError &error_;
    std::vector<Frame> frames_;
};

std::string notARegularFile(const std::string &path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    using std::filesystem::file_type;
    switch (status.type()) {
    case file_type::regular:
        return "";
    case file_type::not_found:
        return "cannot be opened (no such file)";
    case file_type::directory:
        return "is a directory, not a file";
    case file_type::fifo:
        return "is a named pipe, not a file";
    case file_type::socket:
        return "is a socket, not a file";
    case file_type::character:
    case file_type::block:
        return "is a device, not a file";
    default:
        return error ? "cannot be opened (" + error.message() + ")" : "is not a regular file";
    }
}

} // namespace

std::string oneLine(const std::string &text) {
    constexpr size_t kLimit = 240;
    std::string line;
    for (const char c : text) {
        line += static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? '?' : c;
        if (line.size() == kLimit) return line + "...";
    }
    return line;
}

std::string readScenarioFile(const std::string &path, std::string &text) {
    const std::string refusal = notARegularFile(path);
    if (!refusal.empty()) return refusal;
    std::ifstream file(path, std::ios::binary);
    if (!file) return "cannot be opened";
    std::ostringstream content;
    content << file.rdbuf();
    text = content.str();
    return "";
}

bool readScenarioDocument(const std::string &text, Json &document, DocumentError &error) {
    TrackingBuilder builder(document, error);
    try {
        if (Json::sax_parse(text, &builder, Json::input_format_t::json, true, false)) return true;
    } catch (const Json::exception &exception) {
        error.field.clear();
        error.problem = oneLine(exception.what());
    }
    if (error.problem.empty()) error.problem = "not valid JSON";
    return false;
}

} // namespace emulator
