#pragma once

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace emulator {

// A scenario error: the dotted path of the field and what is wrong with it.
struct FieldError : std::runtime_error {
    FieldError(const std::string &field, const std::string &problem)
        : std::runtime_error(problem), field(field) {}
    std::string field;
};

// Reads one JSON object of a scenario, checking types and naming the field
// in every error.
class JsonFields {
public:
    JsonFields(const nlohmann::json &object, std::string path)
        : object_(object), path_(std::move(path)) {
        if (!object_.is_object()) {
            throw FieldError(path_.empty() ? "(top level)" : path_, "expected an object");
        }
    }

    // Unknown keys are usually typos; refusing them keeps a scenario honest.
    void allowOnly(std::initializer_list<const char *> known) const {
        for (auto it = object_.begin(); it != object_.end(); ++it) {
            bool found = false;
            for (const char *key : known) found = found || it.key() == key;
            if (!found) throw FieldError(pathOf(it.key().c_str()), "unknown field");
        }
    }

    bool has(const char *key) const { return object_.contains(key); }

    std::string text(const char *key, const std::string &fallback) const {
        if (!has(key)) return fallback;
        const auto &value = object_.at(key);
        if (!value.is_string()) throw FieldError(pathOf(key), "expected a string");
        return value.get<std::string>();
    }
    std::string requiredText(const char *key) const {
        require(key);
        return text(key, "");
    }

    bool flag(const char *key, bool fallback) const {
        if (!has(key)) return fallback;
        const auto &value = object_.at(key);
        if (!value.is_boolean()) throw FieldError(pathOf(key), "expected true or false");
        return value.get<bool>();
    }

    uint64_t unsignedNumber(const char *key, uint64_t fallback,
                            uint64_t maximum = std::numeric_limits<uint32_t>::max()) const {
        if (!has(key)) return fallback;
        const auto &value = object_.at(key);
        if (!value.is_number_unsigned() &&
            !(value.is_number_integer() && value.get<int64_t>() >= 0)) {
            throw FieldError(pathOf(key), "expected a whole number from 0");
        }
        const uint64_t number = value.get<uint64_t>();
        if (number > maximum) {
            throw FieldError(pathOf(key), "must not exceed " + std::to_string(maximum));
        }
        return number;
    }

    double number(const char *key, double fallback) const {
        if (!has(key)) return fallback;
        const auto &value = object_.at(key);
        if (!value.is_number()) throw FieldError(pathOf(key), "expected a number");
        return value.get<double>();
    }

    JsonFields object(const char *key) const {
        require(key);
        return JsonFields(object_.at(key), pathOf(key));
    }

    std::vector<JsonFields> objects(const char *key) const {
        std::vector<JsonFields> items;
        if (!has(key)) return items;
        const auto &value = object_.at(key);
        if (!value.is_array()) throw FieldError(pathOf(key), "expected a list");
        for (size_t i = 0; i < value.size(); ++i) {
            items.emplace_back(value[i], pathOf(key) + "[" + std::to_string(i) + "]");
        }
        return items;
    }

    std::vector<std::string> texts(const char *key) const {
        std::vector<std::string> items;
        if (!has(key)) return items;
        const auto &value = object_.at(key);
        if (!value.is_array()) throw FieldError(pathOf(key), "expected a list of strings");
        for (size_t i = 0; i < value.size(); ++i) {
            if (!value[i].is_string()) {
                throw FieldError(pathOf(key) + "[" + std::to_string(i) + "]", "expected a string");
            }
            items.push_back(value[i].get<std::string>());
        }
        return items;
    }

    std::vector<uint64_t> unsignedNumbers(const char *key, uint64_t maximum) const {
        std::vector<uint64_t> items;
        if (!has(key)) return items;
        const auto &value = object_.at(key);
        if (!value.is_array()) throw FieldError(pathOf(key), "expected a list of whole numbers");
        for (size_t i = 0; i < value.size(); ++i) {
            const std::string itemPath = pathOf(key) + "[" + std::to_string(i) + "]";
            if (!value[i].is_number_unsigned() &&
                !(value[i].is_number_integer() && value[i].get<int64_t>() >= 0)) {
                throw FieldError(itemPath, "expected a whole number from 0");
            }
            if (value[i].get<uint64_t>() > maximum) {
                throw FieldError(itemPath, "must not exceed " + std::to_string(maximum));
            }
            items.push_back(value[i].get<uint64_t>());
        }
        return items;
    }

    std::string pathOf(const char *key) const { return path_.empty() ? key : path_ + "." + key; }
    const std::string &path() const { return path_; }

    // A text that must be one of `choices`.
    std::string choice(const char *key, const std::string &fallback,
                       std::initializer_list<const char *> choices) const {
        const std::string value = text(key, fallback);
        std::string list;
        for (const char *choice : choices) {
            if (value == choice) return value;
            list += (list.empty() ? "" : ", ") + std::string(choice);
        }
        throw FieldError(pathOf(key), "expected one of " + list);
    }

private:
    void require(const char *key) const {
        if (!has(key)) throw FieldError(pathOf(key), "missing");
    }

    const nlohmann::json &object_;
    std::string path_;
};

} // namespace emulator
