#pragma once

#include <string>

// One machine's power-supply class as a umockdev testbed, from a file of
// tests/testbeds; the process sees it in place of /sys until the object
// goes. The process must run under umockdev's preload library
// (runUnderUmockdev).
class Testbed {
public:
    explicit Testbed(const std::string &name);
    ~Testbed();
    Testbed(const Testbed &) = delete;
    Testbed &operator=(const Testbed &) = delete;

    bool ok() const { return testbed_ != nullptr; }
    // Writes an attribute's text as the kernel would show it, or takes the
    // attribute away.
    void set(const std::string &supply, const std::string &attribute, const std::string &text);
    void remove(const std::string &supply, const std::string &attribute);
    // Adds a supply of the given type and scope, as a docked mouse or an
    // adapter would bring one.
    void addSupply(const std::string &supply, const std::string &type, const std::string &scope);

private:
    std::string attributePath(const std::string &supply, const std::string &attribute) const;

    void *testbed_ = nullptr;
};

// Path of a testbed file by name ("two-batteries").
std::string testbedFile(const std::string &name);

// Runs the program again under umockdev's preload library unless it runs
// there already; returns only in that case.
void runUnderUmockdev(char **argv);
