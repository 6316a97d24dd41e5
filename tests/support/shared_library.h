#pragma once

#include <string>

// A shared library opened at run time, as a host opens the module: dlopen on
// Linux, LoadLibrary on Windows.
class SharedLibrary {
public:
    explicit SharedLibrary(const char *path);
    ~SharedLibrary();
    SharedLibrary(const SharedLibrary &) = delete;
    SharedLibrary &operator=(const SharedLibrary &) = delete;

    bool opened() const { return handle_ != nullptr; }
    // Why it did not open.
    const std::string &error() const { return error_; }
    void *symbol(const char *name) const;

private:
    void *handle_ = nullptr;
    std::string error_;
};
