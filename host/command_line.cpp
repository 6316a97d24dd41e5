#include "command_line.h"

#include <cmath>
#include <cstdlib>

namespace command_line {

namespace {
std::string unquoted(std::string value) {
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
        value.back() == value.front()) {
        return value.substr(1, value.size() - 2);
    }
    return value;
}
} // namespace

std::string valueOf(const std::vector<std::string> &args, const std::string &name) {
    for (size_t i = 0; i < args.size(); ++i) {
        if (args[i] == name && i + 1 < args.size()) return args[i + 1];
        if (args[i].rfind(name + "=", 0) == 0) return args[i].substr(name.size() + 1);
    }
    return "";
}

bool has(const std::vector<std::string> &args, const std::string &name) {
    for (const std::string &arg : args) {
        if (arg == name) return true;
    }
    return false;
}

bool parseTimeScale(const std::string &text, double &scale, std::string &error) {
    char *end = nullptr;
    const double value = text.empty() ? 0 : std::strtod(text.c_str(), &end);
    // NaN fails both comparisons, so it is refused with the rest.
    if (text.empty() || *end != '\0' || !(value >= kMinTimeScale && value <= kMaxTimeScale)) {
        error = "--time-scale: '" + text.substr(0, 40) + (text.size() > 40 ? "...'" : "'") +
                " is not a number from 0.001 to 100000";
        return false;
    }
    scale = value;
    return true;
}

void extractDiagnostics(std::vector<std::string> &args,
                        const std::vector<DiagnosticSwitch> &switches,
                        std::vector<DiagnosticChoice> &choices, std::string &moduleName) {
    std::vector<std::string> rest;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string &arg = args[i];
        if (arg == "--") { // everything after it is the host's
            rest.insert(rest.end(), args.begin() + static_cast<long>(i), args.end());
            break;
        }
        if (arg.rfind("-M", 0) == 0 && arg.rfind("--", 0) != 0) {
            moduleName = arg.size() > 2 ? unquoted(arg.substr(2)) : "";
            if (moduleName.empty() && i + 1 < args.size()) moduleName = args[++i];
            continue;
        }
        bool matched = false;
        for (const DiagnosticSwitch &option : switches) {
            const std::string shortForm = "-" + option.shortName;
            const std::string longForm = "--" + option.longName;
            if (arg.rfind(shortForm, 0) == 0 && arg.rfind("--", 0) != 0) {
                choices.push_back({option.diagnostic, unquoted(arg.substr(shortForm.size()))});
                matched = true;
            } else if (arg == longForm) {
                choices.push_back({option.diagnostic, ""});
                matched = true;
            } else if (arg.rfind(longForm + "=", 0) == 0) {
                choices.push_back({option.diagnostic, unquoted(arg.substr(longForm.size() + 1))});
                matched = true;
            }
            if (matched) break;
        }
        if (!matched) rest.push_back(arg);
    }
    args = rest;
}

} // namespace command_line
