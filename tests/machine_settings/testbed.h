#pragma once

#include <sys/stat.h>

#include <fstream>
#include <string>

#include <umockdev.h>

// A umockdev testbed: the process runs under umockdev-wrapper, so /sys is
// this testbed's folder while it lives.
class Testbed {
public:
    Testbed() : testbed_(umockdev_testbed_new()) {}
    ~Testbed() { g_object_unref(testbed_); }
    Testbed(const Testbed &) = delete;
    Testbed &operator=(const Testbed &) = delete;

    void addBacklight(const std::string &name, const std::string &type, uint32_t brightness,
                      uint32_t maximum) {
        gchar *path = umockdev_testbed_add_device(
            testbed_, "backlight", name.c_str(), nullptr, "type", type.c_str(), "brightness",
            std::to_string(brightness).c_str(), "max_brightness", std::to_string(maximum).c_str(),
            nullptr, nullptr);
        g_free(path);
    }
    // A file under /sys that no device class describes, such as the firmware's.
    void writeFile(const std::string &underSys, const std::string &text) {
        const std::string path = sysFolder() + "/" + underSys;
        for (size_t at = path.find('/', sysFolder().size() + 1); at != std::string::npos;
             at = path.find('/', at + 1)) {
            mkdir(path.substr(0, at).c_str(), 0755);
        }
        std::ofstream(path) << text;
    }
    // What a file holds now, its trailing newline cut.
    std::string readFile(const std::string &underSys) const {
        std::ifstream in(sysFolder() + "/" + underSys);
        std::string line;
        std::getline(in, line);
        return line;
    }
    std::string sysFolder() const {
        gchar *folder = umockdev_testbed_get_sys_dir(testbed_);
        std::string text = folder;
        g_free(folder);
        return text;
    }

private:
    UMockdevTestbed *testbed_;
};
