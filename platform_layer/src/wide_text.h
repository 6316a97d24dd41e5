#pragma once

#include <string>

#include <windows.h>

namespace win32 {

// Device paths and names are ASCII; anything else becomes '?'.
inline std::string narrow(LPCWSTR text) {
    std::string out;
    for (; text != nullptr && *text != 0; ++text) {
        out.push_back(*text < 0x80 ? static_cast<char>(*text) : '?');
    }
    return out;
}

inline std::u16string widen(const std::string &text) {
    return std::u16string(text.begin(), text.end());
}

// A Win32 failure: the error for GetLastError and the given result.
template <typename Result>
Result fail(DWORD error, Result result) {
    SetLastError(error);
    return result;
}

} // namespace win32
