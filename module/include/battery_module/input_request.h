#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// What a test hands to UserChannel::requestInput to ask the user to act.
class InputRequest {
public:
    InputRequest(std::string title, std::string message, uint32_t kind, uint32_t secondNumber,
                 uint32_t lastNumber)
        : title(std::move(title)), message(std::move(message)), kind(kind),
          secondNumber(secondNumber), lastNumber(lastNumber) {}
    virtual ~InputRequest() = default;

    std::string title;
    std::string message;
    uint32_t kind;
    uint32_t secondNumber;
    std::vector<uint64_t> options;
    uint32_t lastNumber;
};
