#include "module_location.h"

#include <windows.h>

#include <string>

namespace module_location {

namespace {
std::string folderOf(const std::string &path) {
    const auto slash = path.find_last_of("/\\");
    return slash == std::string::npos ? "." : path.substr(0, slash);
}

// In the code page the program's arguments come in, so a path from
// --module and one found here load alike.
std::string narrow(const std::wstring &wide) {
    const int size = WideCharToMultiByte(CP_ACP, 0, wide.c_str(), static_cast<int>(wide.size()),
                                         nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<size_t>(size > 0 ? size : 0), '\0');
    if (size > 0)
        WideCharToMultiByte(CP_ACP, 0, wide.c_str(), static_cast<int>(wide.size()), &text[0], size,
                            nullptr, nullptr);
    return text;
}

// The file a symbolic link leads to; the name itself when it is none.
std::wstring finalPath(const std::wstring &name) {
    HANDLE file = CreateFileW(name.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE) return name;
    wchar_t buffer[MAX_PATH * 4];
    const DWORD length =
        GetFinalPathNameByHandleW(file, buffer, MAX_PATH * 4, FILE_NAME_NORMALIZED);
    CloseHandle(file);
    if (length == 0 || length >= MAX_PATH * 4) return name;
    std::wstring path(buffer, length);
    // The answer comes as \\?\C:\... (or \\?\UNC\server\...).
    if (path.rfind(L"\\\\?\\UNC\\", 0) == 0) return L"\\\\" + path.substr(8);
    if (path.rfind(L"\\\\?\\", 0) == 0) return path.substr(4);
    return path;
}
} // namespace

std::string programFolder(const char *argv0) {
    wchar_t own[MAX_PATH * 4];
    const DWORD length = GetModuleFileNameW(nullptr, own, MAX_PATH * 4);
    if (length > 0 && length < MAX_PATH * 4)
        return folderOf(narrow(finalPath(std::wstring(own, length))));
    return folderOf(argv0 != nullptr ? argv0 : "");
}

const char *libraryFileName() {
    return "battery_module.dll";
}

} // namespace module_location
