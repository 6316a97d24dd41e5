#include "support/umockdev_testbed.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <vector>

#include <umockdev.h>

namespace {
UMockdevTestbed *testbedOf(void *testbed) {
    return static_cast<UMockdevTestbed *>(testbed);
}
} // namespace

std::string testbedFile(const std::string &name) {
    return std::string(TESTBED_DIR) + "/" + name + ".umockdev";
}

Testbed::Testbed(const std::string &name) {
    UMockdevTestbed *testbed = umockdev_testbed_new();
    GError *error = nullptr;
    if (!umockdev_testbed_add_from_file(testbed, testbedFile(name).c_str(), &error)) {
        std::fprintf(stderr, "testbed %s: %s\n", name.c_str(),
                     error != nullptr ? error->message : "not loaded");
        g_clear_error(&error);
        g_object_unref(testbed);
        return;
    }
    testbed_ = testbed;
}

Testbed::~Testbed() {
    if (testbed_ != nullptr) g_object_unref(testbedOf(testbed_));
}

std::string Testbed::attributePath(const std::string &supply, const std::string &attribute) const {
    gchar *root = umockdev_testbed_get_sys_dir(testbedOf(testbed_));
    const std::string path = std::string(root) + "/class/power_supply/" + supply + "/" + attribute;
    g_free(root);
    return path;
}

void Testbed::set(const std::string &supply, const std::string &attribute,
                  const std::string &text) {
    std::ofstream(attributePath(supply, attribute), std::ios::binary | std::ios::trunc)
        << text << "\n";
}

void Testbed::remove(const std::string &supply, const std::string &attribute) {
    std::remove(attributePath(supply, attribute).c_str());
}

void Testbed::addSupply(const std::string &supply, const std::string &type,
                        const std::string &scope) {
    umockdev_testbed_add_device(testbedOf(testbed_), "power_supply", supply.c_str(), nullptr,
                                "type", type.c_str(), "scope", scope.c_str(), "present", "1",
                                nullptr, nullptr);
}

void runUnderUmockdev(char **argv) {
    const char *preload = std::getenv("LD_PRELOAD");
    if (preload != nullptr && std::string(preload).find("umockdev-preload") != std::string::npos) {
        return;
    }
    // Under AddressSanitizer the preload library comes before its runtime.
    const char *asan = std::getenv("ASAN_OPTIONS");
    const std::string options = std::string(asan != nullptr ? asan : "") +
                                (asan != nullptr && *asan != '\0' ? ":" : "") +
                                "verify_asan_link_order=0";
    setenv("ASAN_OPTIONS", options.c_str(), 1);
    std::vector<char *> arguments = {const_cast<char *>("umockdev-wrapper")};
    for (char **argument = argv; *argument != nullptr; ++argument) arguments.push_back(*argument);
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    std::perror("umockdev-wrapper");
    std::exit(1);
}
